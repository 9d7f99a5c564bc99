// The convolution filters of the icon editor: each works on the whole
// picture at once, reading it before anything is written, and takes the
// result in as a new picture so that the number of colours can grow and
// shrink.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "editor/editor_session.h"
#include "platform/prompt.h"

namespace korvex::editor {

// The filter codes, as the menu calls them.
enum FilterCode : int {
    f_emboss = 0, f_extrude = 1, f_sharpen_gentle = 3, f_sharpen_hard = 4, f_soft_outline = 5, f_hard_outline = 6,
    f_blur = 7,
};

struct FilterDef {
    int code;
    const char* caption;
    // Weights of the ring (x-1,y-1), (x-1,y), (x-1,y+1), (x,y+1), (x+1,y+1),
    // (x+1,y), (x+1,y-1), (x,y-1); the difference filters have none.
    std::array<int, 8> ring;
    int centre;
    int bias;
};

// The filters in menu order.
const std::vector<FilterDef>& filter_table();
// The filter of a code; nullptr for none.
const FilterDef* filter_of(int code);

// The filtered picture. Pixels of the marker colour are neither read (a
// transparent or missing neighbour counts as 0) nor written. Each channel
// above 255 becomes 255, below 50 becomes 0. nullopt when the divisor is 0
// at the first opaque pixel (Sharpen Hard): the picture stays as it was.
std::optional<Raster> filter_picture(const Raster& in, int code, uint32_t marker);

// Filter: runs a filter on the whole bitmap. For codes above 1 an icon
// below 16 on both sides gets "Filters work only on width and height > 16."
// and is filtered all the same; a true-colour icon is refused with
// "Convert to 256 Colours first."; an icon with a transparent entry and an
// undo history asks "All previous undos will be cleared." / "Continue
// anyway?". The result becomes a new picture (histogram); the palette and
// picture before are kept so that Ctrl+Z brings them back, and the history
// starts again. Returns true when the picture changed.
bool Filter(EditorSession& e, int code, platform::Prompt& ui);

}  // namespace korvex::editor
