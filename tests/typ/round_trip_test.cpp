// Decode, encode, decode again: the text must not change, and a file our
// encoder wrote must re-encode to the same bytes.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/every_form.h"
#include "support/file_params.h"
#include "support/harness.h"
#include "typ/header.h"

using namespace korvex;
using namespace korvex::testing;

namespace {

std::vector<std::string> typ_files() {
    std::vector<std::string> files = files_with(source_dir() + "/data/samples", ".typ");
    files.push_back(k_every_form);
    if (!corpus_dir().empty())
        for (auto& f : files_with(corpus_dir() + "/typ", ".typ")) files.push_back(f);
    return files;
}

class TypRoundTrip : public ::testing::TestWithParam<std::string> {};

TEST_P(TypRoundTrip, DecodeEncodeDecodeKeepsTheTextAndOurBytesAreStable) {
    const std::string original = typ_bytes(GetParam());
    ASSERT_FALSE(original.empty());
    platform::ScriptedPrompt ui;

    model::Store first;
    decode_bytes(first, ui, original);
    const std::string text1 = text_of(first, ui);
    const std::string ours = encode(first, ui);
    ASSERT_FALSE(ours.empty());

    model::Store second;
    decode_bytes(second, ui, ours);
    const std::string text2 = text_of(second, ui);
    // A record holds one string a language: later ones of the same language
    // are dropped by the first encode.
    EXPECT_EQ(first_difference(first_string_per_language(without_comments(text1)), without_comments(text2)), "");

    const std::string again = encode(second, ui);
    EXPECT_TRUE(again == ours) << "re-encoding our own file changed " << GetParam();
}

// Header bytes the encoder does not write itself are kept by a save at the
// same length; a header that grows (without extra points) starts clean.
TEST(TypHeaderTail, KeptAtTheSameLengthAndCleanWhenTheHeaderGrows) {
    platform::ScriptedPrompt ui;
    model::Store s;
    decode_bytes(s, ui, typ_bytes(k_every_form));
    s.pt_nx = 0;  // extra points keep their blocks' bytes in a grown header too
    s.ln_nact = 0;  // active lines ask for the longest header
    s.hdr_caption = typ::header_caption(0x9c);
    const std::string first = encode(s, ui);
    ASSERT_EQ(s.hdr_len, 0x9c);
    const auto marked = [&](int32_t grow_to) {
        model::Store m;
        decode_bytes(m, ui, first);
        m.pt_nx = 0;
        for (int32_t p = typ::hdr::k_min; p < 0x9c; ++p)
            if (p != typ::hdr::blk0_packing) m.curf[static_cast<size_t>(p)] = 'Z';
        if (grow_to) m.hdr_caption = typ::header_caption(grow_to);
        return encode(m, ui);
    };
    const std::string same = marked(0);
    const std::string grown = marked(0xae);
    int kept = 0;
    for (int32_t p = typ::hdr::k_min; p < 0x9c; ++p) {
        if (same[static_cast<size_t>(p)] != 'Z') continue;
        ++kept;
        EXPECT_EQ(grown[static_cast<size_t>(p)], '\0') << "byte " << p;
    }
    EXPECT_GT(kept, 0);
}

INSTANTIATE_TEST_SUITE_P(Files, TypRoundTrip, ::testing::ValuesIn(typ_files()), file_test_name);

}  // namespace
