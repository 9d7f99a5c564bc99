// The program's folder and its bundled data.
#include "platform/data_dirs.h"

#include <filesystem>
#include <iterator>
#include <optional>
#include <string_view>
#include <system_error>

#include "platform/environment.h"
#include "platform/files.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace korvex::platform {

namespace {

namespace fs = std::filesystem;

// The source folder a build folder was configured from, "" when the folder
// is no build folder.
std::string configured_source(const std::string& build_folder) {
    const std::optional<std::string> cache = read_file(join_path(build_folder, "CMakeCache.txt"));
    if (!cache) return {};
    constexpr std::string_view key = "CMAKE_HOME_DIRECTORY:INTERNAL=";
    size_t at = cache->find(key);
    while (at != std::string::npos && at > 0 && (*cache)[at - 1] != '\n') at = cache->find(key, at + 1);
    if (at == std::string::npos) return {};
    const size_t from = at + key.size();
    size_t end = cache->find('\n', from);
    if (end == std::string::npos) end = cache->size();
    if (end > from && (*cache)[end - 1] == '\r') --end;
    return cache->substr(from, end - from);
}

bool is_folder(const std::string& path) {
    std::error_code ec;
    return !path.empty() && fs::is_directory(path, ec);
}

#ifdef _WIN32
std::string folder_of(const std::string& file) {
    const size_t sep = file.find_last_of("/\\");
    if (sep == std::string::npos) return {};
    return sep == 0 ? file.substr(0, 1) : file.substr(0, sep);
}
#endif

}  // namespace

std::string program_folder(const std::string& argv0) {
#ifdef _WIN32
    wchar_t wide[32768];
    const DWORD n = GetModuleFileNameW(nullptr, wide, static_cast<DWORD>(std::size(wide)));
    if (n > 0 && n < std::size(wide)) {
        const int len = WideCharToMultiByte(CP_UTF8, 0, wide, static_cast<int>(n), nullptr, 0, nullptr, nullptr);
        std::string path(static_cast<size_t>(len), '\0');
        WideCharToMultiByte(CP_UTF8, 0, wide, static_cast<int>(n), path.data(), len, nullptr, nullptr);
        return folder_of(path);
    }
#else
    std::error_code ec;
    const fs::path self = fs::read_symlink("/proc/self/exe", ec);
    if (!ec && self.is_absolute()) return self.parent_path().string();
#endif
    // A bare name was found on PATH: its folder cannot be told from it.
    if (argv0.find_first_of(k_path_sep == '/' ? "/" : "/\\") == std::string::npos) return {};
    std::error_code abs_ec;
    const fs::path full = fs::absolute(argv0, abs_ec);
    return abs_ec ? std::string() : full.lexically_normal().parent_path().string();
}

std::string bundled_data_folder(const std::string& exe_folder) {
    // An unknown folder is not the working folder, which may be any build folder.
    if (exe_folder.empty()) return {};
    const std::string source = configured_source(exe_folder);
    if (!source.empty() && is_folder(join_path(source, "data"))) return join_path(source, "data");
#ifdef _WIN32
    return exe_folder;
#else
    return (fs::path(exe_folder) / ".." / "share" / "korvex").lexically_normal().string();
#endif
}

std::string bundled_path(const std::string& bundled, const std::string& relative) {
    std::string rel = relative;
    for (char& c : rel)
        if (c == '/' || c == '\\') c = k_path_sep;
    return join_path(bundled, rel);
}

}  // namespace korvex::platform
