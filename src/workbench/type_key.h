// Type numbers of elements: their codes, keys and the walk to a free one.
//
// A code is type << 8 | subtype, the value of five type digits ("10f03" is
// type 0x10f, subtype 3). Up to three digits name a type without subtype
// ("2e" and "115" are 0x2e00 and 0x11500); four or five digits end in the
// two of the subtype. The key is type * 32 + subtype: the order of the
// index tables of a TYP file, and of the grid.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "model/store.h"

namespace korvex::workbench {

// The code of a type text ("0x2e00", "2E00", "0x115", "10f03"): hexadecimal
// digits behind an "x" (or from the start), blanks skipped; -1 without digits.
int32_t type_code(const std::string& text);

// type * 32 + subtype of a code.
constexpr int32_t type_key(int32_t code) { return (code >> 8) * 32 + (code & 0xff); }

// Five hexadecimal digits of a code, lower case ("02e00").
std::string five_digits(int32_t code);

// The code of a row of a class (0 polygons, 1 lines, 2 points, 3 active
// lines, 4 extra points; row is the store row); extra points give their id.
int32_t row_type_code(const model::Store& s, int cls, int32_t row);

// First and one-past-last store row of a class.
int32_t first_row(const model::Store& s, int cls);
int32_t end_row(const model::Store& s, int cls);

// The rows of a class by code, built once, so that many look-ups do not
// walk the table each time.
class TypeIndex {
public:
    TypeIndex(const model::Store& s, int cls);
    bool has(int32_t code) const { return rows_.count(code) != 0; }
    // The first row with the code, -1 when none.
    int32_t row(int32_t code) const;
    void add(int32_t code, int32_t row) { rows_.emplace(code, row); }

private:
    std::unordered_map<int32_t, int32_t> rows_;
};

// Some row of the class has the type of text; an extra point compares ids.
bool type_exists(const model::Store& s, const std::string& text, int cls);

// The next free type text of a class (five digits) from a seed text, or ""
// when the walk finds no number the class may take. A seed of fewer than
// five digits is taken with "00" behind it; zero becomes 1. Below 0xff01 the
// walk steps to the next type, from there on through the subtypes.
std::string nwtypnumber(const model::Store& s, const std::string& seed, int cls);

// The first free point type from the point seed (three digits, seed * 256):
// every subtype of a type is tried before the next type. A seed outside 1 to
// 0x200 is "060".
std::string next_point_type(const model::Store& s, const std::string& seed);

// The free subtypes (0 to 0x1f) of the type of code in a class.
std::vector<int> subtypes(const model::Store& s, int32_t code, int cls);

// The section with its "Type=" line (or "ID=" for an extra point) set to
// "Type=0x" + digits; SubType= lines go, since the digits hold the subtype.
// A section without one gets the line behind its marker.
std::string replacetype(const std::string& section, const std::string& digits, bool id = false);

// The draw-order form of a code: "00TT" for a type below 0x100 without
// subtype, "TTSS" for one with, "TTTSS" above; upper case. can_have is false
// where a TYP file holds no draw order (a type below 0x100 with a subtype).
std::string drw_code(int32_t code, bool* can_have = nullptr);

}  // namespace korvex::workbench
