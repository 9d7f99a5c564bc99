// Case and blanks of the key words of an element's text, byte by byte.
#pragma once

#include <algorithm>
#include <cctype>
#include <string>

namespace korvex::editor {

inline std::string lower(std::string t) {
    std::transform(t.begin(), t.end(), t.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return t;
}

// Without leading and trailing white space, in upper case.
inline std::string upper_trim(std::string t) {
    while (!t.empty() && std::isspace(static_cast<unsigned char>(t.back()))) t.pop_back();
    size_t p = 0;
    while (p < t.size() && std::isspace(static_cast<unsigned char>(t[p]))) ++p;
    t.erase(0, p);
    std::transform(t.begin(), t.end(), t.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return t;
}

}  // namespace korvex::editor
