// The layer model of the polygons as the workbench edits it: drwlist is the
// truth (a save and the text writer read it), each polygon's pg_drw shows the
// levels of its type, and polygons whose type has no entry form the no-level
// group at level 0.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/store.h"
#include "platform/prompt.h"
#include "typ/draw_order.h"

namespace korvex::workbench {

using typ::DrawToken;

// The entries a layer view shows: the tokens of drwlist in order, then one
// level-0 entry a polygon type that has none, in row order.
std::vector<DrawToken> view_entries(const model::Store& s);

// The no-level text: "code,0 " for each polygon type without an entry.
std::string no_level_text(const model::Store& s);

// Writes entries back as the new draw order: level-0 entries are left out
// (their polygons fall into the no-level group), the list is sorted by level
// keeping ties in order, every pg_drw is renewed and the project is dirty.
void commit_entries(model::Store& s, const std::vector<DrawToken>& entries, platform::Prompt* ui = nullptr);

// Stable sort of drwlist by level; entries of one level keep their order.
// Shows "Sorting Draworders ..." while a prompt is given.
void sort_draworder(model::Store& s, platform::Prompt* ui = nullptr);

// Renews pg_drw of every polygon from drwlist ("Type=" code "," level, one
// line a level of the type, ",0" without one) and the ";draworder:" comment
// the decoder put in the polygon's text.
void refresh_levels(model::Store& s);

// Levels of a code in drwlist order (empty when it has none).
std::vector<int> levels_of(const model::Store& s, const std::string& code);

// The code of polygon row in the list's form ("" outside the table).
std::string polygon_code(const model::Store& s, int32_t row, bool* can_have = nullptr);

// A code as the text form writes it: "004B" is "0x4B", "10F03" is "0x10F03".
std::string code_type_text(const std::string& code);

}  // namespace korvex::workbench
