// MapTK ".prj" projects: their sections are translated, line by line, into
// the text form and handed to the text loader.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::text {

using model::Store;

// Large enough that a normal project is read as one block.
inline constexpr size_t k_prj_block = 4867340;

// What outlives one block: the draw order lines gathered so far.
struct PrjTranslation {
    std::string draworder = " ";
};

// Translates one block (whole sections) and appends the text form to out.
// A section still open at the end of the block is closed there.
void parse_prj(PrjTranslation& t, platform::Prompt& ui, std::string_view block, std::string& out);

// Appends the gathered "[_drawOrder]" section, when there is one.
void finish_prj(PrjTranslation& t, std::string& out);

// A whole project in text form: cut into blocks of block_size bytes behind
// the last "[end]", each translated, the draw order last.
std::string translate_prj(platform::Prompt& ui, std::string_view project, size_t block_size = k_prj_block);

// Opens the project at path: translated and loaded as a text with "[_id]"
// required; the tables are then unsaved. False when nothing was loaded.
bool loadprj(Store& s, platform::Prompt& ui, const std::string& path);

// As loadprj, for a project already read.
bool load_prj_data(Store& s, platform::Prompt& ui, const std::string& path, std::string_view project,
                   size_t block_size = k_prj_block);

}  // namespace korvex::text
