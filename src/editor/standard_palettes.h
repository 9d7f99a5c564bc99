// The chooser's standard palettes: 256 (254 colours), 64 and 16 (14).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace korvex::editor {

enum class ChooserMode { c256, c64, c16, custom };

std::vector<uint32_t> palette_256();
std::vector<uint32_t> palette_64();
std::vector<uint32_t> palette_16();
// The standard palette of a mode; custom gives none.
std::vector<uint32_t> standard_palette(ChooserMode mode);
// "256.tpal", "64.tpal", "16.tpal"; "" for custom.
std::string standard_file_name(ChooserMode mode);
// The menu caption: "Garmin-256", "Garmin-64", "Garmin-16", "Garmin-C".
std::string chooser_caption(ChooserMode mode);

// Writes the three standard files into folder when they are missing, so a
// user can edit them; false when one could not be written.
bool ensure_standard_palettes(const std::string& folder);

}  // namespace korvex::editor
