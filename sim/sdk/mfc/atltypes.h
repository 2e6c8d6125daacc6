#pragma once

// CPoint, CSize and CRect: Win32's structures with arithmetic. Include <afx.h>.
// Simplified: a selection of the operators and functions.

#include "afxdefs_.h"

class CSize : public tagSIZE {
public:
    CSize() {
        cx = 0;
        cy = 0;
    }
    CSize(int width, int height) {
        cx = width;
        cy = height;
    }
    CSize(SIZE size) : tagSIZE(size) {}  // NOLINT(google-explicit-constructor)

    void SetSize(int width, int height) { *this = CSize(width, height); }
    bool operator==(SIZE other) const { return cx == other.cx && cy == other.cy; }
    bool operator!=(SIZE other) const { return !(*this == other); }
    CSize operator+(SIZE other) const { return {int(cx + other.cx), int(cy + other.cy)}; }
    CSize operator-(SIZE other) const { return {int(cx - other.cx), int(cy - other.cy)}; }
};

class CPoint : public tagPOINT {
public:
    CPoint() {
        x = 0;
        y = 0;
    }
    CPoint(int initX, int initY) {
        x = initX;
        y = initY;
    }
    CPoint(POINT point) : tagPOINT(point) {}  // NOLINT(google-explicit-constructor)

    void SetPoint(int newX, int newY) { *this = CPoint(newX, newY); }
    void Offset(int offsetX, int offsetY) { SetPoint(int(x + offsetX), int(y + offsetY)); }
    bool operator==(POINT other) const { return x == other.x && y == other.y; }
    bool operator!=(POINT other) const { return !(*this == other); }
    CPoint operator+(SIZE size) const { return {int(x + size.cx), int(y + size.cy)}; }
    CPoint operator-(SIZE size) const { return {int(x - size.cx), int(y - size.cy)}; }
    CSize operator-(POINT other) const { return {int(x - other.x), int(y - other.y)}; }
};

class CRect : public tagRECT {
public:
    CRect() { SetRectEmpty(); }
    CRect(int newLeft, int newTop, int newRight, int newBottom) {
        SetRect(newLeft, newTop, newRight, newBottom);
    }
    CRect(const RECT& rect) : tagRECT(rect) {}  // NOLINT(google-explicit-constructor)
    CRect(LPCRECT rect) : tagRECT(*rect) {}     // NOLINT(google-explicit-constructor)
    CRect(POINT topLeft, SIZE size) {
        SetRect(int(topLeft.x), int(topLeft.y), int(topLeft.x + size.cx), int(topLeft.y + size.cy));
    }

    operator LPRECT() { return this; }         // NOLINT(google-explicit-constructor)
    operator LPCRECT() const { return this; }  // NOLINT(google-explicit-constructor)

    int Width() const { return int(right - left); }
    int Height() const { return int(bottom - top); }
    CSize Size() const { return {Width(), Height()}; }
    CPoint TopLeft() const { return {int(left), int(top)}; }
    CPoint BottomRight() const { return {int(right), int(bottom)}; }
    CPoint CenterPoint() const { return {int((left + right) / 2), int((top + bottom) / 2)}; }

    BOOL IsRectEmpty() const { return left >= right || top >= bottom; }
    BOOL IsRectNull() const { return left == 0 && top == 0 && right == 0 && bottom == 0; }
    /// Points on the right and bottom edges are outside.
    BOOL PtInRect(POINT point) const {
        return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
    }
    BOOL EqualRect(LPCRECT other) const { return *this == *other; }

    void SetRect(int newLeft, int newTop, int newRight, int newBottom) {
        left = newLeft;
        top = newTop;
        right = newRight;
        bottom = newBottom;
    }
    void SetRectEmpty() { SetRect(0, 0, 0, 0); }
    void InflateRect(int x, int y) { SetRect(int(left - x), int(top - y), int(right + x), int(bottom + y)); }
    void DeflateRect(int x, int y) { InflateRect(-x, -y); }
    void OffsetRect(int x, int y) { SetRect(int(left + x), int(top + y), int(right + x), int(bottom + y)); }
    void MoveToXY(int x, int y) { OffsetRect(int(x - left), int(y - top)); }
    void NormalizeRect() {
        SetRect(int(left < right ? left : right), int(top < bottom ? top : bottom),
                int(left < right ? right : left), int(top < bottom ? bottom : top));
    }
    /// Sets the intersection; empty and false if there is none.
    BOOL IntersectRect(LPCRECT a, LPCRECT b) {
        SetRect(int(a->left > b->left ? a->left : b->left), int(a->top > b->top ? a->top : b->top),
                int(a->right < b->right ? a->right : b->right),
                int(a->bottom < b->bottom ? a->bottom : b->bottom));
        if (IsRectEmpty()) {
            SetRectEmpty();
            return FALSE;
        }
        return TRUE;
    }

    bool operator==(const RECT& other) const {
        return left == other.left && top == other.top && right == other.right && bottom == other.bottom;
    }
    bool operator!=(const RECT& other) const { return !(*this == other); }
};
