// The String lines of a text that came from a UTF-8 widget or clipboard, in
// the form the readers of the open project take: a single-byte project keeps
// each label as bytes of its language's page.
#pragma once

#include <string>

#include "model/store.h"

namespace korvex::text {

// Every "String...=0xLL,text" line of utf8 re-encoded from UTF-8 into the
// page of language LL. A 65001 project, or one whose text is read as UTF-8
// (utf8txt), takes UTF-8 and gets the text unchanged. The inverse of convert
// (text_writer.h).
std::string strings_to_pages(const model::Store& s, const std::string& utf8);

// Every bare LF made CR LF, as widgets and clipboards of other systems give
// them; CR LF stays.
std::string with_crlf(const std::string& text);

}  // namespace korvex::text
