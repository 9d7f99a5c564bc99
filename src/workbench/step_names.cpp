#include "workbench/step_names.h"

#include <cstdio>

#include "model/store.h"

namespace korvex::workbench {

namespace {

const char* element_noun(int cls) {
    switch (cls) {
    case model::k_polygons: return "Polygon";
    case model::k_lines: return "Line";
    case model::k_active_lines: return "Active Line";
    case model::k_extra_points: return "Extra Point";
    default: return "Point";
    }
}

}  // namespace

std::string step_name(const std::string& verb, int64_t count, int cls) {
    if (count == 1) return verb + " " + element_noun(cls);
    return verb + " " + std::to_string(count) + " " + element_noun(cls) + "s";
}

std::string step_name_of_code(const std::string& verb, int32_t code) {
    if (code < 0) return verb;
    char digits[16];
    std::snprintf(digits, sizeof digits, "%x", static_cast<unsigned>(code));
    return verb + " 0x" + digits;
}

}  // namespace korvex::workbench
