// Style rules for mkgmap (the Mkgmap Code dialog): one rule a selected
// element, mapping an OSM tag and value to the element's Garmin type, as
// mkgmap's style files read them. The text goes to the clipboard; no file is
// written.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/store.h"
#include "platform/clipboard.h"
#include "platform/prompt.h"

namespace korvex::integration {

// The tag combo in its order; the last entry is "?".
const std::vector<std::string>& osm_tags();
// The tag selected when the dialog opens: "highway" for lines, "?" otherwise.
std::string default_tag(int cls);
// The value box's start: the element's label after the first "#", trimmed,
// each blank turned to "_" and each "'" removed; "" without a label.
std::string default_value(const model::Store& s, int cls, int32_t row);

// The element's type as a style rule names it: "0x" and two hex digits for
// a polygon or line whose subtype is 0 (mkgmap reads no subtype there), four
// for a point ("0x2a00", "0x2a01"), five for an extended type of any class
// ("0x10f00"). "" when mkgmap has no name for it: a polygon or line below
// 0x100 with a subtype.
std::string mkgmap_type(const model::Store& s, int cls, int32_t row);

struct StyleCode {
    bool ok = false;
    std::string text;  // the rules, a line end after each
};

// Create Code for the rows (store rows of the class in view, in selection
// order). Refusals: a tag shorter than 2 says "? = " and the value; an empty
// value says tag + "=?". One row gives one rule, several give one each with
// " continue" on all but the last, so that each rule lets the next run. An
// element mkgmap has no type name for gets a comment line instead.
StyleCode create_code(const model::Store& s, platform::Prompt& ui, int cls, const std::vector<int32_t>& rows,
                      const std::string& tag, const std::string& value, const std::string& resolution);

// Copy into Memory: the result box's text (UTF-8) to the clipboard and
// "Text copied"; "Click " + the Create Code caption when it is empty.
bool copy_code(platform::Clipboard& clip, platform::Prompt& ui, const std::string& text,
               const std::string& create_caption = "Create Code");

}  // namespace korvex::integration
