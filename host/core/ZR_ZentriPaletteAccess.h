#pragma once

class ZR_AiChatViewInterface;

/// What the rest of the module may ask of the docked palette. The palette implements it and announces itself
/// while it lives, so nothing else depends on how the panel is hosted. UI thread only.
class ZR_ZentriPaletteAccess {
public:
    virtual ~ZR_ZentriPaletteAccess() = default;

    /// The one main chat view; null when the palette has none.
    virtual ZR_AiChatViewInterface* chatView() = 0;

    /// Gives the palette window the native keyboard focus, so that the host's loop hands it the characters.
    virtual void takeKeyboardFocus() = 0;
};

/// The living palette, or null while there is none.
ZR_ZentriPaletteAccess* zentriPaletteAccess();

/// Announces the palette; null takes it back. The caller keeps ownership.
void setZentriPaletteAccess(ZR_ZentriPaletteAccess* palette);

/// The chat-view accessor: the one main chat view, or null while there is no palette.
ZR_AiChatViewInterface* zentriChatView();
