#pragma once

class ZR_ZentriPaletteSet;

/// Deletes a palette set (and with it the view), at once if nothing of ours is running below on the stack.
/// While a dialog, a menu, a message box or a waiting service call of ours is open, the unloading has come
/// from within it, and what opened it goes on when it ends: then the set is hidden and deleted once the stack
/// is free of them. UI thread.
void retirePaletteSet(ZR_ZentriPaletteSet* paletteSet);

/// True while a dialog, a menu, a message box or a waiting service call of ours runs a loop on the UI thread.
bool zentriLoopRuns();
