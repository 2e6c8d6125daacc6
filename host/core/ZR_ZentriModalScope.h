#pragma once

/// While it exists, the module is within a call that may run the host's message loop: a message box, a
/// blocking service call, a call of the host that creates or shows a window. The module may even be unloaded
/// meanwhile, and must not delete objects that the callers on the stack still use. UI thread only.
class ZR_ZentriModalScope {
public:
    ZR_ZentriModalScope();
    ~ZR_ZentriModalScope();
    ZR_ZentriModalScope(const ZR_ZentriModalScope&) = delete;
    ZR_ZentriModalScope& operator=(const ZR_ZentriModalScope&) = delete;

    static bool anyOpen();
};
