#include "winuser.h"

#include <algorithm>

BOOL SetRect(LPRECT rectangle, int left, int top, int right, int bottom) {
    *rectangle = {left, top, right, bottom};
    return TRUE;
}

BOOL SetRectEmpty(LPRECT rectangle) {
    return SetRect(rectangle, 0, 0, 0, 0);
}

BOOL CopyRect(LPRECT target, const RECT* source) {
    *target = *source;
    return TRUE;
}

BOOL IsRectEmpty(const RECT* rectangle) {
    return rectangle->right <= rectangle->left || rectangle->bottom <= rectangle->top ? TRUE : FALSE;
}

BOOL EqualRect(const RECT* left, const RECT* right) {
    return left->left == right->left && left->top == right->top && left->right == right->right &&
                   left->bottom == right->bottom
               ? TRUE
               : FALSE;
}

BOOL PtInRect(const RECT* rectangle, POINT point) {
    return point.x >= rectangle->left && point.x < rectangle->right && point.y >= rectangle->top &&
                   point.y < rectangle->bottom
               ? TRUE
               : FALSE;
}

BOOL OffsetRect(LPRECT rectangle, int x, int y) {
    return SetRect(rectangle, rectangle->left + x, rectangle->top + y, rectangle->right + x,
                   rectangle->bottom + y);
}

BOOL InflateRect(LPRECT rectangle, int x, int y) {
    return SetRect(rectangle, rectangle->left - x, rectangle->top - y, rectangle->right + x,
                   rectangle->bottom + y);
}

BOOL IntersectRect(LPRECT result, const RECT* left, const RECT* right) {
    const RECT common = {std::max(left->left, right->left), std::max(left->top, right->top),
                         std::min(left->right, right->right), std::min(left->bottom, right->bottom)};
    if (IsRectEmpty(left) != FALSE || IsRectEmpty(right) != FALSE || IsRectEmpty(&common) != FALSE) {
        SetRectEmpty(result);
        return FALSE;
    }
    *result = common;
    return TRUE;
}

BOOL UnionRect(LPRECT result, const RECT* left, const RECT* right) {
    if (IsRectEmpty(left) != FALSE) {
        *result = *right;
    } else if (IsRectEmpty(right) != FALSE) {
        *result = *left;
    } else {
        *result = {std::min(left->left, right->left), std::min(left->top, right->top),
                   std::max(left->right, right->right), std::max(left->bottom, right->bottom)};
    }
    if (IsRectEmpty(result) != FALSE) {
        SetRectEmpty(result);
        return FALSE;
    }
    return TRUE;
}
