// The text we write is fed to mkgmap, the OSM map compiler, run as a black
// box: it must compile without an error or a warning, and the TYP it makes
// must decode to the same elements as the file we started from.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>

#include "platform/files.h"
#include "support/harness.h"

using namespace korvex;
using namespace korvex::testing;
namespace fs = std::filesystem;

namespace {

const char* k_jar = "/usr/share/mkgmap/mkgmap.jar";

bool have_mkgmap() { return fs::exists(k_jar) && std::system("java -version >/dev/null 2>&1") == 0; }

struct Compiled {
    int status = -1;
    std::string log;
    std::string typ;
};

Compiled mkgmap(const std::string& text, const std::string& fid, const std::string& codepage) {
    Compiled c;
    fs::path dir = fs::temp_directory_path() / ("korvex-mkgmap-" + std::to_string(::getpid()));
    fs::remove_all(dir);
    fs::create_directories(dir);
    const fs::path src = dir / "style.txt";
    platform::write_file_atomic(src.string(), text);
    // mkgmap's default logging hides its warnings; this configuration shows
    // every warning and error on the console.
    platform::write_file_atomic((dir / "log.properties").string(),
                                "handlers=java.util.logging.ConsoleHandler\n.level=WARNING\n"
                                "java.util.logging.ConsoleHandler.level=WARNING\n");
    const std::string cmd = "cd '" + dir.string() + "' && java -Dlog.config=log.properties -jar " + k_jar +
                            " --code-page=" + codepage + " --family-id=" + fid + " --output-dir='" + dir.string() +
                            "' style.txt 2>&1";
    FILE* p = popen(cmd.c_str(), "r");
    char buf[4096];
    size_t n;
    while (p && (n = fread(buf, 1, sizeof buf, p)) > 0) c.log.append(buf, n);
    const int st = p ? pclose(p) : -1;
    c.status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    c.typ = read_bytes((dir / "style.typ").string());
    fs::remove_all(dir);
    return c;
}

// Lines of the log that report a problem; the closing counters do not.
std::string complaints(const std::string& log) {
    static const std::regex bad("^(WARNING|SEVERE|ERROR)|exception", std::regex::icase);
    std::string out;
    size_t start = 0;
    while (start < log.size()) {
        size_t end = log.find('\n', start);
        if (end == std::string::npos) end = log.size();
        const std::string line = log.substr(start, end - start);
        if (std::regex_search(line, bad) && line.find("Number of ") == std::string::npos) out += line + "\n";
        start = end + 1;
    }
    return out;
}

std::vector<std::string> inputs() {
    std::vector<std::string> files = files_with(source_dir() + "/data/samples", ".typ");
    if (!corpus_dir().empty())
        for (auto& f : files_with(corpus_dir() + "/typ", ".typ")) files.push_back(f);
    return files;
}

std::string name_of(const ::testing::TestParamInfo<std::string>& info) {
    std::string n = fs::path(info.param).stem().string();
    for (char& ch : n)
        if (!std::isalnum(static_cast<unsigned char>(ch))) ch = '_';
    return n;
}

// The element sections of a text, each without comments, in file order.
std::vector<std::string> elements(const std::string& text) {
    std::vector<std::string> out;
    const std::string body = without_comments(text);
    size_t at = body.find("[_polygon]");
    if (at == std::string::npos) at = body.find("[_line]");
    if (at == std::string::npos) at = body.find("[_point]");
    while (at != std::string::npos) {
        size_t end = body.find("[end]", at);
        if (end == std::string::npos) break;
        out.push_back(body.substr(at, end - at));
        at = body.find("[_", end);
    }
    return out;
}

// An element as a device sees it: pictures painted (each row lists the colour
// of every pixel, so symbols, table order and bit sense do not matter),
// opacity 0 as opaque and 15 as transparent, labels as a sorted set without
// empty strings, the default font left out.
std::string painted(const std::string& element) {
    std::string out;
    std::vector<std::string> labels;
    std::vector<std::pair<std::string, std::string>> colours;
    size_t cpp = 1;
    bool in_picture = false;
    bool rows_seen = false;
    auto close_picture = [&] {
        if (in_picture && !rows_seen)
            for (auto& c : colours) out += "colour " + c.second + "\n";
        in_picture = false;
    };
    for (const std::string& line : lines_of(element)) {
        const size_t xpm = line.find("Xpm=\"");
        if (xpm != std::string::npos) {
            close_picture();
            std::istringstream head(line.substr(xpm + 5));
            size_t w = 0, h = 0, n = 0;
            head >> w >> h >> n >> cpp;
            if (cpp == 0) cpp = 1;
            colours.clear();
            in_picture = true;
            rows_seen = false;
            out += line.substr(0, xpm) + "Xpm " + std::to_string(w) + "x" + std::to_string(h) + "\n";
            continue;
        }
        if (in_picture && line.size() > 2 && line[0] == '"') {
            const size_t close = line.find('"', 1);
            const std::string body = line.substr(1, close == std::string::npos ? std::string::npos : close - 1);
            if (body.size() > cpp + 3 && body.compare(cpp, 3, " c ") == 0) {
                std::string value = body.substr(cpp + 3);
                const size_t alpha = line.find("alpha=");
                const std::string a = alpha == std::string::npos ? "0" : line.substr(alpha + 6);
                if (a == "15") value = "none";
                else if (a != "0" && value != "none") value += "/" + a;
                colours.emplace_back(body.substr(0, cpp), value);
                continue;
            }
            rows_seen = true;
            std::string row;
            for (size_t k = 0; k + cpp <= body.size(); k += cpp) {
                std::string value = "?";
                for (auto& c : colours)
                    if (c.first == body.substr(k, cpp)) value = c.second;
                row += value + " ";
            }
            out += row + "\n";
            continue;
        }
        close_picture();
        // The default font and no custom colour say nothing, however stored.
        if (line.rfind("ExtendedLabels=", 0) == 0 || line == "FontStyle=Default" || line == "CustomColor=No")
            continue;
        if (line.rfind("String", 0) == 0) {
            const size_t eq = line.find('=');
            const size_t comma = line.find(',');
            if (comma != std::string::npos && comma + 1 < line.size())
                labels.push_back(line.substr(eq + 1));
            continue;
        }
        out += line + "\n";
    }
    close_picture();
    std::sort(labels.begin(), labels.end());
    for (auto& l : labels) out += "label " + l + "\n";
    return out;
}

// mkgmap drops fully transparent entries (alpha=15) and merges repeated
// ones from a point's palette in some cases, but keeps the old colour count
// in the record, which scrambles the picture and what follows it. Such
// elements are compared only by their type and picture size.
bool mkgmap_scrambles(const std::string& element) {
    std::vector<std::string> seen;
    for (const std::string& line : lines_of(element)) {
        if (line.find("Xpm=") != std::string::npos) {
            seen.clear();
            continue;
        }
        const size_t c = line.find(" c ");
        if (line.empty() || line[0] != '"' || c == std::string::npos) continue;
        if (line.find("alpha=15") != std::string::npos) return true;
        std::string value = line.substr(c);
        if (std::find(seen.begin(), seen.end(), value) != seen.end()) return true;
        seen.push_back(value);
    }
    return false;
}

std::string keys_only(const std::string& painted_text) {
    std::string out;
    for (const std::string& line : lines_of(painted_text))
        if (line.rfind("[_", 0) == 0 || line.rfind("Type=", 0) == 0 || line.find("Xpm ") != std::string::npos)
            out += line + "\n";
    return out;
}

class Mkgmap : public ::testing::TestWithParam<std::string> {};

TEST_P(Mkgmap, CompilesOurTextCleanlyToTheSameElements) {
    if (!have_mkgmap()) GTEST_SKIP() << "mkgmap is not installed";
    platform::ScriptedPrompt ui;
    model::Store ours;
    decode_bytes(ours, ui, read_bytes(GetParam()));
    if (ours.fid == "0") ours.fid = "1";
    if (ours.pid == "0") ours.pid = "1";
    // mkgmap knows neither active routing nor extra points.
    ours.ln_nact = 0;
    ours.pt_nx = 0;
    const std::string text = text_of(ours, ui);

    Compiled c = mkgmap(text, ours.fid, std::to_string(ours.codepage));
    EXPECT_EQ(c.status, 0) << c.log;
    EXPECT_EQ(complaints(c.log), "");
    ASSERT_FALSE(c.typ.empty()) << c.log;

    model::Store theirs;
    decode_bytes(theirs, ui, c.typ);
    EXPECT_EQ(theirs.pg_n, ours.pg_n);
    EXPECT_EQ(theirs.ln_n, ours.ln_n);
    EXPECT_EQ(theirs.pt_n, ours.pt_n);
    const auto a = elements(text);
    const auto b = elements(text_of(theirs, ui));
    ASSERT_EQ(a.size(), b.size());
    // KORVEX_DUMP=dir keeps both painted texts for a closer look.
    if (const char* dump = std::getenv("KORVEX_DUMP")) {
        std::string pa, pb;
        for (size_t k = 0; k < a.size(); ++k) pa += painted(a[k]), pb += painted(b[k]);
        const std::string stem = fs::path(GetParam()).stem().string();
        platform::write_file_atomic(std::string(dump) + "/" + stem + ".ours", pa);
        platform::write_file_atomic(std::string(dump) + "/" + stem + ".mkgmap", pb);
    }
    for (size_t k = 0; k < a.size(); ++k) {
        if (mkgmap_scrambles(a[k]))
            EXPECT_EQ(first_difference(keys_only(painted(a[k])), keys_only(painted(b[k]))), "") << "element " << k;
        else
            EXPECT_EQ(first_difference(painted(a[k]), painted(b[k])), "") << "element " << k;
    }
}

INSTANTIATE_TEST_SUITE_P(Files, Mkgmap, ::testing::ValuesIn(inputs()), name_of);

}  // namespace
