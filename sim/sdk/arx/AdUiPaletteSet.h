#pragma once

// A palette set.
// Simplified: no roll-up, no properties menu, no floating, no transparency and no persistence.

#include <vector>

#include "AdUiDock.h"

class CAdUiPalette;

// Palette set styles.
#define PSS_EDIT_NAME 0x01
#define PSS_PROPERTIES_MENU 0x02
#define PSS_AUTO_ROLLUP 0x04
#define PSS_CLOSE_BUTTON 0x08
#define PSS_SNAP 0x20

/// A dockable bar with a caption (title and close button) that shows one of its palettes at a time, with tabs
/// at the bottom if there are several.
class CAdUiPaletteSet : public CAdUiDockControlBar {
    DECLARE_DYNAMIC(CAdUiPaletteSet)

public:
    explicit CAdUiPaletteSet(short closeButtonPosition = 0);
    /// Destroys the window and deletes the palettes, or does not: see ArxVariant.
    ~CAdUiPaletteSet() override;

    using CWnd::Create;
    virtual BOOL Create(LPCTSTR title, DWORD style, const CRect& size, CWnd* parent,
                        DWORD paletteSetStyle = 0);

    /// Appends the palette and returns its index; -1 if it has no window. The first one becomes active.
    /// Whether the set takes ownership depends on ArxVariant.
    virtual int AddPalette(CAdUiPalette* palette);
    /// Removes the palette from the set and hides it; the caller owns it.
    virtual BOOL RemovePalette(int index);
    int GetPaletteCount() const { return static_cast<int>(m_palettes.size()); }
    /// Null for an index out of range.
    CAdUiPalette* GetPalette(int index) const;
    CAdUiPalette* GetActivePalette() const { return GetPalette(m_active); }
    BOOL SetActivePalette(int index);

    CString GetName() const { return m_title; }
    DWORD GetPaletteSetStyle() const { return m_paletteSetStyle; }

    /// The active palette's rectangle, in client coordinates.
    CRect PaletteRect() const;
    /// The close button's rectangle, in client coordinates; empty without PSS_CLOSE_BUTTON.
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
