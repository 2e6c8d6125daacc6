#pragma once

// Which of Qt's event loops on the UI thread are the host's own. In most hosts none is: the main loop is
// MFC's and any Qt loop is nested in it. In a host whose main loop is QApplication::exec(), the loops up to
// that one are the host's. Qt tells the number of running loops (QThread::loopLevel()), not whose they are.
// UI thread.

/// To be called when the module is loaded. The loops that run now are the host's, and one that the host
/// enters before it delivers the next event.
void learnZentriHostLoops();

/// To be called where the host calls the module. If fewer loops run than were thought to be the host's, the
/// module was loaded from within a nested one.
void checkZentriHostLoops();

/// The number of Qt loops that are the host's; 0 where the main loop is not Qt's.
int zentriHostLoopLevel();

/// Whether a nested loop runs on the UI thread that the module or its view may have entered: a dialog, a
/// menu, a message box, a blocking service call, a drag.
bool zentriNestedLoopRuns();
