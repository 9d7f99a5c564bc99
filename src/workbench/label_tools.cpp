#include "workbench/label_tools.h"

#include "text/string_lines.h"
#include "text/text_writer.h"
#include "typ/curf_access.h"
#include "workbench/cell_label.h"
#include "workbench/element_rows.h"
#include "workbench/report_file.h"
#include "workbench/type_key.h"

namespace korvex::workbench {

namespace {

constexpr std::string_view k_tag = "NOT in STYLE";
constexpr size_t k_label_block = 4;

// The section without the tag: "NOT in STYLE " where the import put it in
// front of a label, a String line left empty goes.
std::string untagged(const std::string& section) {
    std::string out;
    size_t pos = 0;
    while (pos < section.size()) {
        size_t end = section.find('\n', pos);
        end = end == std::string::npos ? section.size() : end + 1;
        std::string piece = section.substr(pos, end - pos);
        pos = end;
        for (size_t at = piece.find(k_tag); at != std::string::npos; at = piece.find(k_tag, at)) {
            size_t len = k_tag.size();
            if (at + len < piece.size() && piece[at + len] == ' ') ++len;
            piece.erase(at, len);
        }
        const std::string low = typ::lower(piece);
        const size_t comma = piece.find(',');
        if (low.rfind("string", 0) == 0 && comma != std::string::npos &&
            piece.find_first_not_of(" \r\n", comma + 1) == std::string::npos)
            continue;
        out += piece;
    }
    return out;
}

}  // namespace

bool chk_nolabel(const model::Store& s, int cls, int32_t row) {
    return typ::contains_caseless(section_text(s, cls, row), "=nolabel");
}

int32_t remnotis(model::Store& s, platform::Prompt& ui) {
    const int cls = s.curclass;
    const int32_t first = first_row(s, cls), end = end_row(s, cls);
    if (end <= first) {
        ui.message("No data.");
        return 0;
    }
    int32_t count = 0;
    for (int32_t row = first; row < end; ++row) {
        if (!typ::contains_caseless(section_text(s, cls, row), "not in style")) continue;
        const std::string section = text::strings_to_pages(
            s, text::convert(s, text::create_code(s, row - first + 1, cls, true) + "[end]\r\n"));
        const std::string out = untagged(section);
        ++count;
        if (out != section) parse_into(s, ui, cls, row, out);
    }
    if (count > 0) s.dirty = true;
    ui.message(std::to_string(count) + " Found");
    return count;
}

void extra_poi_labels(const model::Store& s, platform::Prompt& ui, const std::string& data_folder) {
    const std::string& block = s.blocks[k_label_block];
    std::string report;
    size_t at = 0;
    while (at < block.size()) {
        size_t end = block.find('\0', at);
        if (end == std::string::npos) end = block.size();
        if (end > at) report += block.substr(at, end - at) + "\r\n";
        at = end + 1;
    }
    if (report.empty()) {
        ui.message("No Extra Label Data Found.");
        return;
    }
    show_report(ui, data_folder, "system/bin/extralabels.txt", "EXTRA LABELS", report);
}

}  // namespace korvex::workbench
