// The element-text panel apply. The checks run on a lower-cased work copy,
// one entry a panel line, so that a refusal can select the line it names;
// only a colour value padded to six digits is written back into the panel.
#include "text/panel_apply.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <set>
#include <vector>

#include "text/colour_check.h"
#include "text/point_reader.h"
#include "text/polygon_line_reader.h"
#include "text/replace_all.h"
#include "typ/curf_access.h"
#include "typ/type_range.h"

namespace korvex::text {

namespace {

constexpr int k_bitmap_width = 32;  // polygon and line pictures
constexpr size_t k_colour_digits = 6;
constexpr size_t k_alpha_digits = 8;  // "#RRGGBBAA" of a point
const std::string k_invalid_type = "Invalid type.";

struct PanelLine {
    std::string text;  // as in the panel, without its line end
    std::string end;   // "\r\n", "\n" or "" for the last
};

// One panel line of the part under check.
struct WorkLine {
    size_t at;        // index of the panel line
    std::string low;  // lower-cased, tabs as blanks, trimmed, blanks around a key's "=" gone
};

bool holds_text(const std::string& t, std::string_view w) { return t.find(w) != std::string::npos; }

std::string trimmed(std::string_view t) {
    while (!t.empty() && std::isspace(static_cast<unsigned char>(t.front()))) t.remove_prefix(1);
    while (!t.empty() && std::isspace(static_cast<unsigned char>(t.back()))) t.remove_suffix(1);
    return std::string(t);
}

std::string single_blanks(const std::string& t) {
    std::string out;
    for (char c : t)
        if (c != ' ' || out.empty() || out.back() != ' ') out += c;
    return out;
}

std::vector<std::string> words(const std::string& t) {
    std::vector<std::string> out;
    size_t p = 0;
    while (p < t.size()) {
        while (p < t.size() && t[p] == ' ') ++p;
        const size_t e = std::min(t.find(' ', p), t.size());
        if (e > p) out.push_back(t.substr(p, e - p));
        p = e;
    }
    return out;
}

// Header numbers; far beyond any picture, but products of two stay in range.
int number(const std::string& t) {
    constexpr long k_bound = 1'000'000;
    return static_cast<int>(std::clamp(std::strtol(t.c_str(), nullptr, 10), -k_bound, k_bound));
}

std::vector<PanelLine> split_panel(const std::string& text) {
    std::vector<PanelLine> out;
    size_t p = 0;
    while (p <= text.size()) {
        const size_t nl = text.find('\n', p);
        if (nl == std::string::npos) {
            if (p < text.size()) out.push_back({text.substr(p), ""});
            break;
        }
        size_t e = nl;
        if (e > p && text[e - 1] == '\r') --e;
        out.push_back({text.substr(p, e - p), text.substr(e, nl + 1 - e)});
        p = nl + 1;
    }
    return out;
}

std::string work_form(const std::string& line) {
    std::string low = typ::lower(line);
    std::replace(low.begin(), low.end(), '\t', ' ');
    low = trimmed(low);
    // Key lines are read without the blanks around their "=" ("type = 0x4b").
    if (!low.empty() && low[0] != '"' && low[0] != ';') {
        const size_t eq = low.find('=');
        if (eq != std::string::npos) low = trimmed(low.substr(0, eq)) + "=" + trimmed(low.substr(eq + 1));
    }
    for (const char* yn : {"extendedlabels=y", "extendedlabels=n"}) {
        for (size_t p; (p = low.find(yn)) != std::string::npos;) low.erase(p, 16);
    }
    return low;
}

// Quoted text between the first quote and the next.
std::string inner(const std::string& low) {
    const size_t q = low.find('"');
    if (q == std::string::npos) return {};
    const size_t e = low.find('"', q + 1);
    return low.substr(q + 1, e == std::string::npos ? std::string::npos : e - q - 1);
}

// Hex digits at p.
std::string hex_at(const std::string& t, size_t p) {
    std::string d;
    while (p < t.size() && std::isxdigit(static_cast<unsigned char>(t[p]))) d += t[p++];
    return d;
}

// The digits behind "0x", or behind the "=" when there is no "x".
std::string key_digits(const std::string& low) {
    const size_t eq = low.find('=');
    if (eq == std::string::npos) return {};
    const size_t x = low.find("0x", eq);
    return hex_at(low, x == std::string::npos ? eq + 1 : x + 2);
}

// Five type digits of the element in its row, in capitals.
std::string element_digits(const Store& s, int cls, size_t r) {
    std::string d;
    if (cls == model::k_polygons) {
        d = s.pg_typ[r];
        if (d.size() > 2 && d[0] == '0' && (d[1] == 'x' || d[1] == 'X')) d.erase(0, 2);
    } else if (cls == model::k_lines || cls == model::k_active_lines) {
        d = reader::five_digits(s.ln_code[r]);
    } else {
        d = s.pt_typ[r];
    }
    if (d.size() < 5) d.insert(0, 5 - d.size(), '0');
    return typ::upper(d);
}

bool row_exists(const Store& s, int cls, int32_t row) {
    if (row < 0) return false;
    const auto r = static_cast<size_t>(row);
    switch (cls) {
    case model::k_polygons: return row < s.pg_n && r < s.pg_txt.size();
    case model::k_lines: return row < s.ln_n && r < s.ln_txt.size();
    case model::k_active_lines: return row >= s.ln_n && row < s.ln_n + s.ln_nact && r < s.ln_txt.size();
    case model::k_points: return row < s.pt_n && r < s.pt_txt.size();
    case model::k_extra_points: return row >= s.pt_n && row < s.pt_n + s.pt_nx && r < s.pt_txt.size();
    default: return false;
    }
}

class PanelCheck {
public:
    PanelCheck(Store& s, platform::Prompt& ui, const std::string& panel, int cls, int32_t row, bool night)
        : s_(s), ui_(ui), lines_(split_panel(panel)), cls_(cls), row_(row), night_(night),
          point_(cls == model::k_points || cls == model::k_extra_points) {}

