// Opening an element in the editor: the working copy is filled from the
// element's columns and text (palett), and the surface and history are
// prepared (activ).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "editor/editor_session.h"
#include "model/store.h"

namespace korvex::editor {

struct OpenRequest {
    int curclass = 0;                 // store class 0..4 of the element in view
    int32_t row = -1;                 // store row (ln_n + k, pt_n + k for the extended classes)
    std::vector<int32_t> group;       // rows of a multi edit of polygons or lines; empty for one
    uint32_t transparentcolour = k_transparent_magenta;
};

// palett + activ. A group of two or more polygons or lines becomes class 5
// or 7, sorted by row, its first element supplying the values shown; a
// group of one is that element alone.
EditorSession open_element(const model::Store& s, const OpenRequest& r);

// A text of every flag byte of the form, to tell on Apply whether one changed.
std::string fnchkbtns(const EditorSession& e);

// The colour of one colour line: "#RRGGBB" read in text order, "none" the
// transparency marker. False when the line holds neither.
bool colour_of_line(const std::string& line, uint32_t marker, uint32_t& colour);
// The colour lines of a column, up to the first blank line (a point's night
// part follows one).
std::vector<std::string> colour_lines(const std::string& column);

// The non-empty lines of a column, CR LF or LF ended.
std::vector<std::string> split_rows(const std::string& column);
// The numbers of an Xpm line's quoted head: width, height, colours, cpp.
std::vector<int> head_numbers(const std::string& xpm);

// The type fields of a type text ("0x2A07", "02A07", "0x10f03", "0x13"):
// three digits of type at most, and two of subtype.
void split_type(std::string code, std::string& type, std::string& subtype);

}  // namespace korvex::editor
