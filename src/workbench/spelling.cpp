#include "workbench/spelling.h"

#include <algorithm>

#include "platform/codepage.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "text/text_writer.h"
#include "typ/curf_access.h"
#include "workbench/cell_label.h"
#include "workbench/report_file.h"

namespace korvex::workbench {

namespace {

constexpr int k_english = 4;
constexpr int k_german = 2;
constexpr int k_utf8 = 65001;

// UTF-8 in, lower-cased UTF-8 out: ASCII letters and the accented capitals
// of the Latin-1 range (two bytes behind 0xC3), which is all a label of the
// two word lists' languages holds.
std::string lower_utf8(const std::string& word) {
    std::string out = word;
    for (size_t k = 0; k < out.size(); ++k) {
        const auto c = static_cast<unsigned char>(out[k]);
        if (c >= 'A' && c <= 'Z') {
            out[k] = static_cast<char>(c + 32);
        } else if (c == 0xC3 && k + 1 < out.size()) {
            const auto d = static_cast<unsigned char>(out[k + 1]);
            if (d >= 0x80 && d <= 0x9E && d != 0x97) out[k + 1] = static_cast<char>(d + 0x20);
            ++k;
        }
    }
    return out;
}

// The String line of the preferred language in a section ("" when there
// is none), as the section holds it.
std::string preferred_line(const std::string& section, int language) {
    std::string found;
    typ::for_each_line(section, [&](std::string_view line) {
        if (!found.empty() || !typ::lower(line.substr(0, 6)).starts_with("string")) return;
        const size_t x = typ::find_caseless(line, "=0x");
        const size_t comma = line.find(',', x == std::string_view::npos ? 0 : x);
        if (x == std::string_view::npos || comma == std::string_view::npos) return;
        int lang = 0;
        for (size_t p = x + 3; p < comma; ++p) {
            const char c = line[p];
            const int d = c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
            if (d < 0) return;
            lang = lang * 16 + d;
        }
        if (lang == language) found = std::string(line);
    });
    return found;
}

// The label of the preferred language as UTF-8; only a label beyond ASCII
// goes through its language's page.
std::string preferred_label(const model::Store& s, const std::string& section) {
    std::string line = preferred_line(section, s.opt.langid);
    if (line.empty()) return {};
    if (!std::all_of(line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
        line = text::convert(s, line);
    const size_t comma = line.find(',');
    return comma == std::string::npos ? std::string() : line.substr(comma + 1);
}

bool only_digits(const std::string& w) {
    for (const char c : w)
        if (c < '0' || c > '9') return false;
    return true;
}

// Cells of the class in view: store rows from first to end.
std::pair<int32_t, int32_t> spelled_rows(const model::Store& s, int cls) {
    switch (cls) {
    case model::k_polygons: return {0, s.pg_n};
    case model::k_lines: return {0, s.ln_n};
    case model::k_points: return {0, s.pt_n};
    case model::k_active_lines: return {s.ln_n, s.ln_n + s.ln_nact};
    case model::k_extra_points: return {s.pt_n, s.pt_n + s.pt_nx};
    default: return {0, 0};
    }
}

std::string heading(const model::Store& s, const Dictionary& dict) {
    std::string out = "Dictionary used: " + dict.name + "\r\n";
    if (dict.language >= 0 && dict.language != s.opt.langid)
        out += "(Dictionary MUST match " + s.opt.langname + ")\r\n";
    return out;
}

}  // namespace

bool Dictionary::has(std::string_view word) const {
    const std::string w(word);
    if (words.count(w)) return true;
    return w.size() > 1 && w.back() == 's' && words.count(w.substr(0, w.size() - 1));
}

std::optional<Dictionary> read_dictionary(const std::string& path) {
    const std::optional<std::string> text = platform::read_file(path);
    if (!text) return std::nullopt;
    Dictionary d;
    d.name = path;
    // A list in a single-byte page is taken as Latin 1, the pages the
    // system's German list was ever shipped in.
    const bool utf8 = platform::is_valid_utf8(*text);
    d.words.reserve(text->size() / 8);
    typ::for_each_line(*text, [&](std::string_view line) {
        std::string w(line);
        while (!w.empty() && (w.back() == ' ' || w.back() == '\t')) w.pop_back();
        if (w.empty()) return;
        d.words.insert(lower_utf8(utf8 ? w : platform::recode(w, 1252, k_utf8)));
    });
    return d;
}

std::vector<std::string> dictionary_candidates(int entry, const std::string& data_folder,
                                               const std::string& program_data, const std::string& custom) {
    if (entry == 2) return {custom};
    const std::string file = entry == 0 ? "EN.dic" : "DE.dic";
    std::vector<std::string> out = {platform::join_path(platform::join_path(data_folder, "dictionaries"), file)};
    if (!program_data.empty()) out.push_back(platform::join_path(platform::join_path(program_data, "dictionaries"), file));
    out.push_back(entry == 0 ? "/usr/share/dict/american-english" : "/usr/share/dict/ngerman");
    return out;
}

std::vector<std::string> label_words(const std::string& label) {
    std::string t;
    for (const char c : label) {
        if (c == '"' || c == '\t') continue;
        t += std::string_view("+&_/(),><:|").find(c) != std::string_view::npos ? ' ' : c;
    }
    std::vector<std::string> words;
    size_t at = 0;
    while (at < t.size()) {
        while (at < t.size() && t[at] == ' ') ++at;
        size_t end = t.find(' ', at);
        if (end == std::string::npos) end = t.size();
        if (end > at) words.push_back(t.substr(at, end - at));
        at = end;
    }
    const bool single = words.size() == 1;
    std::vector<std::string> out;
    for (std::string w : words) {
        const size_t eq = w.find('=');
        if (eq != std::string::npos) w.resize(eq);
        if (single) {
            out.push_back(lower_utf8(w));
            continue;
        }
        size_t p = 0;
        while (p <= w.size()) {
            size_t dash = w.find('-', p);
            if (dash == std::string::npos) dash = w.size();
            if (dash > p) out.push_back(lower_utf8(w.substr(p, dash - p)));
            p = dash + 1;
        }
    }
    std::erase_if(out, [](const std::string& w) { return w.empty() || only_digits(w); });
    return out;
}

Findings spelling_findings(const model::Store& s, int cls, const Dictionary& dict) {
    Findings out;
    const auto [first, end] = spelled_rows(s, cls);
    for (int32_t r = first; r < end; ++r) {
        const std::string label = preferred_label(s, section_text(s, cls, r));
        if (label.empty()) continue;
        for (const std::string& w : label_words(label))
            if (!dict.has(w)) out.push_back({cls, type_text(s, cls, r), "spelling", w});
    }
    return out;
}

std::string spelchk(const model::Store& s, int cls, const Dictionary& dict) {
    std::string out = heading(s, dict);
    for (const Finding& f : spelling_findings(s, cls, dict)) out += f.type + " " + f.message + "\r\n";
    return out;
}

void spelling_flow(const model::Store& s, platform::Prompt& ui, int entry, const std::string& data_folder,
                   const std::string& program_data, const std::string& custom) {
    const auto [first, end] = spelled_rows(s, s.curclass);
    if (end <= first) {
        ui.message("No data.");
        return;
    }
    const std::vector<std::string> candidates = dictionary_candidates(entry, data_folder, program_data, custom);
    std::string path;
    for (const std::string& c : candidates)
        if (!c.empty() && platform::file_exists(c)) {
            path = c;
            break;
        }
    std::optional<Dictionary> dict = path.empty() ? std::nullopt : read_dictionary(path);
    if (!dict) {
        ui.message("Cannot find " + (path.empty() ? candidates.front() : path));
        return;
    }
    dict->language = entry == 0 ? k_english : entry == 1 ? k_german : -1;
    show_report(ui, data_folder, "system/bin/spelling.txt", "Spelling", spelchk(s, s.curclass, *dict));
}

}  // namespace korvex::workbench
