// Palette files (.tpal): colours as six hexadecimal digits, red, green,
// blue, separated by commas or line ends.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace korvex::text {

// The fields of a palette text: line ends become commas, CR is dropped and
// empty fields vanish. A last field that is not six long is not counted.
std::vector<std::string> tpal_fields(std::string text);
// The colours of a palette text (red in the low byte); a field that is not
// hexadecimal ends the list there.
std::vector<uint32_t> parse_tpal(const std::string& text);
// Each colour as six digits followed by a comma.
std::string tpal_text(const std::vector<uint32_t>& colours);
// The name with ".tpal" added when it lacks it (any case).
std::string with_tpal_extension(const std::string& path);

// nullopt when the file cannot be read.
std::optional<std::vector<uint32_t>> read_tpal(const std::string& path);
// Writes atomically to the path with the extension; false and error on failure.
bool save_tpal(const std::string& path, const std::vector<uint32_t>& colours, std::string* error = nullptr,
               platform::FileSystem& fs = platform::real_file_system());

// Six hex digits, text order (red first), of a colour held red-low.
std::string hex6(uint32_t colour);
// A colour from hex digits in text order; shorter texts are padded in front
// with "0" (f_matc). False for a text with other characters or over six.
bool from_hex(const std::string& digits, uint32_t& colour);

}  // namespace korvex::text
