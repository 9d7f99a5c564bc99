// The clipboard form of elements: each element as the text panel shows it,
// headed by a marker, "krv" and the class digit ("krv3,41" with an active
// line's activity), the element's type and, for a polygon, its draw-order
// entry. A text of plain sections ("[_polygon]" ... "[end]") reads too.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "model/store.h"

namespace korvex::workbench {

// Every level of every polygon type, as draworder_layers gives them.
using Layers = std::unordered_map<int32_t, std::vector<int>>;

// get_code: the clipboard text of one element: the class's store row. A
// polygon's note names every layer of its type (layers: looked up once by a
// caller that copies many; null: read from drwlist). Strings stay bytes of
// their pages (text::convert makes them UTF-8).
std::string get_code(model::Store& s, int cls, int32_t row, const Layers* layers = nullptr);

// One element of a clipboard text.
struct ClipSection {
    int cls = -1;             // 0 polygon, 1 line, 2 point, 3 active line
    std::string section;      // "[_polygon]" ... "[end]" CR LF, lines CR LF ended
    int32_t code = -1;        // its type (type << 8 | subtype); -1 when it has none
    std::vector<int> levels;  // a polygon's draw-order levels from its note; none: no note
    std::string activity;     // an active line's code from its marker ("41"); "" none
};

struct Clip {
    bool marked = false;                // a "krv" marker was found
    bool any_bracket = false;           // the text holds "["
    std::vector<ClipSection> sections;  // the elements, in text order
};

// Reads a clipboard text; a lone line feed counts as a line end. Sections
// without "[end]" get one. A "[_drawOrder]" section gives levels to the
// polygons that bring no note of their own.
Clip read_clip(const std::string& text);

// Class names of the refusal "Change to " + name + " .".
const char* class_plural(int cls);

}  // namespace korvex::workbench
