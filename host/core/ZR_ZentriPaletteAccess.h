#pragma once

class ZR_AiChatViewInterface;

/// What the rest of the module may ask of the docked palette, so that nothing else depends on how the panel
/// is hosted. UI thread only.
class ZR_ZentriPaletteAccess {
public:
    virtual ~ZR_ZentriPaletteAccess() = default;

    /// The one main chat view; null when the palette has none.
    virtual ZR_AiChatViewInterface* chatView() = 0;

    /// Passes the colour theme on to the view: 1 light, 0 dark.
    virtual void setColorTheme(int theme) = 0;

    /// Gives the palette window the native keyboard focus, so that the host's message loop sends characters
    /// to it.
    virtual void takeKeyboardFocus() = 0;
};

/// The module's palette, or null while there is none.
///
/// The palette is created only together with a new palette set, which owns it and deletes it in its
/// destructor. It registers itself here in its constructor and unregisters in its destructor. A palette set
/// whose deletion has been deferred may outlive the next load of the module: the newer palette is then the
/// registered one.
ZR_ZentriPaletteAccess* zentriPaletteAccess();

/// For the palette only. Null unregisters; the caller keeps ownership.
void setZentriPaletteAccess(ZR_ZentriPaletteAccess* palette);

/// The chat-view accessor: the one main chat view, or null while there is no palette.
ZR_AiChatViewInterface* zentriChatView();
