// Environment values.
#include "platform/environment.h"

#include <cstdlib>

namespace korvex::platform {

std::string SystemEnvironment::get(const std::string& name) const {
    const char* v = std::getenv(name.c_str());
    return v ? std::string(v) : std::string();
}

std::string MapEnvironment::get(const std::string& name) const {
    const auto it = values_.find(name);
    return it == values_.end() ? std::string() : it->second;
}

std::string join_path(const std::string& a, const std::string& b) {
    if (a.empty()) return b;
    if (a.back() == k_path_sep || a.back() == '/') return a + b;
    return a + k_path_sep + b;
}

}  // namespace korvex::platform
