// The pending file: another program (or a second start) leaves the path of a
// file to open in the data folder's "system/cc"; it is taken once.
#pragma once

#include <string>

#include "workbench/recent.h"

namespace korvex::workbench {

// The pending file's text made a path: characters 0, 8, 10, 13 and '"' go.
// "" when what is left cannot name a file on disk: with '\\' it must hold ':'
// (a drive), with '/' it must be absolute.
std::string clean_pending(const std::string& text, char sep = k_native_separator);

// Reads and deletes data_folder/system/cc. The path it names, or "" when the
// file is absent, its text is no usable path, or that file does not exist.
std::string take_pending(const std::string& data_folder, char sep = k_native_separator);

}  // namespace korvex::workbench
