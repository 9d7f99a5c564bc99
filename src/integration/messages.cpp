// Message lookup and language files.
#include "integration/messages.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "platform/files.h"
#include "platform/native_path.h"

namespace korvex::integration {
namespace {

constexpr std::string_view k_messages_start = "<messages>";
constexpr std::string_view k_messages_end = "<end of messages>";
constexpr std::string_view k_language_marker = "<language>";
// A message number has at most this many digits; longer runs are no number.
constexpr size_t k_max_digits = 9;

std::string without_cr(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text)
        if (c != '\r') out += c;
    return out;
}

std::string_view trim(std::string_view t) {
    const auto blank = [](char c) { return c == ' ' || c == '\t'; };
    while (!t.empty() && blank(t.front())) t.remove_prefix(1);
    while (!t.empty() && blank(t.back())) t.remove_suffix(1);
    return t;
}

// The leading decimal number of a line, blanks skipped; -1 when none.
int leading_number(std::string_view t) {
    size_t i = 0;
    while (i < t.size() && (t[i] == ' ' || t[i] == '\t')) ++i;
    int n = 0;
    size_t digits = 0;
    for (; i < t.size() && t[i] >= '0' && t[i] <= '9'; ++i) {
        if (++digits > k_max_digits) return -1;
        n = n * 10 + (t[i] - '0');
    }
    return digits == 0 ? -1 : n;
}

// Where "key=" stands in text: at the start of a line if it does anywhere,
// else its first occurrence (so that "custom=" is not read from
// "mcustom=" when the file has its own line for it).
size_t find_key(const std::string& text, const std::string& key) {
    const std::string needle = key + "=";
    const size_t first = text.find(needle);
    for (size_t at = first; at != std::string::npos; at = text.find(needle, at + 1))
        if (at == 0 || text[at - 1] == '\n') return at;
    return first;
}

// The value of "key=" to the line end, or nothing.
std::string_view key_value(const std::string& text, const std::string& key) {
    const size_t at = find_key(text, key);
    if (at == std::string::npos) return {};
    const size_t from = at + key.size() + 1;
    const size_t end = text.find('\n', from);
    return std::string_view(text).substr(from, end == std::string::npos ? std::string::npos : end - from);
}

std::string_view cut_comment(std::string_view v) {
    const size_t hash = v.find('#');
    return hash == std::string_view::npos ? v : v.substr(0, hash);
}

std::vector<std::string> split_list(std::string_view list) {
    std::vector<std::string> items;
    while (!list.empty()) {
        const size_t comma = list.find(',');
        const std::string_view item = trim(list.substr(0, comma));
        if (!item.empty()) items.emplace_back(item);
        if (comma == std::string_view::npos) break;
        list.remove_prefix(comma + 1);
    }
    return items;
}

std::string lower(std::string t) {
    for (char& c : t)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return t;
}

}  // namespace

Messages::Messages() { set_activities(k_default_activities); }

std::string expand_breaks(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        if (c == '$')
            out += "\r\n";
        else
            out += c;
    }
    return out;
}

const Messages::Msg* Messages::find(int n) const {
    const auto it = std::lower_bound(msgs_.begin(), msgs_.end(), n,
                                     [](const Msg& m, int v) { return m.n < v; });
    return it != msgs_.end() && it->n == n ? &*it : nullptr;
}

std::string Messages::get_msg(int n) const {
    if (!lanfile_.empty()) {
        if (const Msg* m = find(n); m && m->len > 0)
            return expand_breaks(std::string_view(arena_).substr(m->off, m->len));
    }
    return expand_breaks(builtin_msg(n));
}

void Messages::load_msgs(std::string_view text) {
    arena_.clear();
    msgs_.clear();
    const size_t end = text.find(k_messages_end);
    if (end != std::string_view::npos) text = text.substr(0, end);
    const size_t start = text.find(k_messages_start);
    if (start == std::string_view::npos) return;
    std::string_view block = text.substr(start + k_messages_start.size());

    // The bound is the block's line count, so count first.
    const size_t lines = static_cast<size_t>(std::count(block.begin(), block.end(), '\n')) + 1;
    while (true) {
        const size_t lf = block.find('\n');
        const std::string_view line = block.substr(0, lf);
        const size_t colon = line.find(':');
        if (colon != std::string_view::npos) {
            const int n = leading_number(line.substr(0, colon));
            if (n >= 1 && static_cast<size_t>(n) < lines) {
                const std::string_view body = cut_comment(line.substr(colon + 1));
                msgs_.push_back({n, static_cast<uint32_t>(arena_.size()), static_cast<uint32_t>(body.size())});
                arena_ += body;
            }
        }
        if (lf == std::string_view::npos) break;
        block.remove_prefix(lf + 1);
    }
    // A number given twice keeps its last line; entries are in file order,
    // so the offset tells which came last. Sorted in place: a hostile file
    // costs no second table.
    std::sort(msgs_.begin(), msgs_.end(),
              [](const Msg& a, const Msg& b) { return a.n != b.n ? a.n < b.n : a.off < b.off; });
    size_t kept = 0;
    for (size_t i = 0; i < msgs_.size(); ++i) {
        if (i + 1 < msgs_.size() && msgs_[i + 1].n == msgs_[i].n) continue;
        msgs_[kept++] = msgs_[i];
    }
    msgs_.resize(kept);
}

