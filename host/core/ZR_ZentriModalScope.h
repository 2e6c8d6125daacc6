#pragma once

/// While it exists, one of the module's message boxes is open on the UI thread. The box runs the host's
/// message loop, so the module may even be unloaded meanwhile, and must not delete objects that the callers
/// on the stack still use. UI thread only.
class ZR_ZentriModalScope {
public:
    ZR_ZentriModalScope();
    ~ZR_ZentriModalScope();
    ZR_ZentriModalScope(const ZR_ZentriModalScope&) = delete;
    ZR_ZentriModalScope& operator=(const ZR_ZentriModalScope&) = delete;

    static bool anyOpen();
};
