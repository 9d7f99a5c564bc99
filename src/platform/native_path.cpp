#include "platform/native_path.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace korvex::platform {

#ifdef _WIN32

std::wstring wide_name(const std::string& utf8) {
    if (utf8.empty()) return {};
    const int n = static_cast<int>(utf8.size());
    std::wstring w(utf8.size(), L'\0');
    const int got = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), n, w.data(), n);
    w.resize(got > 0 ? static_cast<size_t>(got) : 0);
    return w;
}

std::filesystem::path native_path(const std::string& utf8) { return std::filesystem::path(wide_name(utf8)); }

std::string utf8_path(const std::filesystem::path& path) { return narrow_name(path.native()); }

std::string narrow_name(const std::wstring& w) {
    if (w.empty()) return {};
    const int n = static_cast<int>(w.size());
    const int room = WideCharToMultiByte(CP_UTF8, 0, w.data(), n, nullptr, 0, nullptr, nullptr);
    std::string out(room > 0 ? static_cast<size_t>(room) : 0, '\0');
    if (room > 0) WideCharToMultiByte(CP_UTF8, 0, w.data(), n, out.data(), room, nullptr, nullptr);
    return out;
}

std::FILE* open_file(const std::string& utf8, const char* mode) {
    const std::string m(mode);
    return _wfopen(wide_name(utf8).c_str(), std::wstring(m.begin(), m.end()).c_str());
}

#else

std::filesystem::path native_path(const std::string& utf8) { return std::filesystem::path(utf8); }

std::string utf8_path(const std::filesystem::path& path) { return path.string(); }

std::FILE* open_file(const std::string& utf8, const char* mode) { return std::fopen(utf8.c_str(), mode); }

#endif

}  // namespace korvex::platform
