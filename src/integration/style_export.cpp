#include "integration/style_export.h"

#include <algorithm>

#include "typ/curf_access.h"

namespace korvex::integration {

namespace {

constexpr int64_t k_first_extended = 0x10000;

std::string trimmed(const std::string& t) {
    const size_t a = t.find_first_not_of(" \t\r\n");
    if (a == std::string::npos) return {};
    return t.substr(a, t.find_last_not_of(" \t\r\n") - a + 1);
}

const std::string& column(const std::vector<std::string>& c, int32_t row) {
    static const std::string empty;
    return row >= 0 && static_cast<size_t>(row) < c.size() ? c[static_cast<size_t>(row)] : empty;
}

// The type digits of an element: five for lines and points, four or five
// for polygons; "" when the row has none.
std::string type_digits(const model::Store& s, int cls, int32_t row) {
    std::string t;
    if (cls == model::k_polygons) {
        t = column(s.pg_typ, row);
    } else if (cls == model::k_lines || cls == model::k_active_lines) {
        const std::string& lab = column(s.ln_lab, row);
        t = lab.substr(0, lab.find('#'));
    } else if (cls == model::k_points) {
        t = column(s.pt_typ, row);
    }
    t = trimmed(t);
    if (t.size() > 2 && t[0] == '0' && (t[1] == 'x' || t[1] == 'X')) t.erase(0, 2);
    if (t.empty() || !std::all_of(t.begin(), t.end(), [](char c) { return std::isxdigit(static_cast<unsigned char>(c)); }))
        return {};
    return t;
}

// A value mkgmap reads as one word stands bare; anything else is quoted.
// The value holds no "'", so the quotes cannot be broken.
std::string rule_value(const std::string& v) {
    const bool word = std::all_of(v.begin(), v.end(), [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '-' || c == '.' || c == ':';
    });
    return word ? v : "'" + v + "'";
}

}  // namespace

const std::vector<std::string>& osm_tags() {
    static const std::vector<std::string> k{"aeroway", "amenity",  "barrier",  "boundary", "building", "craft",
                                            "emergency", "geological", "highway", "historic", "landuse", "leisure",
                                            "man_made", "military", "natural", "power",    "railway",  "shop",
                                            "sport",   "tourism",  "waterway", "?"};
    return k;
}

std::string default_tag(int cls) { return cls == model::k_lines ? "highway" : "?"; }

std::string default_value(const model::Store& s, int cls, int32_t row) {
    const std::string& lab = cls == model::k_polygons                                  ? column(s.pg_lab, row)
                             : cls == model::k_lines || cls == model::k_active_lines ? column(s.ln_lab, row)
                                                                                       : column(s.pt_lab, row);
    const size_t hash = lab.find('#');
    if (hash == std::string::npos) return {};
    std::string v = trimmed(lab.substr(hash + 1));
    v.erase(std::remove(v.begin(), v.end(), '\''), v.end());
    v = trimmed(v);
    std::replace(v.begin(), v.end(), ' ', '_');
    return v;
}

std::string mkgmap_type(const model::Store& s, int cls, int32_t row) {
    const std::string digits = type_digits(s, cls, row);
    if (digits.empty() || digits.size() > 5) return {};
    const int64_t v = typ::hex_value(digits);
    if (v >= k_first_extended) return "0x" + typ::lower(typ::hex(v));
    const int64_t type = v >> 8, sub = v & 0xff;
    if (type == 0) return {};
    if (cls == model::k_points) return "0x" + typ::lower(typ::hex2(typ::hex(type)) + typ::hex2(typ::hex(sub)));
    if (sub != 0) return {};
    return "0x" + typ::lower(typ::hex2(typ::hex(type)));
}

StyleCode create_code(const model::Store& s, platform::Prompt& ui, int cls, const std::vector<int32_t>& rows,
                      const std::string& tag_in, const std::string& value_in, const std::string& resolution_in) {
    StyleCode out;
    const std::string tag = trimmed(tag_in), value = trimmed(value_in), resolution = trimmed(resolution_in);
    if (tag.size() < 2) {
        ui.message("? = " + value_in);
        return out;
    }
    if (value.empty()) {
        ui.message(tag + "=?");
        return out;
    }
    std::vector<int32_t> kept;
    for (int32_t r : rows)
        if (r >= 0) kept.push_back(r);
    for (size_t k = 0; k < kept.size(); ++k) {
        const std::string type = mkgmap_type(s, cls, kept[k]);
        if (type.empty()) {
            out.text += "# 0x" + type_digits(s, cls, kept[k]) + ": mkgmap has no style type for it\r\n";
            continue;
        }
        out.text += tag + "=" + rule_value(value) + " [" + type;
        if (!resolution.empty()) out.text += " resolution " + resolution;
        if (k + 1 < kept.size()) out.text += " continue ";
        out.text += "]\r\n";
    }
    out.ok = !out.text.empty();
    return out;
}

bool copy_code(platform::Clipboard& clip, platform::Prompt& ui, const std::string& text, const std::string& create_caption) {
    if (trimmed(text).empty()) {
        ui.message("Click " + create_caption);
        return false;
    }
    clip.set_unicode_text(text);
    ui.message("Text copied");
    return true;
}

}  // namespace korvex::integration
