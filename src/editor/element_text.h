// The element's text as the commit rewrites it: the section lines of the
// text form, the picture block (Xpm line, colour lines, rows) made from the
// working copy, and key lines replaced or inserted.
#pragma once

#include <string>
#include <vector>

#include "editor/editor_session.h"

namespace korvex::editor {

// Lines without their ends; a section without "[end]", its ruler and what
// follows "[end]".
std::vector<std::string> section_lines(const std::string& text);
std::string join_section(const std::vector<std::string>& lines);

// The first line whose lower-cased, trimmed form starts with one of the
// keys; -1 for none.
int find_key(const std::vector<std::string>& lines, std::initializer_list<const char*> keys);
// Removes every line that starts with one of the keys; returns where the
// first one was (-1 when none).
int remove_keys(std::vector<std::string>& lines, std::initializer_list<const char*> keys);
// The day picture's Xpm line (Xpm=, DayXpm=); -1 for none.
int xpm_line(const std::vector<std::string>& lines);
// One past the day picture: past its quoted colour lines and rows.
int picture_end(const std::vector<std::string>& lines, int xpm);

// changecode: each line of the element's own text that holds key (a
// case-sensitive find) becomes newline; empty lines dropped; joined by
// CR LF without a trailing one.
std::string changecode(const std::string& column, const std::string& key, const std::string& newline);

// The day picture of the working copy as section lines: the Xpm line (its
// key as in old_xpm), colour lines, quoted rows.
std::vector<std::string> picture_lines(const EditorSession& e, const std::string& old_xpm);
// A point's night picture: the NightXpm= line (its tail as in old_head),
// colour lines and rows; none for a point without night.
std::vector<std::string> night_lines(const EditorSession& e, const std::string& old_head);
// The colour lines only, for a member of a group.
std::vector<std::string> colour_block(const EditorSession& e);

}  // namespace korvex::editor
