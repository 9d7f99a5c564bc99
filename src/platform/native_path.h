// File names are UTF-8 bytes inside Korvex. POSIX takes those bytes as they
// are; Windows takes names as wide characters, so a name with "ä" in it
// must be converted on the way to the system, not passed as bytes of the
// local code page.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

namespace korvex::platform {

std::filesystem::path native_path(const std::string& utf8);

// The name back as UTF-8 bytes.
std::string utf8_path(const std::filesystem::path& path);

// std::fopen on a UTF-8 name.
std::FILE* open_file(const std::string& utf8, const char* mode);

#ifdef _WIN32
std::wstring wide_name(const std::string& utf8);
std::string narrow_name(const std::wstring& wide);
#endif

}  // namespace korvex::platform
