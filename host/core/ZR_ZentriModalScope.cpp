#include "host/core/ZR_ZentriModalScope.h"

namespace {
int g_openScopes = 0;
}

ZR_ZentriModalScope::ZR_ZentriModalScope() {
    ++g_openScopes;
}

ZR_ZentriModalScope::~ZR_ZentriModalScope() {
    --g_openScopes;
}

bool ZR_ZentriModalScope::anyOpen() {
    return g_openScopes > 0;
}
