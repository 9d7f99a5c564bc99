// Printing the tables as text: one section an element, and the whole file.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "model/store.h"
#include "platform/clock.h"
#include "platform/prompt.h"

namespace korvex::text {

using model::Store;

// Receives the text as it is produced, so a large file is never held twice.
using TextSink = std::function<void(std::string_view)>;

constexpr int k_kind_utf8 = 14;

// One element as a section ("[_polygon]" ... "[end]" CR LF). row counts from 1
// within its class; class 3 adds ln_n and class 4 adds pt_n.
std::string create_textfile(Store& s, int32_t row, int cls);

// The "[_drawOrder]" section.
std::string drword(const Store& s);

// The whole text file: head, [_id], draw order, every class in order.
// False with "Please enter valid PID at the top." / "...FID..." when an
// identifier is 0. Leaves dirty alone: the caller clears it once the file
// is committed.
// require_ids false prints identifiers of 0 as they are (a text as a view of
// a file, not a save for a device).
bool save_txt(Store& s, platform::Prompt& ui, const platform::Clock& clock, int kind, const TextSink& out,
              bool require_ids = true);

// The text of the element on show for the code panel. Its strings are bytes
// of their language's page (UTF-8 in a 65001 project); see convert.
std::string create_code(Store& s, int32_t row, int cls, bool forfile);

// Every String line of text re-encoded from its language's page to UTF-8, for
// a widget that shows UTF-8. A 65001 project's strings are UTF-8 already and
// come back unchanged.
std::string convert(const Store& s, const std::string& text);

}  // namespace korvex::text
