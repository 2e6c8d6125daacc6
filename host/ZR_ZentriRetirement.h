#pragma once

class ZR_ZentriPaletteSet;

/// Deletes a palette set and with it the palette and the view: at once, unless a nested loop of the module
/// runs. While a dialog, a menu, a message box or a blocking service call of the module is open, the module
/// is being unloaded from within its loop, and the code that opened it continues when that loop ends. The set
/// is then hidden, and deleted as soon as no such loop runs any more. UI thread.
void retirePaletteSet(ZR_ZentriPaletteSet* paletteSet);

/// Deletes the sets that still wait, for an application that ends and will not run their loop again.
void deleteRetiredPaletteSets();
