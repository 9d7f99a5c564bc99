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

// One entry of drwlist: the list's code ("004B" a plain type, "10F03" an
// extended one) and its level.
struct DrawToken {
    std::string code;
    int level = 0;
};

// The entries of a list in order; a token without a level gets level 2.
std::vector<DrawToken> parse_drwlist(const std::string& list);
// The list of entries by the add rule: a blank in front of each token, a
// five-digit code without its leading "0".
std::string join_drwlist(const std::vector<DrawToken>& tokens);
// Polygon n's code in the list's form; can_have is false for a plain type
// with a subtype, which the format cannot give a level.
std::string polygon_drw_code(const Store& s, int32_t n, bool& can_have);
// The code of type and subtype digits ("4b00", "004b", "10f03") in the
// list's form.
std::string drw_code_of(const std::string& digits, bool& can_have);

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
