// "Colour Count:": how many pixels each palette entry paints, and a walk
// from the current entry to the next rarer one, so that stray colours can
// be found; the entry found blinks on the canvas.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "editor/editor_session.h"

namespace korvex::editor {

// The colour an entry blinks in.
constexpr uint32_t k_blink_colour = rgb(49, 143, 252);
// Times the entry blinks.
constexpr int k_blinks = 3;

// Pixels of each entry, [entry - 1].
std::vector<long> colour_counts(const EditorSession& e);

// The entry after `current` in the order of count, then entry number: the
// rarest entry when current is none, the rarest again after the most
// frequent. 0 for an empty palette.
int next_rarer(const std::vector<long>& counts, int current);

// The report of an entry: "Colour Count:" with the entry and its count.
std::string colour_count_text(const std::vector<long>& counts, int entry);

// One half of a blink, for the view only: a copy of view in which the
// entry's pixels (those still showing the entry's colour) take the blink
// colour. The surface and the pixels stay as they are, so a tool used while
// the entry blinks never meets the blink colour.
Raster blink_view(const Raster& view, const EditorSession& e, int entry);

}  // namespace korvex::editor
