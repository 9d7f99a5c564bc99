// Entries of the draw order as the element operations change them: a new
// polygon's level, a deleted polygon's entry, a renumbered polygon's layer.
// drwlist holds " CODE,level" tokens; polygons known to have no level are
// listed apart in walk.no_level_types as "CODE,0 ". A token's digits are
// compared by the type they name, so "0005" (a TYP file's form) and "0500"
// (a text's) are the same polygon type 0x05.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "model/store.h"

namespace korvex::workbench {

// The code (type << 8 | subtype) a token's digits name; -1 for none.
int32_t token_code(std::string_view token);

// add_draworder: the type of code takes level (above 0: a drwlist token in
// the form of drw_code, replacing the type's old tokens; 0: an entry of the
// no-level list), and drwlist is sorted by level, entries of one level in
// the order they stood. A token the type holds at that level stays where it is.
void add_draworder(model::Store& s, int32_t code, int level);
// The same for many types, with one sort: (code, level) pairs. A type given
// with several levels is drawn in each of those layers; the old tokens of
// every type given go.
void add_draworders(model::Store& s, const std::vector<std::pair<int32_t, int>>& levels);

// A renumbered polygon: every token of old_code (drwlist and the no-level
// list) names code instead, at its place; tokens code held before go. False,
// and nothing changed, when old_code had no token.
bool rename_draworder(model::Store& s, int32_t old_code, int32_t code);

// remove_draworder: every token of the type leaves text (drwlist or the
// no-level list). True when one did.
bool remove_draworder(std::string& text, int32_t code);
// The same for many types in one walk of the text.
bool remove_draworders(std::string& text, const std::unordered_set<int32_t>& codes);

// The level of the type in drwlist (its first token); 0 when it has none.
int draworder_level(const model::Store& s, int32_t code);
// The levels of every type in drwlist, the first token of a type winning.
std::unordered_map<int32_t, int> draworder_levels(const model::Store& s);
// Every level of every type in drwlist, in list order: a type may be drawn
// in several layers.
std::unordered_map<int32_t, std::vector<int>> draworder_layers(const model::Store& s);

// The level a pg_drw entry names ("Type=0005,5" is 5; a first line counts);
// -1 when the entry has none.
int entry_level(const std::string& pg_drw);

// The pg_drw entry of a type at a level: "Type=" + drw_code + "," + level;
// at several levels one such line a level, CR LF between.
std::string drw_entry(int32_t code, int level);
std::string drw_entry(int32_t code, const std::vector<int>& levels);

}  // namespace korvex::workbench
