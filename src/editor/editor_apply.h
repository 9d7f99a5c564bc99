// Apply in the icon editor: the checks of the form, in their order, each
// refusing with its message and leaving the tables untouched; then the
// commit of the working copy into the element's columns and text, and the
// change note for the log.
#pragma once

#include <cstdint>
#include <string>

#include "editor/editor_session.h"
#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::editor {

struct ApplyOutcome {
    bool committed = false;
    bool type_changed = false;
    bool drawdirty = false;  // the draw order list changed
    bool others_changed = false;  // other elements took a colour too (an activity's border colour)
    int32_t row = -1;        // the element's store row afterwards: a new type moves it among its class
    std::string note;        // the change note for the log, "" when nothing changed
    std::string focus;       // a refused field that takes the focus: "type", "draworder"; "" for none
};

// What the form holds beyond the working copy.
struct ApplyForm {
    bool filter_panel_open = false;  // a filter's Apply or Cancel is pending
    bool resize_open = false;        // the resize frame of a point is open
    bool stretch = true;             // its resize stretches the picture (else pads it)
    bool apply_border = false;       // active line: "Apply Border" ticked
};

// Runs every check and commits. On a refusal nothing in the store changed
// and the editor stays open.
ApplyOutcome apply(model::Store& s, EditorSession& e, platform::Prompt& ui, const ApplyForm& form = {});

// The type code of the fields: type digits and two subtype digits, upper case.
std::string type_code(const EditorSession& e);

// fnpolyact: the activity code of an index of the activity list.
std::string fnpolyact(int index);

}  // namespace korvex::editor
