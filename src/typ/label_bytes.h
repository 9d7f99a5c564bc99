// Label bytes the text form cannot carry. A damaged record can give bytes
// below 32, bytes its code page leaves undefined (0x81 in 1252) or broken
// UTF-8; mkgmap stops on any of them ("Bad character in input"), so a text
// we write must hold none.
#pragma once

#include <string>

#include "model/store.h"

namespace korvex::typ {

// Drops from label what a text in codepage cannot carry; true when
// something was dropped. table is the cache for the code page.
bool drop_unwritable_bytes(std::string& label, int codepage, model::UndefinedBytes& table);

}  // namespace korvex::typ
