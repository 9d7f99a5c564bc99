// Colour reduction: a picture on the surface that holds many colours (an
// imported or pasted image, a true-colour point turned back into a palette
// icon, the result of a filter) becomes a palette picture of at most
// k_max_colours entries. histogram picks a few levels a channel from the
// channel histograms, merges near colours and maps every pixel to the new
// palette; reducecols repaints the surface from a palette.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "editor/editor_session.h"

namespace korvex::editor {

// Who asks for the reduction: a full reduction (64 level groups a channel),
// the rebuild after a colour was removed, or a paste or import that brings
// the palette down to a target count (both 8 level groups a channel).
enum class ReduceMode { full = 0, remove_colour = 1, paste = 2 };

struct ReduceOutcome {
    int before = 0;             // distinct colours on the surface
    int after = 0;              // entries of the palette now
    bool palette_kept = false;  // too many colours: the old palette stays
};

// Reads e.surface (a width or height of 0 counts as 1), derives the palette,
// writes e.palette and e.pixels, then repaints the surface with reducecols
// (classes other than points) or painticon (points). `target` is the colour
// count of the paste mode; 0 means 2.
//
// The icon is a palette icon afterwards (truecolour is cleared). The undo
// history is left to the caller: the flows that reduce start it again.
ReduceOutcome histogram(EditorSession& e, ReduceMode mode, int target = 0);

// The progress text of a reduction: "Reducing colours from " and the two
// counts, for the status line.
std::string reduce_status(const ReduceOutcome& r);

// Each surface pixel takes the palette entry nearest to its colour (the
// lowest entry keeps a tie), the surface is repainted in the entry colours
// and pixeltext rebuilt.
void reducecols(EditorSession& e);

// ---- the steps of histogram, for the flows that need one of them ----

// The most colours the colour list takes; from then on an unknown colour
// gets k_surplus_index.
constexpr int k_colour_list_cap = 255;
constexpr int k_surplus_index = 65;
// Level groups a channel: 64 for the full reduction, 8 otherwise.
int levelsteps(ReduceMode mode);

using ChannelHistogram = std::array<uint32_t, 256>;

// The levels of one channel, ascending: for each of `steps` groups of
// values the value of the highest count (the later value at equal counts;
// an empty group gives its last value).
std::vector<int> channel_levels(const ChannelHistogram& hist, int steps);

// The picture in quantised colours: each channel rounded up to the first
// level not below it (above the last level: the last level), the
// transparent marker left as it is.
struct Quantised {
    std::vector<uint32_t> colours;  // in order of first appearance, at most k_colour_list_cap
    std::vector<uint32_t> counts;   // pixels of each index (k_surplus_index too)
    std::vector<uint8_t> indexes;   // of each pixel, row by row
};
Quantised quantise(const Raster& picture, uint32_t marker, int steps);

// The colours the paste mode keeps: by descending count (equal counts keep
// their order), near colours merged (distance below 61) when more than 10
// remain, then each taken only when more than 60 from the last taken one,
// up to target. The transparent marker takes no part in the distances.
std::vector<uint32_t> choose_by_frequency(const Quantised& q, int target, uint32_t marker);

// The truncated distance of two colours: the root of the summed squares of
// the channel differences.
int colour_distance(uint32_t a, uint32_t b);

}  // namespace korvex::editor
