// The operating system's side of the code-page conversions: iconv on POSIX,
// the conversion functions of Windows there. UTF-8 and plain ASCII never
// reach it. Both sides give the same results: an undecodable byte becomes
// U+FFFD and the decoding goes on at the next byte; a character outside the
// page becomes "?".
#pragma once

#include <optional>
#include <string>

namespace korvex::platform {

// Nothing when the system does not know the page.
std::optional<std::u32string> system_bytes_to_wide(const std::string& bytes, int cp);
std::optional<std::string> system_wide_to_bytes(const std::u32string& text, int cp);

}  // namespace korvex::platform
