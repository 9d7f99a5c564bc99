// Expected paths are written with "/"; Windows joins with "\". A test
// compares a path the code made with one it spells through preferred().
#pragma once

#include <filesystem>
#include <string>

namespace korvex::testing {

inline std::string preferred(const std::string& path) {
    return std::filesystem::path(path).make_preferred().string();
}

}  // namespace korvex::testing
