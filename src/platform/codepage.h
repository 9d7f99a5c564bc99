// Code page conversion at the edges. A code page number maps to one iconv
// name: 65001 is UTF-8, every other number n is "CPn". Windows has no iconv:
// there the system's own conversion functions take the number itself.
#pragma once

#include <string>

namespace korvex::platform {

std::string iconv_name(int cp);

// Bytes of code page cp to UTF-32. Undecodable bytes become U+FFFD.
std::u32string bytes_to_wide(const std::string& bytes, int cp);

// UTF-32 to bytes of code page cp. A character outside the page becomes the
// page's default character "?".
std::string wide_to_bytes(const std::u32string& text, int cp);

// Convenience: bytes of one page to bytes of another.
std::string recode(const std::string& bytes, int from_cp, int to_cp);

// True when the bytes are well-formed UTF-8.
bool is_valid_utf8(const std::string& bytes);

}  // namespace korvex::platform
