// The draw order section: levels of 5-byte records (type, 32-bit subtype
// mask), a record of five zeros between levels.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::typ {

using model::Store;

// Reads the section at offset (length bytes, records of recsize) into
// s.drwlist.
void read_draworder(Store& s, int64_t offset, int64_t length, int recsize);

// Gives polygon n its pg_drw entry from drwlist (level 0 and a report line
// for a polygon with subtype that has none).
void assign_level(Store& s, int32_t n);

// assign_level for every polygon, with one look at drwlist.
void assign_levels(Store& s);

// The level of polygon n from its pg_drw entry ("" when none).
std::string polygon_level(const Store& s, int32_t n);

// getdraworder: the levels as lists of 10-hex-digit record texts, levels
// renumbered to be consecutive ("A Draworder has been scaled down in the saved
// TYP file." when that changed a level).
std::vector<std::vector<std::string>> getdraworder(Store& s, platform::Prompt& ui, bool tofile);

// Writes the section at offset; returns the next free offset.
int64_t save_draworder(Store& s, platform::Prompt& ui, int64_t offset, bool tofile);

// Adds the polygons that have no token to drwlist (level 1) and sorts it by
// level, then type.
void complete_draworder(Store& s);

// Sorts drwlist tokens by level ascending, then by type value; stable.
void sort_drwlist(Store& s);

// Removes from drwlist each token whose type an earlier token has, and
// returns the removed tokens joined by blanks ("" when none). Quiet says
// nothing; otherwise the removed list, or "None found.", is shown.
std::string find_duplicates(Store& s, platform::Prompt& ui, bool quiet);

}  // namespace korvex::typ
