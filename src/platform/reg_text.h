// The registry's text form: the files a Wine prefix keeps its registry in
// (system.reg, user.reg) and the REGEDIT4 files the registry editor imports.
#pragma once

#include <string>
#include <string_view>

#include "platform/registry_tree.h"

namespace korvex::platform {

// Reads "[Key\\Path]" sections and their values into tree. String values
// keep their escapes undone, dword: values become decimal text, hex: values
// their bytes (hex(2), hex(7) and str(n) values the text they hold). A key
// line starting with a hive name ("HKEY_LOCAL_MACHINE\...") has it removed,
// as the tree is one hive. Lines that are none of these are skipped.
void read_reg_text(std::string_view text, RegistryTree& tree);

// The quoted form of a value's text in a REGEDIT4 file: backslashes and
// quotes escaped.
std::string reg_quote(const std::string& text);

}  // namespace korvex::platform
