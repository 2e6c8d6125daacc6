#pragma once

#include <afx.h>

#include <QString>

// Both text types hold UTF-16, so these copy code units without conversion.

/// The same text as a QString.
inline QString toQString(const CString& text) {
    // QString::fromUtf16() would take a leading U+FEFF or U+FFFE for a byte-order mark.
    return QString(reinterpret_cast<const QChar*>(text.GetString()), text.GetLength());
}

/// The same text as a CString.
inline CString toCString(const QString& text) {
    return CString(reinterpret_cast<const TCHAR*>(text.utf16()), text.size());
}
