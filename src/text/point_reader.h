// Reading one point section of the text form into a table row.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::text {

using model::Store;

// Reads a "[_point]" section into row (pt_n + k for an extra point).
void poiparse(Store& s, platform::Prompt& ui, const std::string& section, int32_t row, bool batch);

// The symbols of one picture's colour table, in table order, and their
// index by symbol. Symbols of one picture are all cpp characters long.
struct PointSymbols {
    int cpp = 1;
    // By (c1 << 8 | c2), or c1; -1 for no colour. Sized by the first add to
    // what cpp needs: most points have small tables.
    std::vector<int16_t> index;
    int count = 0;
    int fallback = -1;  // index an unknown symbol takes; -1 reports it

    static int key(const char* p, int cpp) {
        const auto c1 = static_cast<unsigned char>(p[0]);
        return cpp == 2 ? (c1 << 8 | static_cast<unsigned char>(p[1])) : c1;
    }
    void add(std::string_view symbol);
    int find(const char* p) const {
        const auto k = static_cast<size_t>(key(p, cpp));
        return k < index.size() ? index[k] : -1;
    }
};

// Rows in the picture's own symbols to canonical rows for a table of
// `colours` entries, each row ending in CR LF. A pixel whose symbol has no
// colour takes symbols.fallback (0 when there is none).
std::string convert_txtbmp(std::string_view rows, const PointSymbols& symbols, int colours);

// A one-character picture as a two-character one: colour line k gets the
// symbol of k, and the rows of the row (pt_bmp, or pt_nbmp for night) are
// rewritten. Returns the new colour lines.
std::string fncoltxt(Store& s, const std::string& colourlines, int32_t row, bool night);

}  // namespace korvex::text
