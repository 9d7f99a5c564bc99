#include "integration/font_section.h"

#include <algorithm>
#include <vector>

#include "typ/curf_access.h"

namespace korvex::integration {

namespace {

struct Lines {
    std::vector<std::string> items;
    std::string eol = "\r\n";
    bool trailing = false;  // the text ended in a line end
};

Lines split(const std::string& text) {
    Lines out;
    if (text.find('\n') != std::string::npos && text.find("\r\n") == std::string::npos) out.eol = "\n";
    size_t start = 0;
    while (start < text.size()) {
        size_t nl = text.find('\n', start);
        const bool last = nl == std::string::npos;
        if (last) nl = text.size();
        std::string line = text.substr(start, nl - start);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        out.items.push_back(std::move(line));
        if (!last && nl + 1 == text.size()) out.trailing = true;
        start = nl + 1;
    }
    return out;
}

std::string join(const Lines& l) {
    std::string out;
    for (size_t k = 0; k < l.items.size(); ++k) {
        out += l.items[k];
        if (k + 1 < l.items.size() || l.trailing) out += l.eol;
    }
    return out;
}

// The key of a line in lower case ("fontstyle" of "FontStyle=Large",
// "daycustomcolor" of "DaycustomColor:#102030"); "" for comments and picture
// lines.
std::string key_of(const std::string& line) {
    const size_t a = line.find_first_not_of(" \t");
    if (a == std::string::npos || line[a] == ';' || line[a] == '"') return {};
    const size_t end = line.find_first_of("=:", a);
    if (end == std::string::npos) return {};
    std::string key = typ::lower(line.substr(a, end - a));
    while (!key.empty() && (key.back() == ' ' || key.back() == '\t')) key.pop_back();
    return key;
}

std::string value_of(const std::string& line) {
    const size_t eq = line.find_first_of("=:");
    if (eq == std::string::npos) return {};
    std::string v = line.substr(eq + 1);
    v.erase(0, v.find_first_not_of(" \t"));
    while (!v.empty() && (v.back() == ' ' || v.back() == '\t')) v.pop_back();
    return v;
}

bool is_picture_head(const std::string& line) {
    const size_t a = line.find_first_not_of(" \t");
    return a != std::string::npos && line[a] != ';' && line[a] != '"' && typ::lower(line).find("xpm=") != std::string::npos;
}

// Where a new key line goes: before the first picture head, else before
// "[end]", else at the end.
size_t insert_point(const Lines& l) {
    for (size_t k = 0; k < l.items.size(); ++k)
        if (is_picture_head(l.items[k])) return k;
    for (size_t k = 0; k < l.items.size(); ++k)
        if (typ::lower(l.items[k]).find("[end]") != std::string::npos) return k;
    size_t k = l.items.size();
    // A text that ended in a line end has an empty last item to stay last.
    while (k > 0 && l.items[k - 1].empty()) --k;
    return k;
}

// Keys only stand in front of the picture head; behind it are colour lines.
size_t key_end(const Lines& l) {
    for (size_t k = 0; k < l.items.size(); ++k)
        if (is_picture_head(l.items[k])) return k;
    return l.items.size();
}

bool is_colour_key(const std::string& key) {
    return key == "customcolor" || key == "daycustomcolor" || key == "nightcustomcolor";
}

// Custom colours stand: a colour key, or a CustomColor value other than "no".
bool has_custom_colours(const Lines& l) {
    for (size_t k = 0; k < key_end(l); ++k) {
        const std::string key = key_of(l.items[k]);
        if (key == "daycustomcolor" || key == "nightcustomcolor") return true;
        if (key == "customcolor" && typ::lower(value_of(l.items[k])) != "no") return true;
    }
    return false;
}

int find_font_key(const Lines& l, const std::string& key) {
    for (size_t k = 0; k < key_end(l); ++k)
        if (key_of(l.items[k]) == key) return static_cast<int>(k);
    return -1;
}

// Every ExtendedLabels line says "Y"; true when one stands.
bool extended_yes(Lines& l) {
    bool found = false;
    for (size_t k = 0; k < key_end(l); ++k) {
        if (key_of(l.items[k]) != "extendedlabels") continue;
        found = true;
        l.items[k] = "ExtendedLabels=Y";
    }
    return found;
}

}  // namespace

std::string font_style_of(const std::string& section) {
    const Lines l = split(section);
    const int at = find_font_key(l, "fontstyle");
    return at < 0 ? std::string() : value_of(l.items[static_cast<size_t>(at)]);
}

SectionChange convert_font(std::string& section, int option, const std::string& style) {
    Lines l = split(section);
    SectionChange r;
    r.had = find_font_key(l, "fontstyle") >= 0;
    const std::string line = "FontStyle=" + style;
    switch (option) {
    case k_font_remove: {
        const size_t end = key_end(l);
        std::vector<std::string> kept;
        for (size_t k = 0; k < l.items.size(); ++k)
            if (k >= end || key_of(l.items[k]) != "fontstyle") kept.push_back(l.items[k]);
        l.items = std::move(kept);
        if (!has_custom_colours(l)) {
            const int ext = find_font_key(l, "extendedlabels");
            if (ext >= 0) l.items[static_cast<size_t>(ext)] = "ExtendedLabels=N";
        }
        break;
    }
    case k_font_add_if_none:
    case k_font_add:
    case k_font_replace_only:
        if (r.had && option == k_font_add_if_none) return r;
        if (!r.had && option == k_font_replace_only) return r;
        if (r.had) {
            for (size_t k = 0; k < key_end(l); ++k)
                if (key_of(l.items[k]) == "fontstyle") l.items[k] = line;
            extended_yes(l);
        } else {
            const bool ext = extended_yes(l);
            const size_t at = insert_point(l);
            l.items.insert(l.items.begin() + static_cast<std::ptrdiff_t>(at), line);
            if (!ext) l.items.insert(l.items.begin() + static_cast<std::ptrdiff_t>(at), "ExtendedLabels=Y");
        }
        break;
    default:
        return r;
    }
    std::string out = join(l);
    r.changed = out != section;
    if (r.changed) section = std::move(out);
    return r;
}

SectionChange convert_colours(std::string& section, int option, const std::string& day, const std::string& night) {
    Lines l = split(section);
    SectionChange r;
    r.had = has_custom_colours(l);
    if (option != k_colours_all && option != k_colours_if_none) return r;
    if (r.had && option == k_colours_if_none) return r;
    // The old colour lines go; the new ones take the place of the first.
    const size_t end = key_end(l);
    std::vector<std::string> kept;
    size_t first = std::string::npos;
    for (size_t k = 0; k < l.items.size(); ++k) {
        if (k < end && is_colour_key(key_of(l.items[k]))) {
            if (first == std::string::npos) first = kept.size();
            continue;
        }
        kept.push_back(l.items[k]);
    }
    l.items = std::move(kept);
    const bool ext = extended_yes(l);
    const bool styled = find_font_key(l, "fontstyle") >= 0;
    if (first == std::string::npos) first = insert_point(l);
    std::vector<std::string> add;
    if (!ext) add.push_back("ExtendedLabels=Y");
    add.push_back("CustomColor=DayAndNight");
    add.push_back("DaycustomColor:#" + typ::upper(day));
    add.push_back("NightcustomColor:#" + typ::upper(night));
    l.items.insert(l.items.begin() + static_cast<std::ptrdiff_t>(first), add.begin(), add.end());
    if (!styled) l.items.insert(l.items.begin() + static_cast<std::ptrdiff_t>(insert_point(l)), "FontStyle=default");
    std::string out = join(l);
    r.changed = out != section;
    if (r.changed) section = std::move(out);
    return r;
}

}  // namespace korvex::integration
