#pragma once

#include <aced.h>

/// Passes every change of the host's colour theme on to the palette.
class ZR_ZentriSysReactor : public AcEditorReactor {
public:
    void sysVarChanged(const ACHAR* variableName, bool success) override;
};
