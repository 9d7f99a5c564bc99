// Round trips of the corpus texts: what we write of a text reads back to
// the same text, and its TYP decodes to the same elements.
#include <gtest/gtest.h>

#include "interop/mkgmap_support.h"
#include "text/load_driver.h"
#include "text/text_writer.h"

using namespace korvex;
using namespace korvex::testing;
using namespace korvex::testing::interop;

namespace {

void load_with_ids(model::Store& s, platform::Prompt& ui, const std::string& path, std::string text) {
    model::newproject(s);
    text::load_txt(s, ui, path, std::move(text), false, false);
    if (s.fid.empty() || s.fid == "0") s.fid = "1";
    if (s.pid == "0") s.pid = "1";
}

std::string without_created(const std::string& text) {
    std::string out;
    for (const std::string& line : lines_of(text))
        if (line.rfind(";created :", 0) != 0) out += line + "\n";
    return out;
}

class TextRoundTrip : public ::testing::TestWithParam<std::string> {};

TEST_P(TextRoundTrip, WrittenTextReadsBackToTheSameText) {
    KORVEX_SKIP_WITHOUT_CORPUS(GetParam());
    for (const int kind : {13, text::k_kind_utf8}) {
        platform::ScriptedPrompt ui;
        model::Store first, second;
        load_with_ids(first, ui, GetParam(), read_bytes(GetParam()));
        const std::string once = text_of(first, ui, kind);
        load_with_ids(second, ui, GetParam(), once);
        EXPECT_EQ(first_difference(without_created(once), without_created(text_of(second, ui, kind))), "")
            << "kind " << kind;
    }
}

// The TYP of a text holds all its elements, and the text decoded from that
// TYP loses nothing of them: read again, its TYP decodes to the same text.
// The decoded text is written as UTF-8, so that labels of the code page that
// look like UTF-8 (suke-hike's "FÃ¤hre") are not read as UTF-8.
TEST_P(TextRoundTrip, TypOfTheTextHoldsEveryElementAndItsTextKeepsThem) {
    KORVEX_SKIP_WITHOUT_CORPUS(GetParam());
    platform::ScriptedPrompt ui;
    model::Store s;
    load_with_ids(s, ui, GetParam(), read_bytes(GetParam()));
    auto decoded = [&](const std::string& typ, model::Store& out) {
        decode_bytes(out, ui, typ);
        if (out.pid == "0") out.pid = "1";
        return text_of(out, ui, text::k_kind_utf8);
    };
    model::Store back, again, last;
    const std::string text = decoded(encode(s, ui), back);
    EXPECT_EQ(back.pg_n, s.pg_n);
    EXPECT_EQ(back.ln_n, s.ln_n);
    EXPECT_EQ(back.pt_n, s.pt_n);
    load_with_ids(again, ui, GetParam(), text);
    // The decoder completes the draw order of a TYP from its polygons, but
    // says so in a polygon's ";draworder:" comment only when the TYP had it.
    EXPECT_EQ(first_difference(without_comments(text), without_comments(decoded(encode(again, ui), last))), "");
}

INSTANTIATE_TEST_SUITE_P(Files, TextRoundTrip, ::testing::ValuesIn(corpus_params(corpus_texts())), file_test_name);

}  // namespace
