// Pictures brought into the bitmap: an image file (import), the clipboard's
// picture (pastebut), either over the whole bitmap or into the selection
// frame as a floating layer; the selection lifted or cut into a layer
// (copyp4). A picture over the whole bitmap of a point may give the point
// its size; a palette icon then takes a palette derived from the picture,
// a true-colour icon takes the colours as they are.
#pragma once

#include <string>
#include <vector>

#include "editor/colour_reduction.h"
#include "editor/editor_session.h"
#include "editor/tools.h"
#include "platform/clipboard.h"
#include "platform/file_dialog.h"
#include "platform/images.h"
#include "platform/prompt.h"

namespace korvex::editor {

struct PasteOptions {
    bool keep_proportions = false;  // "Keep Proportions": no stretch out of shape
};

// The filters of the import dialog.
std::vector<std::string> import_filters();

// chkbmp: a polygon or line without bitmap takes one after "Convert to
// Bitmap?" (a polygon 32 x 32, a line 2 x border + lwidth( high). True when
// the element has a bitmap.
bool chkbmp(EditorSession& e, platform::Prompt& ui);

// import: chkbmp, the file dialog (starting at pastedfile, which keeps the
// choice), the file read through codec, then import_picture. A cancelled
// dialog or a missing file ends it quietly; a PNG that cannot be read gives
// "File does not exist" or "Failed to load the file. May not be valid PNG
// format or pre-Vista operating system.".
bool import_file(EditorSession& e, ToolEngine& tools, platform::Prompt& ui, platform::FileDialog& dialogs,
                 platform::ImageCodec& codec, std::string& pastedfile, const PasteOptions& opt = {});

// The import of a picture read: a point with a selection takes it into the
// frame; other classes paste over the whole bitmap. A palette point asks
// "Convert to RGB.", "This action can not be undone." and "Continue?" and
// becomes a true-colour icon. The history starts again from the result.
bool import_picture(EditorSession& e, ToolEngine& tools, platform::Prompt& ui, const platform::Image& picture,
                    const PasteOptions& opt = {});

// pasteinto_p4's size rule for a picture over the whole bitmap: a point
// takes the size of a larger picture that fits in 128 x 128 (a point
// without bitmap the largest size of its proportions within it); a polygon
// or line refuses a picture higher ("Height of current icon must be at
// least " and the height) or wider ("Width of current icon too small!")
// than its bitmap.
bool pasteinto_p4(EditorSession& e, platform::Prompt& ui, const platform::Image& picture);

// pasteloadedpic: the picture stretched over the whole bitmap (within its
// proportions with keep_proportions), its alpha laid over the background:
// the transparent marker where the element can show it (points, and a
// palette with a transparent entry), else white. A palette icon then takes
// the palette histogram derives: all its colours for a point, two for a
// polygon or line; what it did is returned (nothing for true colour).
ReduceOutcome pasteloadedpic(EditorSession& e, const platform::Image& picture, const PasteOptions& opt = {});

// The picture stretched into the selection frame, over what lies there, as
// a floating layer. A palette icon must hold its colours: a polygon or line
// maps them to its nearest entries but refuses more new colours than it has
// entries, a point adds them as entries but refuses more than its palette
// has room for; both with "Too many colours" and "Select whole area
// instead.". Without a frame: "Select part of your bitmap".
bool paste_into_selection(EditorSession& e, ToolEngine& tools, platform::Prompt& ui, const platform::Image& picture,
                          const PasteOptions& opt = {});

// pastebut (Ctrl+V; Ctrl+P with into_selection): the clipboard's picture
// into the selection frame if there is one (always with into_selection),
// else over the whole bitmap. "Clipboard contains no picture." without one.
bool pastebut(EditorSession& e, ToolEngine& tools, platform::Prompt& ui, platform::Clipboard& clipboard,
              bool into_selection, const PasteOptions& opt = {});

// copyp4: the selection lifted (or cut) into a floating layer, and put on
// the clipboard. "Please CTRL/SHIFT or CTRL A select." without a frame.
bool copyp4(ToolEngine& tools, const EditorSession& e, platform::Prompt& ui, platform::Clipboard* clipboard, bool cut);

}  // namespace korvex::editor
