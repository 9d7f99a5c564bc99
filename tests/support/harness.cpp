#include "support/harness.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "platform/files.h"
#include "text/text_writer.h"
#include "typ/decoder.h"
#include "typ/encoder.h"

namespace korvex::testing {

namespace fs = std::filesystem;

std::string corpus_dir() {
    fs::path p = fs::path(source_dir()).parent_path() / "shared" / "corpus";
    return fs::is_directory(p) ? p.string() : std::string();
}

std::vector<std::string> files_with(const std::string& dir, const std::string& ext) {
    std::vector<std::string> out;
    if (dir.empty() || !fs::is_directory(dir)) return out;
    for (const auto& e : fs::directory_iterator(dir))
        if (e.is_regular_file() && e.path().extension() == ext) out.push_back(e.path().string());
    std::sort(out.begin(), out.end());
    return out;
}

std::vector<std::string> corpus_texts() {
    if (corpus_dir().empty()) return {};
    return files_with(corpus_dir() + "/txt", ".txt");
}

std::vector<std::string> corpus_params(std::vector<std::string> files) {
    if (files.empty()) files.push_back(k_no_corpus);
    return files;
}

std::string file_param_name(const std::string& path) {
    std::string n = fs::path(path).stem().string();
    for (char& c : n)
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    return n;
}

std::string read_bytes(const std::string& path) { return platform::read_file(path).value_or(std::string()); }

void decode_bytes(model::Store& s, platform::Prompt& ui, const std::string& bytes) {
    model::newproject(s);
    typ::open_typ_bytes(s, ui, bytes, "/test/file.typ");
}

std::string text_of(model::Store& s, platform::Prompt& ui, int kind) {
    platform::FixedClock clock(k_fixed_stamp);
    std::string out;
    text::save_txt(s, ui, clock, kind, [&](std::string_view piece) { out.append(piece); });
    return out;
}

std::string encode(model::Store& s, platform::Prompt& ui) {
    platform::FixedClock clock(k_fixed_stamp);
    if (!typ::save_typ(s, ui, clock, false)) return {};
    return s.curf;
}

const integration::Messages& english_messages() {
    static const integration::Messages m;
    return m;
}

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> out;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        out.push_back(std::move(line));
        start = end + 1;
    }
    return out;
}

std::string crlf(const std::string& text) {
    std::string out;
    for (char c : text) {
        if (c == '\n') out += '\r';
        out += c;
    }
    return out;
}

std::string without_comments(const std::string& text) {
    std::string out;
    for (const std::string& line : lines_of(text))
        if (!line.empty() && line[0] != ';') {
            out += line;
            out += '\n';
        }
    return out;
}

std::string first_string_per_language(const std::string& text) {
    std::string out;
    std::vector<std::string> seen;
    int number = 0;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(start, end - start);
        start = end + 1;
        if (line.rfind("[_", 0) == 0) {
            seen.clear();
            number = 0;
        }
        const size_t eq = line.find("=0x");
        const size_t comma = line.find(',');
        if (line.rfind("String", 0) == 0 && eq != std::string::npos && comma != std::string::npos && comma > eq) {
            std::string lang = line.substr(eq + 3, comma - eq - 3);
            for (char& c : lang) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
            if (std::find(seen.begin(), seen.end(), lang) != seen.end()) continue;
            seen.push_back(lang);
            line = "String" + std::to_string(++number) + line.substr(eq);
        }
        out += line;
        out += '\n';
    }
    return out;
}

std::string first_difference(const std::string& a, const std::string& b) {
    if (a == b) return {};
    auto lines = [](const std::string& t) {
        std::vector<std::string> out;
        size_t start = 0;
        while (start <= t.size()) {
            size_t end = t.find('\n', start);
            if (end == std::string::npos) end = t.size();
            out.push_back(t.substr(start, end - start));
            start = end + 1;
        }
        return out;
    };
    const auto la = lines(a), lb = lines(b);
    size_t k = 0;
    while (k < la.size() && k < lb.size() && la[k] == lb[k]) ++k;
    std::string out = "first difference at line " + std::to_string(k + 1) + "\n";
    for (size_t j = k >= 6 ? k - 6 : 0; j < k; ++j) out += "  " + la[j] + "\n";
    out += "- " + (k < la.size() ? la[k] : std::string("<end>")) + "\n";
    out += "+ " + (k < lb.size() ? lb[k] : std::string("<end>")) + "\n";
    return out;
}

}  // namespace korvex::testing
