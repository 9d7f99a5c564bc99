// Scene text: "scene NAME WIDTH HEIGHT" once, then features of a head line
// ("polygon 0x01 \"Hilltown\"") and coordinate lines ("x,y x,y ...") below
// it. "#" starts a comment line. A line that cannot be read is reported and
// skipped; the feature it belongs to is dropped when it is left unusable.
#include "preview/scene.h"

#include <cctype>
#include <charconv>
#include <string_view>

#include "platform/files.h"

namespace korvex::preview {

namespace {

// Coordinates far outside any screen are typing mistakes, not maps.
constexpr double k_scene_limit = 1e6;

std::string_view trim(std::string_view v) {
    while (!v.empty() && std::isspace(static_cast<unsigned char>(v.front()))) v.remove_prefix(1);
    while (!v.empty() && std::isspace(static_cast<unsigned char>(v.back()))) v.remove_suffix(1);
    return v;
}

// The next blank-separated word of v, which moves past it.
std::string_view next_word(std::string_view& v) {
    v = trim(v);
    size_t end = 0;
    while (end < v.size() && !std::isspace(static_cast<unsigned char>(v[end]))) ++end;
    const std::string_view word = v.substr(0, end);
    v.remove_prefix(end);
    return word;
}

bool read_number(std::string_view v, double& out) {
    v = trim(v);
    if (v.empty()) return false;
    if (v.front() == '+') v.remove_prefix(1);
    const auto [end, ec] = std::from_chars(v.data(), v.data() + v.size(), out);
    return ec == std::errc() && end == v.data() + v.size() && out > -k_scene_limit && out < k_scene_limit;
}

// "0x" and one to five hex digits: up to three name a type without subtype.
bool read_type(std::string_view v, int32_t& code) {
    if (v.size() < 3 || v[0] != '0' || (v[1] != 'x' && v[1] != 'X')) return false;
    v.remove_prefix(2);
    if (v.size() > 5) return false;
    int32_t value = 0;
    for (const char c : v) {
        const int d = std::isdigit(static_cast<unsigned char>(c)) ? c - '0'
                      : std::isxdigit(static_cast<unsigned char>(c)) ? std::tolower(static_cast<unsigned char>(c)) - 'a' + 10
                                                                     : -1;
        if (d < 0) return false;
        value = value * 16 + d;
    }
    code = v.size() <= 3 ? value << 8 : value;
    return true;
}

// A quoted label with \" and \\ escapes; the rest of the line must be empty.
bool read_label(std::string_view v, std::string& out) {
    v = trim(v);
    if (v.empty()) return true;
    if (v.front() != '"') return false;
    size_t at = 1;
    for (; at < v.size() && v[at] != '"'; ++at) {
        if (v[at] == '\\' && at + 1 < v.size()) ++at;
        out += v[at];
    }
    return at < v.size() && trim(v.substr(at + 1)).empty();
}

struct SceneParser {
    SceneRead result;
    int line_no = 0;
    bool have_head = false;
    bool open = false;  // a feature is being read

    void report(const std::string& what) { result.report.push_back("line " + std::to_string(line_no) + ": " + what); }

    void close() {
        if (!open) return;
        open = false;
        Feature& f = result.scene.features.back();
        const size_t need = f.cls == FeatureClass::polygon ? 3 : f.cls == FeatureClass::line ? 2 : 1;
        if (f.points.size() >= need) return;
        report(std::string("feature with too few points skipped: ") + (f.label.empty() ? scene_type_text(f.code) : f.label));
        result.scene.features.pop_back();
    }

    void head(std::string_view rest) {
        if (have_head) return report("second scene line ignored");
        std::string_view h = trim(rest);
        // The name may hold blanks: the last two words are the size.
        const size_t b2 = h.find_last_of(" \t");
        const size_t b1 = b2 == std::string_view::npos ? b2 : trim(h.substr(0, b2)).find_last_of(" \t");
        double w = 0, ht = 0;
        if (b1 == std::string_view::npos || !read_number(h.substr(b2 + 1), ht) ||
            !read_number(trim(h.substr(0, b2)).substr(b1 + 1), w) || w <= 0 || ht <= 0)
            return report("expected: scene NAME WIDTH HEIGHT");
        have_head = true;
        result.scene.name = std::string(trim(h.substr(0, b1)));
        result.scene.width = w;
        result.scene.height = ht;
    }

    void feature(FeatureClass cls, std::string_view rest) {
        close();
        Feature f;
        f.cls = cls;
        if (!read_type(next_word(rest), f.code)) return report("bad type (expected 0x and one to five hex digits)");
        if (!read_label(rest, f.label)) return report("bad label (expected a quoted text)");
        result.scene.features.push_back(std::move(f));
        open = true;
    }

    void coordinates(std::string_view v) {
        if (!open) return report("coordinates without a feature");
        Feature& f = result.scene.features.back();
        std::vector<Pt> pts;
        for (std::string_view word = next_word(v); !word.empty(); word = next_word(v)) {
            const size_t comma = word.find(',');
            Pt p;
            if (comma == std::string_view::npos || !read_number(word.substr(0, comma), p.x) ||
                !read_number(word.substr(comma + 1), p.y))
                return report("bad coordinate \"" + std::string(word) + "\" (line skipped)");
            pts.push_back(p);
        }
        if (f.cls == FeatureClass::point && f.points.size() + pts.size() > 1)
            return report("a point has one coordinate (line skipped)");
        f.points.insert(f.points.end(), pts.begin(), pts.end());
    }

    void line(std::string_view raw) {
        ++line_no;
        const std::string_view v = trim(raw);
        if (v.empty() || v.front() == '#') return;
        const bool indented = std::isspace(static_cast<unsigned char>(raw.front())) != 0;
        if (indented || std::isdigit(static_cast<unsigned char>(v.front())) || v.front() == '-' ||
            v.front() == '.' || v.front() == '+')
            return coordinates(v);
        std::string_view rest = v;
        const std::string_view word = next_word(rest);
        if (word == "scene") return head(rest);
        if (word == "polygon") return feature(FeatureClass::polygon, rest);
        if (word == "line") return feature(FeatureClass::line, rest);
        if (word == "point") return feature(FeatureClass::point, rest);
        close();
        report("unknown line \"" + std::string(word.substr(0, 40)) + "\"");
    }
};

}  // namespace

SceneRead read_scene(const std::string& text) {
    SceneParser p;
    std::string_view all(text);
    if (all.substr(0, 3) == "\xEF\xBB\xBF") all.remove_prefix(3);
    while (!all.empty()) {
        size_t nl = all.find('\n');
        if (nl == std::string_view::npos) nl = all.size();
        p.line(all.substr(0, nl));
        all.remove_prefix(std::min(all.size(), nl + 1));
    }
    p.close();
    if (!p.have_head) {
        p.line_no = 0;
        p.result.report.push_back("no scene line: the size is taken from the features");
        Scene& sc = p.result.scene;
        for (const Feature& f : sc.features)
            for (const Pt& q : f.points) {
                sc.width = std::max(sc.width, q.x);
                sc.height = std::max(sc.height, q.y);
            }
    }
    return std::move(p.result);
}

SceneRead load_scene(const std::string& path) {
    std::string error;
    const std::optional<std::string> text = platform::read_file(path, &error);
    if (!text) {
        SceneRead r;
        r.report.push_back(path + ": " + (error.empty() ? std::string("cannot be read") : error));
        return r;
    }
    return read_scene(*text);
}

}  // namespace korvex::preview
