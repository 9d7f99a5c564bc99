#include "workbench/panel_notes.h"

#include <string_view>

#include "model/store.h"

namespace korvex::workbench {

namespace {

constexpr const char* k_notes[] = {"; Changing type number effects draworder!",
                                   "; use Draworder Main Menu option to change draworder"};

}  // namespace

std::string with_panel_notes(const std::string& code, int cls) {
    if (cls != model::k_polygons || code.empty()) return code;
    const size_t nl = code.find('\n');
    const std::string eol = nl != std::string::npos && nl > 0 && code[nl - 1] == '\r' ? "\r\n" : "\n";
    std::string notes;
    for (const char* n : k_notes) notes += n + eol;
    const size_t at = nl == std::string::npos ? code.size() : nl + 1;
    std::string out = code.substr(0, at);
    if (nl == std::string::npos) out += eol;
    return out + notes + code.substr(at);
}

std::string without_panel_notes(const std::string& panel) {
    std::string out;
    out.reserve(panel.size());
    size_t pos = 0;
    while (pos < panel.size()) {
        size_t end = panel.find('\n', pos);
        end = end == std::string::npos ? panel.size() : end + 1;
        const std::string_view line(panel.data() + pos, end - pos);
        std::string_view bare = line;
        while (!bare.empty() && (bare.back() == '\n' || bare.back() == '\r')) bare.remove_suffix(1);
        bool note = false;
        for (const char* n : k_notes) note = note || bare == n;
        if (!note) out.append(line);
        pos = end;
    }
    return out;
}

}  // namespace korvex::workbench
