// The recent-file list of the File menu: twelve entries, newest first; an
// empty entry is hidden, an entry whose file has gone is shown greyed.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace korvex::workbench {

constexpr int k_recent_count = 12;
using RecentList = std::array<std::string, k_recent_count>;

// The platform's separator; the other one is turned into it.
#ifdef _WIN32
constexpr char k_native_separator = '\\';
#else
constexpr char k_native_separator = '/';
#endif

// A path with the foreign separator replaced by sep.
std::string normalise_separators(std::string path, char sep = k_native_separator);

// Moves path to the head of the list, or inserts it there and drops the last
// entry. A path the menu could not reopen is ignored: with '\\' one that
// starts with a separator (no drive), with '/' one that is not absolute.
void updatmff(RecentList& list, const std::string& path, char sep = k_native_separator);

// What one menu entry shows.
struct RecentEntry {
    std::string path;      // normalised
    bool visible = false;  // false for an empty entry
    bool greyed = false;   // the file no longer exists
};

// The twelve entries as the menu shows them.
std::vector<RecentEntry> recent_entries(const RecentList& list, char sep = k_native_separator);

}  // namespace korvex::workbench
