#include "workbench/recent.h"

#include "platform/files.h"

namespace korvex::workbench {

std::string normalise_separators(std::string path, char sep) {
    const char other = sep == '/' ? '\\' : '/';
    for (char& c : path)
        if (c == other) c = sep;
    return path;
}

namespace {

// A path the menu can open again: a drive path on Windows, an absolute one
// elsewhere.
bool reopenable(const std::string& path, char sep) {
    if (path.empty()) return false;
    if (sep == '\\') return path[0] != '\\';
    return path[0] == '/';
}

}  // namespace

void updatmff(RecentList& list, const std::string& path, char sep) {
    const std::string p = normalise_separators(path, sep);
    if (!reopenable(p, sep)) return;
    int k = k_recent_count - 1;  // absent: everything moves and the last drops
    for (int i = 0; i < k_recent_count; ++i) {
        if (normalise_separators(list[static_cast<size_t>(i)], sep) == p) {
            k = i;
            break;
        }
    }
    for (int i = k; i > 0; --i) list[static_cast<size_t>(i)] = std::move(list[static_cast<size_t>(i - 1)]);
    list[0] = p;
}

std::vector<RecentEntry> recent_entries(const RecentList& list, char sep) {
    std::vector<RecentEntry> out;
    out.reserve(list.size());
    for (const auto& entry : list) {
        RecentEntry e;
        e.path = normalise_separators(entry, sep);
        e.visible = e.path.find_first_not_of(' ') != std::string::npos;
        e.greyed = e.visible && !platform::file_exists(e.path);
        out.push_back(std::move(e));
    }
    return out;
}

}  // namespace korvex::workbench
