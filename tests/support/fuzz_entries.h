// The entry points that read outside data, each taking any bytes and going on
// to print and encode what was loaded. The fuzz targets call them, and the
// replay test runs every kept finding through them again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace korvex::fuzzing {

// A TYP file: decoded, printed as text, encoded again.
size_t typ_file(std::string_view bytes);

// A text file: loaded, printed, encoded.
size_t text_file(std::string_view bytes);

// A MapTK project: translated (also in small blocks), loaded, printed, encoded.
size_t maptk_project(std::string_view bytes);

// The element-text panel: the bytes applied as the panel text of the first
// element of each class of a small fixed project, which is then printed and
// encoded.
size_t panel_text(std::string_view bytes);

// A language file: applied, then every message, some captions and the lists
// asked for.
size_t language_file(std::string_view bytes);

// A settings file: read with every limit, written, read and written again,
// which must give the same text (aborts otherwise).
size_t settings_file(std::string_view bytes);

// Each returns the bytes of text it printed, so that a test can tell a load
// that blew up an input from one that kept to its size.

// The most text an input of n bytes may print: an index entry of three bytes
// names a whole element, whose text runs to a hundred bytes or more, and
// pictures print a symbol or two a pixel.
inline size_t printed_limit(size_t n) { return 128 * n + 4000000; }

// Runs the entry named by a findings folder ("typ", "text", "maptk",
// "panel", "language", "settings"); false for an unknown name.
bool run_entry(std::string_view name, std::string_view bytes, size_t& printed);

}  // namespace korvex::fuzzing
