#pragma once

#include <AdUiPaletteSet.h>
#include <afxwin.h>

#include <memory>

class ZR_ZentriPalette;

/// The dockable frame in the host's main window that holds the one palette. UI thread.
///
/// Its size limits, its closing and its handling of messages before they are dispatched are the base class's.
/// It does not override those functions just to forward: their signatures differ between releases of the SDK.
class ZR_ZentriPaletteSet : public CAdUiPaletteSet {
    DECLARE_DYNAMIC(ZR_ZentriPaletteSet)

public:
    ZR_ZentriPaletteSet();
    /// Deletes the palette too, and with it the chat view.
    ~ZR_ZentriPaletteSet() override;

    /// Adds the one palette and takes ownership of it.
    void addPalette(std::unique_ptr<ZR_ZentriPalette> palette);

    /// The refresh hook, called after the panel has been shown or hidden and by the hidden refresh command.
    /// Part of the interface; does nothing.
    void refresh() {}

    /// Gives the keyboard focus to the host's frame if it is in this set. To be called when the set is
    /// hidden: Windows moves the focus out of a hidden window itself, but not reliably out of its children.
    void yieldFocus();

protected:
    afx_msg void OnShowWindow(BOOL show, UINT status);
    afx_msg void OnSize(UINT type, int width, int height);
    /// Part of the interface; does nothing.
    afx_msg void OnSizing(UINT side, LPRECT rect);
    /// Answers for the palette: to the host, the docked window is this one.
    afx_msg LRESULT OnAcadKeepFocus(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

private:
    std::unique_ptr<ZR_ZentriPalette> m_palette;
};