void Messages::apply_lang_text(const std::string& path, std::string_view text) {
    std::string clean = without_cr(text);
    load_msgs(clean);
    lanfile_ = path;
    const size_t marker = clean.find(k_language_marker);
    lantxt_ = marker == std::string::npos ? std::move(clean) : clean.substr(marker);
}

bool Messages::apply_lang(const std::string& path) {
    if (path.empty()) return false;
    const auto text = platform::read_file(path);
    if (!text) return false;
    apply_lang_text(path, *text);
    return true;
}

void Messages::use_english(const std::vector<std::string>& language_folders) {
    lantxt_.clear();
    for (const std::string& folder : language_folders) {
        if (folder.empty()) continue;
        bool found = false;
        for (const char* name : {"english", "english.lan"}) {
            const std::string path = (std::filesystem::path(folder) / name).string();
            if (platform::file_exists(path) && apply_lang(path)) {
                found = true;
                break;
            }
        }
        if (found) break;
    }
    lanfile_.clear();
    arena_.clear();
    msgs_.clear();
    set_activities(k_default_activities);
}

std::string Messages::caption(const std::string& key) const {
    std::string plain = key;
    if (caption_margin(key) != 0) plain.pop_back();
    if (plain.empty() || lantxt_.empty()) return {};
    return std::string(cut_comment(key_value(lantxt_, plain)));
}

int Messages::caption_margin(const std::string& key) {
    if (key.empty()) return 0;
    if (key.back() == 'X') return 7;
    if (key.back() == 'Y') return 17;
    return 0;
}

std::vector<std::string> Messages::fill_list(const std::string& key) const {
    if (key.empty() || lantxt_.empty()) return {};
    return split_list(cut_comment(key_value(lantxt_, key)));
}

void Messages::set_activities(std::string_view list) { activities_ = split_list(list); }

int getlang(std::string_view text) {
    const size_t x = text.find('x');
    if (x == std::string_view::npos) return 0;
    int n = 0;
    for (size_t i = x + 1; i < text.size() && i <= x + 2; ++i) {
        const char c = text[i];
        int d;
        if (c >= '0' && c <= '9')
            d = c - '0';
        else if (c >= 'a' && c <= 'f')
            d = c - 'a' + 10;
        else if (c >= 'A' && c <= 'F')
            d = c - 'A' + 10;
        else
            break;
        n = n * 16 + d;
    }
    return n;
}

std::string language_name(std::string_view text) {
    constexpr std::string_view key = "mlanguage=";
    const size_t at = text.find(key);
    if (at == std::string_view::npos) return {};
    std::string_view rest = text.substr(at + key.size());
    rest = rest.substr(0, rest.find('\n'));
    return without_cr(rest);
}

std::vector<LanguageEntry> loadlanguages(const std::vector<std::string>& folders) {
    namespace fs = std::filesystem;
    std::vector<LanguageEntry> menu;
    std::vector<std::string> seen;  // file names, lower-cased
    for (const std::string& folder : folders) {
        if (folder.empty()) continue;
        std::error_code ec;
        std::vector<fs::path> files;
        for (fs::directory_iterator it(platform::native_path(folder), ec), end; !ec && it != end; it.increment(ec)) {
            const fs::path& p = it->path();
            if (lower(platform::utf8_path(p.extension())) == ".lan" && it->is_regular_file(ec)) files.push_back(p);
        }
        std::sort(files.begin(), files.end());
        for (const fs::path& p : files) {
            const std::string name = lower(platform::utf8_path(p.filename()));
            if (std::find(seen.begin(), seen.end(), name) != seen.end()) continue;
            const auto text = platform::read_file(platform::utf8_path(p));
            if (!text) continue;
            const std::string title = language_name(*text);
            if (title.empty()) continue;
            seen.push_back(name);
            menu.push_back({title, platform::utf8_path(p)});
        }
    }
    return menu;
}

}  // namespace korvex::integration
