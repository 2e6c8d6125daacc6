#include "ArxHost.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include "ArxThread.h"
#include "acedads.h"
#include "acutads.h"
#include "acutmem.h"
#include "rxmfcapi.h"
#include "rxregsvc.h"

namespace {
ArxHost* g_host = nullptr;
}

ArxVariant& arxVariant() {
    static ArxVariant variant;
    return variant;
}

bool ArxHost::dockState(const CString&, ArxDockState&) {
    return false;
}

void ArxHost::dockStateChanged(const CString&, const ArxDockState&) {}

ArxHost& arxHost() {
    if (g_host == nullptr) {
        std::fputs("ObjectARX slice: called while no host is installed (setArxHost)\n", stderr);
        std::abort();
    }
    return *g_host;
}

void setArxHost(ArxHost* host) {
    g_host = host;
}

int acedGetVar(const ACHAR* name, resbuf* result) {
    arxRequireUiThread("acedGetVar");
    if (name == nullptr || result == nullptr) {
        return RTERROR;
    }
    return arxHost().getVar(name, *result) ? RTNORM : RTERROR;
}

int acutPrintf(const ACHAR* format, ...) {
    arxRequireUiThread("acutPrintf");
    CString text;
    va_list arguments;
    va_start(arguments, format);
    text.FormatV(format, arguments);
    va_end(arguments);
    arxHost().print(text);
    return RTNORM;
}

Acad::ErrorStatus acutNewString(const ACHAR* source, ACHAR*& target) {
    if (source == nullptr) {
        return Acad::eNullPtr;
    }
    const CString text(source);
    const auto units = static_cast<std::size_t>(text.GetLength()) + 1;
    auto* copy = static_cast<ACHAR*>(std::malloc(units * sizeof(ACHAR)));
    if (copy == nullptr) {
        return Acad::eOutOfMemory;
    }
    for (std::size_t i = 0; i < units; ++i) {
        copy[i] = source[i];
    }
    target = copy;
    return Acad::eOk;
}

void acutDelString(ACHAR*& text) {
    std::free(text);
    text = nullptr;
}

CMDIFrameWnd* acedGetAcadFrame() {
    arxRequireUiThread("acedGetAcadFrame");
    return arxHost().frame();
}

CView* acedGetAcadDwgView() {
    arxRequireUiThread("acedGetAcadDwgView");
    return arxHost().drawingView();
}

CWinApp* acedGetAcadWinApp() {
    arxRequireUiThread("acedGetAcadWinApp");
    return AfxGetApp();
}

HINSTANCE acedGetAcadResourceInstance() {
    return GetModuleHandleW(nullptr);
}

bool acrxServiceIsRegistered(const ACHAR* serviceId) {
    arxRequireUiThread("acrxServiceIsRegistered");
    return serviceId != nullptr && arxHost().hasService(serviceId);
}

void* acrxGetServiceSymbolAddr(const ACHAR* serviceId, const char* symbol) {
    arxRequireUiThread("acrxGetServiceSymbolAddr");
    if (serviceId == nullptr || symbol == nullptr) {
        return nullptr;
    }
    return arxHost().serviceSymbol(serviceId, symbol);
}
