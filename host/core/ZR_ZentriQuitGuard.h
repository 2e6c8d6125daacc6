#pragma once

#include <windows.h>

/// To exist while the module runs one of Qt's event loops on the UI thread. Qt's loops take WM_QUIT for their
/// own: they end, and the message is lost to the host's main loop, which would never end. When the last guard
/// goes, it posts such a message again, with its exit code. Not in a host whose main loop is Qt's, which has
/// ended with the others. UI thread.
class ZR_ZentriQuitGuard {
public:
    ZR_ZentriQuitGuard();
    ~ZR_ZentriQuitGuard();
    ZR_ZentriQuitGuard(const ZR_ZentriQuitGuard&) = delete;
    ZR_ZentriQuitGuard& operator=(const ZR_ZentriQuitGuard&) = delete;
};
