#include "workbench/pending.h"

#include <cstdio>

#include "platform/files.h"

namespace korvex::workbench {

std::string clean_pending(const std::string& text, char sep) {
    std::string path;
    path.reserve(text.size());
    for (char c : text)
        if (c != '\0' && c != '\b' && c != '\n' && c != '\r' && c != '"') path += c;
    // The writer of the file may be another program: only a full path can be
    // trusted to mean the same file here.
    const bool full = sep == '\\' ? path.find(':') != std::string::npos : !path.empty() && path[0] == '/';
    return full ? path : std::string();
}

std::string take_pending(const std::string& data_folder, char sep) {
    const std::string cc = data_folder + k_native_separator + "system" + k_native_separator + "cc";
    if (!platform::file_exists(cc)) return {};
    auto text = platform::read_file(cc);
    // Taken once, whatever it holds: a bad entry must not come back at every start.
    std::remove(cc.c_str());
    if (!text) return {};
    std::string path = clean_pending(*text, sep);
    if (path.empty() || !platform::file_exists(path)) return {};
    return path;
}

}  // namespace korvex::workbench
