// What a file is, told by its content: a TYP file, a text, a MapTK project,
// or none of ours. The window and korvex-cli refuse the same files with the
// same reason.
#pragma once

#include <string>
#include <string_view>

namespace korvex::text {

enum class FileKind { typ, text, prj, unknown };

// path only decides between a project of keys alone and no file of ours.
FileKind file_kind(std::string_view data, const std::string& path);
// Why data cannot be read as kind at all; "" when it can.
std::string unreadable_reason(std::string_view data, FileKind kind);
// Why data cannot be opened as a TYP file; "" when it can.
std::string not_typ_reason(std::string_view data);
// Why data cannot be opened as a text (or a project); "" when it can.
std::string not_text_reason(std::string_view data, const std::string& path);

}  // namespace korvex::text
