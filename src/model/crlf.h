// The line end of the text form, and of every text made from it.
#pragma once

namespace korvex {

inline constexpr const char* k_crlf = "\r\n";

}  // namespace korvex
