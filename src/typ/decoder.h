// The walk over a TYP file in curf: header, index tables, records of every
// class, draw order, extended blocks.
#pragma once

#include <string>

#include "model/store.h"
#include "platform/prompt.h"

namespace korvex::typ {

using model::Store;

// The file as bytes; "" when the path is empty or names no file (with the
// message path + " doesn't exist").
std::string loadbinary(Store& s, platform::Prompt& ui, const std::string& path);

// Decodes s.curf into the tables.
void chk_typ(Store& s, platform::Prompt& ui);

// Takes bytes read elsewhere as the open TYP file and decodes them.
void open_typ_bytes(Store& s, platform::Prompt& ui, std::string bytes, const std::string& path);

// Opens a TYP file: newproject, loadbinary, chk_typ. False when nothing could
// be read.
bool loadfile(Store& s, platform::Prompt& ui, const std::string& path);

// Polygon type text of an index code.
std::string polygon_type_text(int32_t code);

// Comment lines ahead of an element: the Garmin name when that option is on.
std::string garmin_comment(const Store& s, const std::string& type_text, int cls);

// True when the file name is a path on disk and not "untitled.typ".
bool getcurf(const Store& s);

}  // namespace korvex::typ
