// Loading a whole text: the passes over its sections, the draw order, the
// string lines, and the section sort.
#pragma once

#include <cstdint>
#include <string>

#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::text {

using model::Store;

// Loads text (the file's whole contents) as the open project; path becomes
// curfile. identified: a text without "[_id]" is refused with "Can't find TYP
// information.". False when nothing was loaded.
bool load_txt(Store& s, platform::Prompt& ui, const std::string& path, std::string text, bool reselect,
              bool identified);

void polgon_txt(Store& s, platform::Prompt& ui, const std::string& text);
void polline_txt(Store& s, platform::Prompt& ui, const std::string& text);
void poi_txt(Store& s, platform::Prompt& ui, const std::string& text);

// The section test; true when the section failed (kind 0 polygon, 1 line, 2 point).
bool chktxt(Store& s, platform::Prompt& ui, int kind, int32_t index, const std::string& section);

// Each line cut at its first ";", lines joined by CR LF.
std::string chksemicolon(const std::string& text);

// One String line normalised; n is the running string number.
std::string fnchkstringtxt(Store& s, const std::string& line, int n);

// Fills drwlist and pg_drw from a text's "[_drawOrder]" section.
void draworder_fromtxt(Store& s, platform::Prompt& ui, const std::string& text);

// The text with its polygon and line sections sorted by type.
std::string sorttxt(const std::string& text);

}  // namespace korvex::text
