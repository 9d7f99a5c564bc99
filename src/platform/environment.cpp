// Environment values.
#include "platform/environment.h"

#include <cstdlib>

#include "platform/native_path.h"

namespace korvex::platform {

// On Windows the narrow values are in the local code page; the wide ones,
// as UTF-8, are the paths the rest of the program expects (a user folder
// with an umlaut in its name included).
std::string SystemEnvironment::get(const std::string& name) const {
#ifdef _WIN32
    const wchar_t* v = _wgetenv(wide_name(name).c_str());
    return v ? narrow_name(v) : std::string();
#else
    const char* v = std::getenv(name.c_str());
    return v ? std::string(v) : std::string();
#endif
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
