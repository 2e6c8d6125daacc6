#pragma once

#include <aced.h>

/// The type of the last parameter of AcEditorReactor::sysVarChanged, bool or int depending on the release of
/// the SDK.
template <typename Method>
struct ZR_SysVarChangedMethod;
template <typename Reactor, typename Success>
struct ZR_SysVarChangedMethod<void (Reactor::*)(const ACHAR*, Success)> {
    using SuccessType = Success;
};
using ZR_SysVarSuccess = ZR_SysVarChangedMethod<decltype(&AcEditorReactor::sysVarChanged)>::SuccessType;

/// Passes every change of the host's colour theme on to the palette.
class ZR_ZentriSysReactor : public AcEditorReactor {
public:
    void sysVarChanged(const ACHAR* variableName, ZR_SysVarSuccess success) override;
};
