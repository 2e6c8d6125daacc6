#pragma once

#include <vector>

#include "AdUiDock.h"

class CAdUiPalette;

// Styles of a palette set.
#define PSS_EDIT_NAME 0x01
#define PSS_PROPERTIES_MENU 0x02
#define PSS_AUTO_ROLLUP 0x04
#define PSS_CLOSE_BUTTON 0x08
#define PSS_SNAP 0x20

/// A dockable frame with a caption (title and close cross) that shows one of its palettes at a time; with
/// several there are tabs at the bottom. Simplified: no roll-up and no properties menu.
class CAdUiPaletteSet : public CAdUiDockControlBar {
    DECLARE_DYNAMIC(CAdUiPaletteSet)

public:
    explicit CAdUiPaletteSet(short closeButtonPosition = 0);
    /// Destroys the window, and the palettes with theirs.
    ~CAdUiPaletteSet() override;

    using CWnd::Create;
    virtual BOOL Create(LPCTSTR title, DWORD style, const CRect& size, CWnd* parent,
                        DWORD paletteSetStyle = 0);

    /// Takes the palette in, as the last one, and returns its place; -1 when it has no window. The first one
    /// becomes the active one. From here on the set owns the palette: it deletes it when it is deleted
    /// itself.
    virtual int AddPalette(CAdUiPalette* palette);
    /// Takes the palette at the place out and gives it back to the caller, hidden.
    virtual BOOL RemovePalette(int index);
    int GetPaletteCount() const { return static_cast<int>(m_palettes.size()); }
    /// Null when there is none at the place.
    CAdUiPalette* GetPalette(int index) const;
    CAdUiPalette* GetActivePalette() const { return GetPalette(m_active); }
    BOOL SetActivePalette(int index);

    CString GetName() const { return m_title; }
    DWORD GetPaletteSetStyle() const { return m_paletteSetStyle; }

    /// What the frame leaves to the active palette, in client coordinates.
    CRect PaletteRect() const;
    /// Where the close cross is, in client coordinates; empty without PSS_CLOSE_BUTTON.
    CRect CloseButtonRect() const;

    BOOL PreTranslateMessage(MSG* message) override;

protected:
    afx_msg void OnPaint();
    afx_msg BOOL OnEraseBkgnd(CDC* context);
    afx_msg void OnSize(UINT type, int width, int height);
    afx_msg void OnSizing(UINT side, LPRECT rect);
    afx_msg void OnLButtonDown(UINT flags, CPoint point);
    afx_msg void OnLButtonUp(UINT flags, CPoint point);
    DECLARE_MESSAGE_MAP()

private:
    CRect clientRect() const;
    CRect tabRect(int index) const;
    void layOutActivePalette();
    void drawCaption(HDC dc) const;
    void drawTabs(HDC dc) const;

    DWORD m_paletteSetStyle = 0;
    std::vector<CAdUiPalette*> m_palettes;
    int m_active = -1;
    bool m_closePressed = false;
};
