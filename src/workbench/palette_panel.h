// Create Palette (palette_panel): a palette of steps between two colours, or
// of every colour the open file uses, saved as a .tpal file under the data
// folder's pal/.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "integration/messages.h"
#include "model/store.h"
#include "platform/file_system.h"
#include "platform/prompt.h"

namespace korvex::workbench {

// The step count must lie above 2 and below 128.
constexpr int k_palette_steps_min = 3;
constexpr int k_palette_steps_max = 127;

// The steps from colour1 to colour2 (six hex digits each, red first; fewer
// digits are padded in front), linear in each channel, both ends included.
// A count outside 3..127 says "Colours" + "  >2 <128"; a colour that is not
// hex says "Not a valid hex". nullopt then. Colours are held red-low.
std::optional<std::vector<uint32_t>> two_colour_palette(platform::Prompt& ui, const integration::Messages& m,
                                                        const std::string& colour1, const std::string& colour2,
                                                        const std::string& count);

// Every colour of the colour lines of all polygons, lines and points (night
// colours too), each once, in the order the tables hold them. "none" is no
// colour.
std::vector<uint32_t> typ_palette(const model::Store& s);

// Where a palette of that name goes: the data folder's pal/ with ".tpal"
// added when the name lacks it.
std::string palette_path(const std::string& data_folder, const std::string& name);

// Saves colours under palette_path; an existing file is replaced only after
// "Replace this file?" is answered yes. Returns the path written, "" when
// refused or when the file could not be written (the reason is said).
std::string save_palette(platform::Prompt& ui, const integration::Messages& m, const std::string& data_folder,
                         const std::string& name, const std::vector<uint32_t>& colours,
                         platform::FileSystem& fs = platform::real_file_system());

}  // namespace korvex::workbench
