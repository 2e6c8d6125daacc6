#pragma once

// Basic GDI: brushes, pens, fonts, filled shapes, lines and text, drawn with cairo and Pango. A device
// context wraps a cairo context (see win32_cairo.h) and is clipped to the window's client area.
//
// Simplified: no bitmaps, regions or mapping modes; colours are always 24-bit; slanted lines, curves and text
// are anti-aliased.

#include "windef.h"

constexpr COLORREF RGB(unsigned red, unsigned green, unsigned blue) {
    return (red & 0xFFU) | ((green & 0xFFU) << 8) | ((blue & 0xFFU) << 16);
}
constexpr BYTE GetRValue(COLORREF color) {
    return static_cast<BYTE>(color & 0xFFU);
}
constexpr BYTE GetGValue(COLORREF color) {
    return static_cast<BYTE>((color >> 8) & 0xFFU);
}
constexpr BYTE GetBValue(COLORREF color) {
    return static_cast<BYTE>((color >> 16) & 0xFFU);
}

constexpr int TRANSPARENT = 1;
constexpr int OPAQUE = 2;
constexpr int PS_SOLID = 0;
constexpr int PS_DASH = 1;
constexpr int PS_DOT = 2;
constexpr int PS_NULL = 5;
constexpr int WHITE_BRUSH = 0;
constexpr int GRAY_BRUSH = 2;
constexpr int BLACK_BRUSH = 4;
constexpr int NULL_BRUSH = 5;
constexpr int WHITE_PEN = 6;
constexpr int BLACK_PEN = 7;
constexpr int NULL_PEN = 8;
constexpr int DEFAULT_GUI_FONT = 17;
constexpr int FW_NORMAL = 400;
constexpr int FW_BOLD = 700;

constexpr UINT DT_LEFT = 0x0000;
constexpr UINT DT_CENTER = 0x0001;
constexpr UINT DT_RIGHT = 0x0002;
constexpr UINT DT_VCENTER = 0x0004;
constexpr UINT DT_BOTTOM = 0x0008;
constexpr UINT DT_WORDBREAK = 0x0010;
constexpr UINT DT_SINGLELINE = 0x0020;
constexpr UINT DT_CALCRECT = 0x0400;
constexpr UINT DT_NOPREFIX = 0x0800;
constexpr UINT DT_END_ELLIPSIS = 0x8000;

constexpr int COLOR_CAPTIONTEXT = 9;
constexpr int COLOR_ACTIVECAPTION = 2;
constexpr int COLOR_INACTIVECAPTION = 3;
constexpr int COLOR_MENU = 4;
constexpr int COLOR_WINDOW = 5;
constexpr int COLOR_MENUTEXT = 7;
constexpr int COLOR_WINDOWTEXT = 8;
constexpr int COLOR_HIGHLIGHT = 13;
constexpr int COLOR_HIGHLIGHTTEXT = 14;
constexpr int COLOR_BTNFACE = 15;
constexpr int COLOR_BTNSHADOW = 16;
constexpr int COLOR_GRAYTEXT = 17;
constexpr int COLOR_BTNTEXT = 18;

WIN32API HBRUSH CreateSolidBrush(COLORREF color);
WIN32API HPEN CreatePen(int style, int width, COLORREF color);
/// The height is in pixels: that of the characters if negative, that of the cell (the line) if positive.
/// Simplified: of the other arguments only weight, italic and face name have an effect.
WIN32API HFONT CreateFontW(int height, int width, int escapement, int orientation, int weight, DWORD italic,
                           DWORD underline, DWORD strikeOut, DWORD charSet, DWORD outPrecision,
                           DWORD clipPrecision, DWORD quality, DWORD pitchAndFamily, LPCWSTR faceName);
WIN32API HGDIOBJ GetStockObject(int index);
WIN32API BOOL DeleteObject(HGDIOBJ object);
/// Returns the previously selected object of the same kind.
WIN32API HGDIOBJ SelectObject(HDC dc, HGDIOBJ object);
WIN32API COLORREF GetSysColor(int index);
WIN32API HBRUSH GetSysColorBrush(int index);
/// Sends WM_SYSCOLORCHANGE to the top-level windows. Simplified: changes this process's colours only.
WIN32API BOOL SetSysColors(int count, const INT* indices, const COLORREF* colors);

WIN32API COLORREF SetTextColor(HDC dc, COLORREF color);
WIN32API COLORREF SetBkColor(HDC dc, COLORREF color);
WIN32API int SetBkMode(HDC dc, int mode);
WIN32API int SaveDC(HDC dc);
WIN32API BOOL RestoreDC(HDC dc, int saved);
WIN32API int IntersectClipRect(HDC dc, int left, int top, int right, int bottom);

WIN32API int FillRect(HDC dc, const RECT* rectangle, HBRUSH brush);
WIN32API int FrameRect(HDC dc, const RECT* rectangle, HBRUSH brush);
WIN32API BOOL Rectangle(HDC dc, int left, int top, int right, int bottom);
WIN32API BOOL Ellipse(HDC dc, int left, int top, int right, int bottom);
WIN32API BOOL MoveToEx(HDC dc, int x, int y, LPPOINT previous);
WIN32API BOOL LineTo(HDC dc, int x, int y);
WIN32API BOOL Polyline(HDC dc, const POINT* points, int count);
WIN32API int DrawTextW(HDC dc, LPCWSTR text, int length, LPRECT rectangle, UINT format);
WIN32API BOOL TextOutW(HDC dc, int x, int y, LPCWSTR text, int length);
WIN32API BOOL GetTextExtentPoint32W(HDC dc, LPCWSTR text, int length, LPSIZE size);

#define CreateFont CreateFontW
#define DrawText DrawTextW
#define TextOut TextOutW
#define GetTextExtentPoint32 GetTextExtentPoint32W
