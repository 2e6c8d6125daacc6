#pragma once

#include <afx.h>

#include <string>

namespace cad {

// Conversions between the core's UTF-8 and the SDK's UTF-16. Malformed sequences become U+FFFD.
CString toWide(const std::string& text);
std::string fromWide(const TCHAR* text, int length);
std::string fromWide(const CString& text);

}  // namespace cad
