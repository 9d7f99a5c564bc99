// Writing the working copy back into one element: its section with the
// changed parts patched, read back by the class reader; and the polygon's
// draw order.
#pragma once

#include <cstdint>
#include <string>

#include "editor/editor_session.h"
#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::editor {

// What the commit rewrites in an element's section.
struct Patch {
    bool type = false, labels = false, fonts = false, widths = false, orient = false;
    bool picture = false;       // the whole day picture from the working copy
    bool colours_only = false;  // a group member: colours, its own head and rows
};

// The row's index within its class (active lines and extra points count from 0).
int32_t local_row(const model::Store& s, int cls, int32_t row);
// The element's own text column.
std::string original_text(const model::Store& s, int cls, int32_t row);
// The element's full section with the patches applied.
std::string patched_section(model::Store& s, const EditorSession& e, int cls, int32_t row, const Patch& p);
// The line's section with its second (border) colour set to colour.
std::string border_section(model::Store& s, int cls, int32_t row, uint32_t colour);
// Reads a section into the row, as the text panel's apply does.
void reparse(model::Store& s, platform::Prompt& ui, int cls, int32_t row, const std::string& section);
// The polygon's level in drwlist and pg_drw; "" or "0" for none.
void set_level(model::Store& s, int32_t row, const std::string& level);

}  // namespace korvex::editor
