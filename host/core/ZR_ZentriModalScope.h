#pragma once

/// Marks, while it lives, that one of the module's message boxes is open on the UI thread. The box runs the
/// host's loop, so anything may happen meanwhile, even the module's unloading, which then must not delete
/// what the stack below the box still uses. UI thread only.
class ZR_ZentriModalScope {
public:
    ZR_ZentriModalScope();
    ~ZR_ZentriModalScope();
    ZR_ZentriModalScope(const ZR_ZentriModalScope&) = delete;
    ZR_ZentriModalScope& operator=(const ZR_ZentriModalScope&) = delete;

    static bool anyOpen();
};
