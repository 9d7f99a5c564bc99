// The text of every corpus TYP file, checked for the shapes mkgmap and our
// own reader rely on.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

#include "platform/codepage.h"
#include "support/file_params.h"
#include "support/harness.h"
#include "text/text_writer.h"
#include "typ/encoding.h"

using namespace korvex;
using namespace korvex::testing;

namespace {

std::vector<std::string> corpus_typ_files() {
    if (corpus_dir().empty()) return corpus_params({});
    return corpus_params(files_with(corpus_dir() + "/typ", ".typ"));
}

int count_of(const std::string& text, const std::string& what) {
    int n = 0;
    for (size_t p = text.find(what); p != std::string::npos; p = text.find(what, p + what.size())) ++n;
    return n;
}

class CorpusText : public ::testing::TestWithParam<std::string> {};

TEST_P(CorpusText, SectionsAreClosedAndSpelledForMkgmap) {
    KORVEX_SKIP_WITHOUT_CORPUS(GetParam());
    platform::ScriptedPrompt ui;
    model::Store s;
    decode_bytes(s, ui, read_bytes(GetParam()));
    if (s.pid == "0") s.pid = "1";
    const std::string text = text_of(s, ui);
    ASSERT_FALSE(text.empty());

    int with_text = 0;
    for (int32_t i = 0; i < s.pg_n; ++i) with_text += !s.pg_txt[static_cast<size_t>(i)].empty();
    EXPECT_EQ(count_of(text, "[_polygon]"), with_text);
    EXPECT_EQ(count_of(text, "[_polygon]") + count_of(text, "[_line]") + count_of(text, "[_point]") + 2,
              count_of(text, "\r\n[end]\r\n"));

    static const std::regex three_digit_type("\r\nType=0x[0-9a-fA-F]{3}\r\n");
    static const std::regex unspecified_as_2f("\r\nString[0-9]+=0x2[fF],");
    EXPECT_FALSE(std::regex_search(text, three_digit_type));
    EXPECT_FALSE(std::regex_search(text, unspecified_as_2f));
    EXPECT_EQ(text.find("SubType="), std::string::npos);
    EXPECT_EQ(text.find("lwidth("), std::string::npos);
}

TEST_P(CorpusText, Utf8KindIsValidUtf8Throughout) {
    KORVEX_SKIP_WITHOUT_CORPUS(GetParam());
    platform::ScriptedPrompt ui;
    model::Store s;
    decode_bytes(s, ui, read_bytes(GetParam()));
    if (s.pid == "0") s.pid = "1";
    const std::string text = text_of(s, ui, text::k_kind_utf8);
    ASSERT_EQ(text.substr(0, 3), typ::bom);
    EXPECT_TRUE(platform::is_valid_utf8(text));
}

INSTANTIATE_TEST_SUITE_P(Files, CorpusText, ::testing::ValuesIn(corpus_typ_files()), file_test_name);

}  // namespace
