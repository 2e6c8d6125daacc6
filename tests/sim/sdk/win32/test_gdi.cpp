#include "tests/sim/sdk/win32/TestWindow.h"

#include <win32_cairo.h>
#include <win32_control.h>

#include <gtest/gtest.h>

#include <functional>

namespace {

/// A capture of a white window after drawing into it.
Win32Picture drawn(const std::function<void(HDC)>& draw) {
    TestWindow window(WS_POPUP, {50, 50, 250, 150});
    window.setHandler([&](UINT message, WPARAM, LPARAM, LRESULT&) {
        if (message != WM_PAINT) {
            return false;
        }
        PAINTSTRUCT paint;
        draw(BeginPaint(window, &paint));
        EndPaint(window, &paint);
        return true;
    });
    ShowWindow(window, SW_SHOW);
    pumpAll();
    window.setHandler(nullptr);
    return win32Grab(window);
}

}  // namespace

TEST(Gdi, FillRectExcludesTheRightAndBottomEdges) {
    const Win32Picture picture = drawn([](HDC dc) {
        const RECT rectangle = {10, 20, 30, 40};
        const HBRUSH brush = CreateSolidBrush(RGB(0, 128, 255));
        FillRect(dc, &rectangle, brush);
        DeleteObject(brush);
    });
    EXPECT_EQ(picture.at(10, 20), 0x0080FFU);
    EXPECT_EQ(picture.at(29, 39), 0x0080FFU);
    EXPECT_EQ(picture.at(30, 39), 0xFFFFFFU);
    EXPECT_EQ(picture.at(9, 20), 0xFFFFFFU);
}

TEST(Gdi, FrameRectIsOnePixelWide) {
    const Win32Picture picture = drawn([](HDC dc) {
        const RECT rectangle = {10, 20, 30, 40};
        FrameRect(dc, &rectangle, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    });
    EXPECT_EQ(picture.at(10, 20), 0U);
    EXPECT_EQ(picture.at(29, 39), 0U);
    EXPECT_EQ(picture.at(11, 21), 0xFFFFFFU);
}

TEST(Gdi, LinesAndShapesUseTheSelectedObjects) {
    const Win32Picture picture = drawn([](HDC dc) {
        const HPEN pen = CreatePen(PS_SOLID, 1, RGB(255, 0, 0));
        const HGDIOBJ oldPen = SelectObject(dc, pen);
        EXPECT_EQ(oldPen, GetStockObject(BLACK_PEN));
        MoveToEx(dc, 5, 5, nullptr);
        LineTo(dc, 50, 5);
        SelectObject(dc, GetStockObject(NULL_BRUSH));
        Rectangle(dc, 60, 10, 80, 30);
        EXPECT_EQ(SelectObject(dc, oldPen), pen);
        DeleteObject(pen);
    });
    EXPECT_EQ(picture.at(20, 5), 0xFF0000U);
    EXPECT_EQ(picture.at(20, 6), 0xFFFFFFU);
    EXPECT_EQ(picture.at(60, 20), 0xFF0000U);
    EXPECT_EQ(picture.at(70, 20), 0xFFFFFFU);
}

TEST(Gdi, TextIsMeasuredAndAligned) {
    RECT measured = {0, 0, 0, 0};
    const Win32Picture picture = drawn([&measured](HDC dc) {
        DrawTextW(dc, u"朔禾CAD", -1, &measured, DT_CALCRECT | DT_SINGLELINE);
        SetTextColor(dc, RGB(255, 0, 0));
        SetBkMode(dc, TRANSPARENT);
        RECT place = {100, 0, 200, 100};
        DrawTextW(dc, u"朔禾CAD", -1, &place, DT_SINGLELINE | DT_RIGHT | DT_BOTTOM);
    });
    EXPECT_GT(measured.right, 30);
    EXPECT_GT(measured.bottom, 10);
    const auto inked = win32FindClusters(picture, 0xFF0000, 120, 4, 12);
    ASSERT_FALSE(inked.empty());
    for (const RECT& part : inked) {
        EXPECT_GE(part.left, 200 - measured.right - 2);
        EXPECT_GE(part.top, 100 - measured.bottom - 2);
    }
}

TEST(Gdi, PrefixCharactersAreNotDrawn) {
    drawn([](HDC dc) {
        SIZE plain;
        GetTextExtentPoint32W(dc, u"File", 4, &plain);
        RECT marked = {};
        DrawTextW(dc, u"&File", -1, &marked, DT_CALCRECT | DT_SINGLELINE);
        EXPECT_EQ(marked.right, plain.cx);
        RECT kept = {};
        DrawTextW(dc, u"&File", -1, &kept, DT_CALCRECT | DT_SINGLELINE | DT_NOPREFIX);
        EXPECT_GT(kept.right, plain.cx);
    });
}

TEST(Gdi, RestoreDCRestoresTheSavedState) {
    drawn([](HDC dc) {
        SetTextColor(dc, RGB(1, 2, 3));
        const int saved = SaveDC(dc);
        SetTextColor(dc, RGB(4, 5, 6));
        IntersectClipRect(dc, 0, 0, 1, 1);
        EXPECT_TRUE(RestoreDC(dc, saved));
        EXPECT_EQ(SetTextColor(dc, 0), RGB(1, 2, 3));
        EXPECT_FALSE(RestoreDC(dc, saved));
    });
}

TEST(Gdi, PaintingIsClippedToTheUpdateRectangle) {
    TestWindow window(WS_POPUP, {50, 50, 250, 150});
    COLORREF color = RGB(0, 255, 0);
    window.setHandler([&](UINT message, WPARAM, LPARAM, LRESULT&) {
        if (message != WM_PAINT) {
            return false;
        }
        PAINTSTRUCT paint;
        const HDC dc = BeginPaint(window, &paint);
        RECT client;
        GetClientRect(window, &client);
        const HBRUSH brush = CreateSolidBrush(color);
        FillRect(dc, &client, brush);
        DeleteObject(brush);
        EndPaint(window, &paint);
        return true;
    });
    ShowWindow(window, SW_SHOW);
    pumpAll();
    color = RGB(0, 0, 255);
    const RECT part = {10, 10, 20, 20};
    InvalidateRect(window, &part, FALSE);
    UpdateWindow(window);
    const Win32Picture picture = win32Grab(window);
    EXPECT_EQ(picture.at(15, 15), 0x0000FFU);
    EXPECT_EQ(picture.at(25, 15), 0x00FF00U);
    window.setHandler(nullptr);
}

TEST(Gdi, DeviceContextFromGetDCDrawsImmediately) {
    TestWindow window(WS_OVERLAPPEDWINDOW, {50, 50, 250, 200});
    ShowWindow(window, SW_SHOW);
    pumpAll();
    const HDC dc = GetDC(window);
    ASSERT_NE(dc, nullptr);
    EXPECT_EQ(WindowFromDC(dc), window.handle());
    const RECT corner = {0, 0, 10, 10};
    FillRect(dc, &corner, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    EXPECT_EQ(ReleaseDC(window, dc), 1);
    EXPECT_EQ(ReleaseDC(window, dc), 0);
    EXPECT_EQ(win32Cairo(dc), nullptr);
    // The origin is that of the client area, below the caption.
    POINT origin{};
    ClientToScreen(window, &origin);
    const Win32Picture screen = win32Grab(nullptr);
    EXPECT_EQ(screen.at(origin.x, origin.y), 0U);
    EXPECT_EQ(screen.at(origin.x + 10, origin.y), 0xFFFFFFU);
    EXPECT_NE(screen.at(origin.x, origin.y - 1), 0U);
}
