#pragma once

// The slice's check that a call is made on the UI thread. Private to the slice.

/// Aborts with the call's name on any thread but the UI thread, which is the one that loaded the slice: the
/// program's first. The real host does not check; there such a call corrupts its state.
void arxRequireUiThread(const char* call);
