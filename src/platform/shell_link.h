// The target of a Windows shortcut (.lnk) read from its bytes, for systems
// without the shell that would answer.
#pragma once

#include <string>
#include <string_view>

namespace korvex::platform {

// The local base path (and common suffix) the link points at, as a Windows
// path; "" when the bytes are no shortcut or hold no such path.
std::string shell_link_target(std::string_view bytes);
// The same for a file; "" when it cannot be read.
std::string read_shortcut_file(const std::string& path);

}  // namespace korvex::platform
