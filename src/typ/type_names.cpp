#include "typ/type_names.h"

#include "typ/curf_access.h"

namespace korvex::typ {

namespace {
// Garmin's custom point range, shown shifted down into the ordinary codes.
constexpr int64_t k_custom_first = 68128, k_custom_last = 70143, k_custom_shift = 57600;
constexpr int64_t k_custom_icon = 70688;
}  // namespace

// No table of Garmin's type names ships with the program, so every type is
// unnamed; custom point icons are still told apart.
std::string fnbd(const std::string& code, int cls) {
    if (cls == 2) {
        const std::string digits = code.size() > 2 ? code.substr(2) : std::string();
        int64_t v = hex_value(digits);
        if (v >= k_custom_first && v <= k_custom_last) v -= k_custom_shift;
        if (v >= k_custom_icon) return "CUSTOM ICON";
    }
    return " -";
}

}  // namespace korvex::typ
