// The data folder and its sub-folders.
#include "workbench/data_folder.h"

#include <filesystem>
#include <system_error>

#include "platform/files.h"

namespace korvex::workbench {
namespace {

constexpr const char* k_subfolders[] = {"txt",    "pal",       "typ",  "system", "system/bin",
                                        "themes", "languages", "logs", "dictionaries"};
constexpr const char* k_marker_text = "1001";

}  // namespace

std::string under(const std::string& d, const std::string& relative) {
    std::string rel = relative;
    for (char& c : rel)
        if (c == '/' || c == '\\') c = platform::k_path_sep;
    return platform::join_path(d, rel);
}

std::string data_folder_path(const platform::Environment& env, const std::string& program_folder) {
#ifdef _WIN32
    std::string base = env.get("AppData");
#else
    // Only an absolute XDG_DATA_HOME counts; a relative one is to be ignored.
    std::string base = env.get("XDG_DATA_HOME");
    if (base.empty() || base.front() != '/') {
        const std::string home = env.get("HOME");
        base = home.empty() ? std::string() : under(home, ".local/share");
    }
#endif
    if (base.empty()) return program_folder;
    return under(base, "Halden/krv6");
}

DataFolder prepare_data_folder(const platform::Environment& env, const std::string& program_folder) {
    DataFolder df;
    df.path = data_folder_path(env, program_folder);
    std::error_code ec;
    for (const char* sub : k_subfolders) {
        std::filesystem::create_directories(under(df.path, sub), ec);
        if (ec) df.ok = false;
    }
    const std::string marker = under(df.path, "flg");
    if (!platform::file_exists(marker)) {
        df.first_start = true;
        if (!platform::write_file_atomic(marker, k_marker_text)) df.ok = false;
    }
    return df;
}

}  // namespace korvex::workbench
