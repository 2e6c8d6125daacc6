#include "host/core/ZR_ZentriPaletteAccess.h"

namespace {
ZR_ZentriPaletteAccess* g_palette = nullptr;
}

ZR_ZentriPaletteAccess* zentriPaletteAccess() {
    return g_palette;
}

void setZentriPaletteAccess(ZR_ZentriPaletteAccess* palette) {
    g_palette = palette;
}

ZR_AiChatViewInterface* zentriChatView() {
    return g_palette != nullptr ? g_palette->chatView() : nullptr;
}
