// Decode, encode, decode again: the text must not change, and a file our
// encoder wrote must re-encode to the same bytes.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/every_form.h"
#include "support/file_params.h"
#include "support/harness.h"

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

INSTANTIATE_TEST_SUITE_P(Files, TypRoundTrip, ::testing::ValuesIn(typ_files()), file_test_name);

}  // namespace
