// The element's palette in the editor: entry i (from 1) is a 24-bit colour,
// red in the low byte. A transparent entry holds the transparency marker
// colour of the session; nothing else marks it.
#pragma once

#include <cstdint>
#include <vector>

namespace korvex::editor {

// The most colours an element's palette may hold.
constexpr int k_max_colours = 254;
// An entry of a colormode 32 palette whose colour line carries no alpha.
constexpr uint8_t k_no_alpha = 0xFF;

struct Palette {
    std::vector<uint32_t> colours;  // entry i at colours[i - 1]
    std::vector<uint8_t> alpha;     // a point's opacity of each entry (colormode 32), k_no_alpha where a line has none; empty otherwise

    int ncols() const { return static_cast<int>(colours.size()); }
    bool valid(int entry) const { return entry >= 1 && entry <= ncols(); }
    // Colour of an entry from 1; 0 outside.
    uint32_t colour(int entry) const { return valid(entry) ? colours[static_cast<size_t>(entry - 1)] : 0; }
    void set(int entry, uint32_t colour) {
        if (valid(entry)) colours[static_cast<size_t>(entry - 1)] = colour & 0xFFFFFF;
    }
    // The first entry (from 1) holding colour; 0 for none. Equal entries
    // resolve to the lower one.
    int first_of(uint32_t colour) const {
        for (size_t i = 0; i < colours.size(); ++i)
            if (colours[i] == (colour & 0xFFFFFF)) return static_cast<int>(i) + 1;
        return 0;
    }
    bool transparent(int entry, uint32_t marker) const { return valid(entry) && colour(entry) == marker; }
    int first_transparent(uint32_t marker) const { return first_of(marker); }
    // Two entries share a colour.
    bool has_duplicates() const;

    bool operator==(const Palette&) const = default;
};

inline bool Palette::has_duplicates() const {
    for (size_t i = 0; i < colours.size(); ++i)
        for (size_t j = i + 1; j < colours.size(); ++j)
            if (colours[i] == colours[j]) return true;
    return false;
}

}  // namespace korvex::editor