    PanelApply run();

private:
    // Step results: false ends the apply.
    bool required_keys();
    void cut_copy();
    bool first_pass();
    bool pixel_count();
    bool colour_shapes();
    bool header();
    bool type_line();
    bool taken_by_other(const std::string& digits) const;
    bool strings();
    bool label_keys();
    bool rows();
    bool apply();

    bool refuse(const std::string& caption, size_t at);
    bool refuse_box(const std::string& text, size_t at);
    bool refuse_type(const std::string& text, size_t at);
    void rewrite(const WorkLine& w, const std::string& line);
    PanelApply& finish();

    Store& s_;
    platform::Prompt& ui_;
    std::vector<PanelLine> lines_;
    const int cls_;
    const int32_t row_;
    const bool night_;
    const bool point_;
    PanelApply out_;

    std::vector<WorkLine> copy_;  // the part under check
    std::vector<WorkLine> all_;   // every line, for the keys
    const WorkLine* xpm_ = nullptr;
    std::vector<std::string> fields_;  // the header's numbers
    int width_ = 0, height_ = 0, ncol_ = 0, cpp_ = 0;
    std::string subtype_;
    std::vector<const WorkLine*> colours_, rows_;
    std::set<std::string> symbols_;
};

bool PanelCheck::refuse(const std::string& caption, size_t at) {
    out_.caption = caption;
    out_.line = static_cast<int>(at);
    return false;
}

// A type the panel cannot take is said in one box, and stays in the status
// line while the user corrects it or leaves the element.
bool PanelCheck::refuse_type(const std::string& text, size_t at) {
    out_.caption = text;
    for (size_t p = 0; (p = out_.caption.find("\r\n", p)) != std::string::npos;) out_.caption.replace(p, 2, " ");
    return refuse_box(text, at);
}

bool PanelCheck::refuse_box(const std::string& text, size_t at) {
    ui_.message(text);
    out_.line = static_cast<int>(at);
    return false;
}

// Only colour lines are rewritten, never the line the copy was cut at, so
// the copy holds panel lines from its first one on, one entry each.
void PanelCheck::rewrite(const WorkLine& w, const std::string& line) {
    if (line == lines_[w.at].text) return;
    lines_[w.at].text = line;
    all_[w.at].low = work_form(line);
    copy_[w.at - copy_.front().at].low = all_[w.at].low;
}

PanelApply& PanelCheck::finish() {
    out_.text.clear();
    for (size_t k = 0; k < lines_.size(); ++k) {
        if (static_cast<int>(k) == out_.line) {
            out_.select_from = out_.text.size();
            out_.select_length = lines_[k].text.size();
        }
        out_.text += lines_[k].text + lines_[k].end;
    }
    return out_;
}

PanelApply PanelCheck::run() {
    for (size_t k = 0; k < lines_.size(); ++k) all_.push_back({k, work_form(lines_[k].text)});
    if (!row_exists(s_, cls_, row_) || !required_keys()) return finish();
    cut_copy();
    if (first_pass() && pixel_count() && colour_shapes() && header() && type_line() && strings() && label_keys() &&
        rows())
        out_.ok = apply();
    return finish();
}

// The keys no element can do without; "ID=" stands for "Type=" in an extra point.
bool PanelCheck::required_keys() {
    bool type = false, xpm = false, font = false, fontstyle = false;
    for (const WorkLine& w : all_) {
        if (w.low.rfind(";", 0) == 0) continue;  // a key in a comment is none
        type = type || holds_text(w.low, "type=") || (cls_ == model::k_extra_points && holds_text(w.low, "id="));
        xpm = xpm || holds_text(w.low, "xpm=");
        // A label may well speak of fonts.
        if (w.low.rfind("string", 0) != 0) {
            font = font || holds_text(w.low, "font");
            fontstyle = fontstyle || holds_text(w.low, "fontstyle");
        }
    }
    const char* missing = !type ? "No TYPE" : !xpm ? "No XPM" : (font && !fontstyle) ? "No FontStyle" : nullptr;
    if (missing) ui_.message(missing);
    return missing == nullptr;
}

// A point with a night picture is checked a picture at a time.
void PanelCheck::cut_copy() {
    const auto night_at = std::find_if(all_.begin(), all_.end(), [](const WorkLine& w) { return w.low.rfind(";", 0) != 0 && holds_text(w.low, "nightxpm"); });
    if (night_at == all_.end()) {
        copy_ = all_;
        return;
    }
    const size_t cut = night_at->low.find("nightxpm");
    if (night_) {
        copy_.assign(night_at, all_.end());
        copy_.front().low.erase(0, cut);
    } else {
        copy_.assign(all_.begin(), night_at);
        const std::string front = trimmed(night_at->low.substr(0, cut));
        if (!front.empty()) copy_.push_back({night_at->at, front});
    }
}

bool PanelCheck::first_pass() {
    for (WorkLine& w : copy_) {
        const std::string& low = w.low;
        if (low.empty() || low[0] == ';') continue;
        if (std::count(low.begin(), low.end(), '"') == 1)
            return refuse_box("missing '' \r\n\r\n" + lines_[w.at].text, w.at);
        if (low.rfind("subtype=", 0) == 0) {
            subtype_ = key_digits(low);
            continue;
        }
        if (holds_text(low, "xpm=")) {
            std::string head = low.substr(low.find("xpm=") + 4);
            std::erase(head, '"');
            fields_ = words(single_blanks(head));
            if (fields_.size() < 4) return refuse("XPM error", w.at);
            xpm_ = &w;
            width_ = number(fields_[0]);
            height_ = number(fields_[1]);
            ncol_ = number(fields_[2]);
            cpp_ = number(fields_[3]);
            continue;
        }
        if (low[0] != '"') continue;
        if (!holds_text(low, " c ") || !rows_.empty()) {
            if (xpm_) rows_.push_back(&w);
            continue;
        }
        const ColourCheck checked = colour_check(lines_[w.at].text);
        if (!checked.valid) return refuse("Incorrect hex or syntax.", w.at);
        rewrite(w, checked.line);
        // The symbol is cpp characters; blanks may stand between it and "c".
        // A solid picture (no rows, cpp 0) names its colours freely.
        if (width_ > 0 || cpp_ > 0) {
            const size_t after = 1 + static_cast<size_t>(std::max(cpp_, 0));
            const size_t c_at = low.find_first_not_of(' ', after);
            const bool shaped = c_at != std::string::npos && c_at > after &&
                                low.compare(c_at, 2, "c ") == 0;
            if (!shaped) {
                const size_t literal = low.find(" c ", 1) - 1;
                return refuse("Pixel Length =" + std::to_string(literal) + " XPM says " + std::to_string(cpp_), w.at);
            }
        }
        const std::string written = trimmed(lines_[w.at].text);
        symbols_.insert(written.substr(1, static_cast<size_t>(std::max(cpp_, 0))));
        colours_.push_back(&w);
    }
    return true;
}

bool PanelCheck::pixel_count() {
    const size_t at = xpm_ ? xpm_->at : 0;
    if (cpp_ >= 3 || cpp_ < 0 || (!colours_.empty() && cpp_ == 0 && width_ > 0) || (ncol_ > 0 && colours_.empty()))
        return refuse("Wrong number of pixels", at);
    return true;
}

// Colour lines as symbol, "c", then "#" and six digits or "none".
bool PanelCheck::colour_shapes() {
    const size_t most = point_ ? k_alpha_digits : k_colour_digits;
    for (const WorkLine* w : colours_) {
        const std::string body = inner(w->low);
        size_t symbol = static_cast<size_t>(cpp_);
        if (cpp_ == 0) symbol = std::min(body.find(" c "), body.size());
        const std::vector<std::string> parts = words(single_blanks(body.substr(std::min(symbol, body.size()))));
        bool fine = parts.size() >= 2 && parts[0] == "c";
        if (fine && parts[1][0] == '#') fine = parts[1].size() - 1 <= most;
        else if (fine) fine = parts[1] == "none";
        if (!fine) return refuse_box(" Colour? ", w->at);
    }
    return true;
}

bool PanelCheck::header() {
    if (!xpm_) return true;
    const size_t at = xpm_->at;
    std::string breach;
    const int counted = static_cast<int>(colours_.size());
    const int nrows = static_cast<int>(rows_.size());
    int row_width = 0;
    if (!rows_.empty()) {
        const int length = static_cast<int>(inner(rows_.front()->low).size());
        row_width = cpp_ > 0 ? length / cpp_ : length;
    }
    const bool exempt = cpp_ == 0 && counted == 0;
    if (!exempt && counted != ncol_)
        breach = "Colours =" + std::to_string(counted) + " XPM says:" + fields_[2];
    else if (!exempt && nrows != height_)
        breach = "BMP height =" + std::to_string(nrows) + " XPM says:" + fields_[1];
    else if (!exempt && row_width != width_)
        breach = "BMP width =" + std::to_string(row_width) + " XPM says:" + fields_[0];
    else if (!point_ && (ncol_ == 3 || ncol_ > 4))
        breach = "Can't have" + std::to_string(ncol_) + " colours.";
    const bool symbols_fit = cpp_ < 3 && !(cpp_ == 1 && ncol_ > model::cpp_limit) &&
                             !(cpp_ == 2 && ncol_ < model::cpp_limit);
    const bool width_fits = point_ || width_ == 0 || width_ == k_bitmap_width;
    if (breach.empty() && symbols_fit && width_fits) return true;
    out_.caption = breach;
    return refuse_box(" Colour? ", at);
}

bool PanelCheck::type_line() {
    if (cls_ == model::k_extra_points) return true;
    for (const WorkLine& w : copy_) {
        if (w.low.rfind("type=", 0) != 0) continue;
        std::string digits = key_digits(w.low);
        if (digits.size() == 4 && typ::hex_value(digits) == 0 && !point_) return refuse_type(" Wrong Type number", w.at);
        if (digits.size() > 5) return refuse_type("Too long ", w.at);
        // Two or three digits are a type without subtype, as the readers take them.
        if (digits.size() < 4) digits += "00";
        if (digits.size() < 5) digits.insert(0, 5 - digits.size(), '0');
        if (!subtype_.empty()) {
            std::string sub = subtype_.substr(0, 2);
            if (sub.size() < 2) sub.insert(0, "0");
            digits.replace(3, 2, sub);
        }
        digits = typ::upper(digits);
        if (digits == element_digits(s_, cls_, static_cast<size_t>(row_))) continue;
        std::vector<std::string> refusals = typ::chktype(digits, cls_);
        if (!refusals.empty()) {
            if (refusals.back() != k_invalid_type) refusals.push_back(k_invalid_type);
            std::string said;
            for (const std::string& m : refusals) said += (said.empty() ? "" : "\r\n") + m;
            return refuse_type(said, w.at);
        }
        if (taken_by_other(digits)) return refuse_type("Type exists.", w.at);
        out_.changed_type = true;
    }
    return true;
}

// Another element of the class has the type (an active line only within its
// activity, since each activity has lines of its own types).
bool PanelCheck::taken_by_other(const std::string& digits) const {
    int32_t from = 0, to = 0;
    switch (cls_) {
    case model::k_polygons: to = s_.pg_n; break;
    case model::k_lines: to = s_.ln_n; break;
    case model::k_active_lines: from = s_.ln_n, to = s_.ln_n + s_.ln_nact; break;
    case model::k_points: to = s_.pt_n; break;
    default: return false;
    }
    for (int32_t k = from; k < to; ++k) {
        const auto r = static_cast<size_t>(k);
        if (k == row_ || element_digits(s_, cls_, r) != digits) continue;
        if (cls_ != model::k_active_lines || s_.ln_act[r] == s_.ln_act[static_cast<size_t>(row_)]) return true;
    }
    return false;
}

bool PanelCheck::strings() {
    for (const WorkLine& w : copy_) {
        if (w.low.rfind("string", 0) != 0) continue;
        if (!holds_text(w.low, "=")) return refuse_box(lines_[w.at].text + "?", w.at);
        const size_t comma = w.low.find(',');
        const bool numbered = w.low.size() > 6 && std::isdigit(static_cast<unsigned char>(w.low[6]));
        if (comma == std::string::npos || !numbered || !holds_text(w.low.substr(0, comma), "=0x")) {
            out_.caption = "String syntax - error ignored.";
            out_.line = static_cast<int>(w.at);
        }
    }
    return true;
}

bool PanelCheck::label_keys() {
    static const std::set<std::string> k_styles{"",        "default", "nolabel", "smallfont",
                                                "normal",  "large",   "normalfont", "largefont"};
    for (const WorkLine& w : copy_) {
        if (w.low.rfind("fontstyle=", 0) == 0) {
            // A remark may follow the style: "FontStyle=NoLabel (invisible)".
            std::string value = w.low.substr(10);
            value = value.substr(0, value.find_first_of(" ;("));
            if (!k_styles.count(value)) return refuse("unknown fontstyle", w.at);
        } else if (holds_text(w.low, "daycustomcolor") || holds_text(w.low, "nightcustomcolor")) {
            const ColourCheck checked = colour_check(lines_[w.at].text);
            if (!checked.valid) return refuse("Hex?", w.at);
            rewrite(w, checked.line);
        }
    }
    return true;
}

bool PanelCheck::rows() {
    const size_t step = static_cast<size_t>(std::max(cpp_, 1));
    for (const WorkLine* w : rows_) {
        // The panel's own characters: symbols are case sensitive.
        const std::string row = inner(lines_[w->at].text);
        if (static_cast<long long>(row.size()) != static_cast<long long>(width_) * cpp_) return refuse("BMP length not the same:", w->at);
        for (size_t p = 0; p + step <= row.size(); p += step) {
            const std::string pixel = row.substr(p, step);
            // A blank in a polygon row is its background.
            if (symbols_.count(pixel) || (cls_ == model::k_polygons && pixel == " ")) continue;
            if (step == 2) return refuse("Colour " + pixel + " not found", w->at);
            return refuse(" Unknown Character in BMP:" + pixel, w->at);
        }
    }
    return true;
}

bool PanelCheck::apply() {
    std::string text;
    for (const PanelLine& l : lines_) text += l.text + l.end;
    replace_all(text, "fontstyle", "FontStyle");
    replace_all(text, "extendedlabels", "ExtendedLabels");
    replace_all(text, "Extendedlabels", "ExtendedLabels");
    const auto r = static_cast<size_t>(row_);

    if (cls_ == model::k_polygons) {
        replace_all(text, "[_polygon]", "");
        // The panel has no draw-order section: the draw order is refreshed
        // only from a text that brings one, never emptied by an apply.
        const bool draworder = typ::contains_caseless(text, "[_draworder]");
        if (!s_.pg_lab[r].empty() && s_.pg_lab[r][0] == 1 && s_.pg_nnight > 0) --s_.pg_nnight;
        pgonparse_txt(s_, ui_, text, row_, !draworder);
    } else if (cls_ == model::k_points || cls_ == model::k_extra_points) {
        replace_all(text, "[_point]", "");
        const auto night_rows = static_cast<int32_t>(std::count(s_.pt_nbmp[r].begin(), s_.pt_nbmp[r].end(), '\n'));
        s_.pt_nnight = std::max(0, s_.pt_nnight - night_rows);
        poiparse(s_, ui_, text, row_, false);
    } else {
        replace_all(text, "[_polyline]", "");
        // The ruler is the panel's own; the line reader would keep it as a comment.
        replace_all(text, ";12345678901234567890123456789012\r\n", "");
        replace_all(text, ";12345678901234567890123456789012\n", "");
        if (width_ == 0) {
            // LineWidth= gives the width exactly as lwidth(= does.
            const bool width = std::any_of(all_.begin(), all_.end(), [](const WorkLine& w) {
                return holds_text(w.low, "lwidth(=") || w.low.rfind("linewidth=", 0) == 0;
            });
            if (!width) return refuse(std::string("Error:") + "lwidth(", xpm_ ? xpm_->at : 0);
            const bool border = std::any_of(all_.begin(), all_.end(), [](const WorkLine& w) { return holds_text(w.low, "borderwidth="); });
            if (!border) out_.caption = "No Borderwidth . Will continue";
        }
        // The line reader takes an active line's default activity from the class on show.
        const int shown = s_.curclass;
        s_.curclass = cls_;
        pollineparse(s_, ui_, text, row_, false);
        s_.curclass = shown;
    }
    s_.dirty = true;
    return true;
}

}  // namespace

PanelApply parsetext(Store& s, platform::Prompt& ui, const std::string& panel, int cls, int32_t row, bool night) {
    return PanelCheck(s, ui, panel, cls, row, night).run();
}

}  // namespace korvex::text
