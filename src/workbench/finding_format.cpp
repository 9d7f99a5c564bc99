#include "workbench/finding_format.h"

#include "model/store.h"
#include "platform/codepage.h"

namespace korvex::workbench {

namespace {

void append_json_string(std::string& out, const std::string& raw) {
    const std::string text =
        platform::is_valid_utf8(raw) ? raw : platform::wide_to_bytes(platform::bytes_to_wide(raw, 65001), 65001);
    static const char* hexd = "0123456789abcdef";
    out += '"';
    for (unsigned char c : text) {
        switch (c) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default:
            if (c < 0x20) {
                out += "\\u00";
                out += hexd[c >> 4];
                out += hexd[c & 15];
            } else {
                out += static_cast<char>(c);
            }
        }
    }
    out += '"';
}

}  // namespace

std::string finding_class_word(int cls) {
    switch (cls) {
    case model::k_polygons: return "polygon";
    case model::k_lines: return "line";
    case model::k_points: return "point";
    case model::k_active_lines: return "active-line";
    case model::k_extra_points: return "extra-point";
    default: return "file";
    }
}

std::string findings_json(const Findings& f) {
    std::string out = "{\"count\": " + std::to_string(f.size()) + ", \"findings\": [";
    for (size_t i = 0; i < f.size(); ++i) {
        out += i == 0 ? "\n  {\"class\": " : ",\n  {\"class\": ";
        append_json_string(out, finding_class_word(f[i].cls));
        out += ", \"type\": ";
        append_json_string(out, f[i].type);
        out += ", \"check\": ";
        append_json_string(out, f[i].check);
        out += ", \"message\": ";
        append_json_string(out, f[i].message);
        out += '}';
    }
    out += f.empty() ? "]}\n" : "\n]}\n";
    return out;
}

std::string findings_lines(const Findings& f) {
    std::string out;
    for (const Finding& x : f) {
        out += finding_class_word(x.cls);
        if (!x.type.empty()) out += ' ' + x.type;
        out += ' ' + x.check + ": ";
        // One finding, one line, whatever the message holds.
        for (char c : x.message) out += c == '\n' || c == '\r' ? ' ' : c;
        out += '\n';
    }
    return out;
}

}  // namespace korvex::workbench
