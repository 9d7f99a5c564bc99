// The extended points while the editor is open on one of them: the list
// that goes from one point to another without closing, the checks of an
// extended point's pictures before it is stored (poiextraset) with their
// log lines, and the step to another point.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "editor/editor_apply.h"
#include "editor/editor_session.h"
#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::editor {

struct ExtraPointItem {
    int32_t row = -1;       // store row, pt_n + k
    std::string name;       // "0x" and the type digits, and the label if any
    bool has_data = false;  // a picture to load
};

// The extended points in list order.
std::vector<ExtraPointItem> extra_point_list(const model::Store& s);

// poiextraset's checks of an extended point (k its place in the list): a
// pixel beyond the palette gives "icon:" k " cols dont match", a
// true-colour picture without pixels "no day file", a palette picture
// without colours " Colour total?". Lines about the night picture carry
// "+N" behind the number. Nothing is shown: the lines go to the log.
std::vector<std::string> poiextraset(const EditorSession& e, int k);

// A click on another point of the list. A point without a picture shows
// " No data for " and its name. With edits, "Wish to keep these changes?":
// yes stores them (poiextraset's lines go to `log`, Apply's outcome to
// `applied`), no drops them. True when the editor may load the clicked
// point; false keeps the working copy as it is.
bool leave_extra_point(model::Store& s, EditorSession& e, const ExtraPointItem& to, platform::Prompt& ui,
                       std::vector<std::string>& log, ApplyOutcome& applied);

}  // namespace korvex::editor
