// The text we write is fed to mkgmap, the OSM map compiler, run as a black
// box: it must compile without an error or a warning, and the TYP it makes
// must decode to the same elements as the file we started from.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>

#include "platform/files.h"
#include "support/harness.h"

using namespace korvex;
using namespace korvex::testing;
namespace fs = std::filesystem;

namespace {

bool have_mkgmap() { return fs::exists("/usr/bin/mkgmap") || fs::exists("/usr/share/mkgmap/mkgmap.jar"); }

struct Compiled {
    int status = -1;
    std::string log;
    std::string typ;
};

Compiled mkgmap(const std::string& text, const std::string& fid) {
    Compiled c;
    fs::path dir = fs::temp_directory_path() / ("korvex-mkgmap-" + std::to_string(::getpid()));
    fs::remove_all(dir);
    fs::create_directories(dir);
    const fs::path src = dir / "style.txt";
    platform::write_file_atomic(src.string(), text);
    const std::string cmd = "cd '" + dir.string() + "' && mkgmap --family-id=" + fid + " --output-dir='" + dir.string() +
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
    static const std::regex bad("warning|error|severe|exception", std::regex::icase);
    std::string out;
    size_t start = 0;
    while (start < log.size()) {
        size_t end = log.find('\n', start);
        if (end == std::string::npos) end = log.size();
        const std::string line = log.substr(start, end - start);
        if (std::regex_search(line, bad) && line.find("Number of ") != 0) out += line + "\n";
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

class Mkgmap : public ::testing::TestWithParam<std::string> {};

TEST_P(Mkgmap, CompilesOurTextCleanlyToTheSameElements) {
    if (!have_mkgmap()) GTEST_SKIP() << "mkgmap is not installed";
    platform::ScriptedPrompt ui;
    model::Store ours;
    decode_bytes(ours, ui, read_bytes(GetParam()));
    if (ours.fid == "0") ours.fid = "1";
    const std::string text = text_of(ours, ui);

    Compiled c = mkgmap(text, ours.fid);
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
    for (size_t k = 0; k < a.size(); ++k) EXPECT_EQ(first_difference(a[k], b[k]), "") << "element " << k;
}

INSTANTIATE_TEST_SUITE_P(Files, Mkgmap, ::testing::ValuesIn(inputs()), name_of);

}  // namespace
