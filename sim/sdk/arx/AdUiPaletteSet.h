#pragma once

#include <afxtempl.h>

#include "AdUiDock.h"

class CAdUiPalette;

// Styles of a palette set.
#define PSS_EDIT_NAME 0x01
#define PSS_PROPERTIES_MENU 0x02
#define PSS_AUTO_ROLLUP 0x04
#define PSS_CLOSE_BUTTON 0x08
#define PSS_SNAP 0x20

/// A dockable frame with a caption (title and close cross) that shows one of its palettes at a time.
/// Simplified: no roll-up, no properties menu; the caption lies above the palette.
class CAdUiPaletteSet : public CAdUiDockControlBar {
    DECLARE_DYNAMIC(CAdUiPaletteSet)

public:
    explicit CAdUiPaletteSet(short closeButtonPosition = 0);
    ~CAdUiPaletteSet() override;

    using CAdUiDockControlBar::Create;
    virtual BOOL Create(LPCTSTR title, DWORD style, const CRect& size, CWnd* parent,
                        DWORD paletteSetStyle = 0);

    /// Takes the palette in, as the last one, and returns its place, -1 when it has no window. The first one
    /// becomes the active one. From here on the set owns the palette: it deletes it when it is deleted
    /// itself.
    virtual int AddPalette(CAdUiPalette* palette);
    /// Takes the palette at the place out and gives it back to the caller.
    virtual BOOL RemovePalette(int index);
    int GetPaletteCount() const;
    CAdUiPalette* GetPalette(int index) const;
    CAdUiPalette* GetActivePalette() const;
    BOOL SetActivePalette(int index);

    CString GetName() const { return m_title; }
    DWORD GetPaletteSetStyle() const { return m_paletteSetStyle; }

    /// What the frame leaves to the active palette, in client coordinates.
    CRect PaletteRect() const;
    /// Where the close cross is drawn, in client coordinates.
    CRect CloseButtonRect() const;

    BOOL PreTranslateMessage(MSG* message) override;

protected:
    afx_msg void OnPaint();
    afx_msg BOOL OnEraseBkgnd(CDC* context);
    afx_msg void OnSize(UINT type, int width, int height);
    afx_msg void OnSizing(UINT side, LPRECT rect);
    afx_msg void OnLButtonDown(UINT flags, CPoint point);
    afx_msg void OnLButtonUp(UINT flags, CPoint point);
    afx_msg void OnDestroy();
    DECLARE_MESSAGE_MAP()

private:
    void layOutActivePalette();
    void drawFrame(CDC& context);

    CString m_title;
    DWORD m_paletteSetStyle = 0;
    CArray<CAdUiPalette*, CAdUiPalette*> m_palettes;
    int m_active = -1;
    bool m_closePressed = false;
};
