#include "support/harness.h"

#include <algorithm>
#include <filesystem>

#include "platform/files.h"
#include "text/text_writer.h"
#include "typ/decoder.h"
#include "typ/encoder.h"

namespace korvex::testing {

namespace fs = std::filesystem;

std::string source_dir() { return KORVEX_SOURCE_DIR; }

std::string corpus_dir() {
    fs::path p = fs::path(KORVEX_SOURCE_DIR).parent_path() / "shared" / "corpus";
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

std::string without_comments(const std::string& text) {
    std::string out;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty() && line[0] != ';') {
            out += line;
            out += '\n';
        }
        start = end + 1;
    }
    return out;
}

}  // namespace korvex::testing
