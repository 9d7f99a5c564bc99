// Shared helpers of the test suites: corpus files, decode and encode in
// memory with a fixed clock and scripted answers.
#pragma once

#include <string>
#include <vector>

#include "integration/messages.h"
#include "model/store.h"
#include "platform/clock.h"
#include "platform/prompt.h"

namespace korvex::testing {

inline const platform::Stamp k_fixed_stamp{2024, 5, 17, 13, 45, 30};

std::string source_dir();  // the checkout
std::string cli_path();    // the built korvex-cli
std::string corpus_dir();  // ../shared/corpus beside the checkout, "" when absent

// Files of a folder with the extension, sorted by name.
std::vector<std::string> files_with(const std::string& dir, const std::string& ext);
std::vector<std::string> corpus_texts();  // the corpus's .txt files, none when absent

// Parameters of a suite over corpus files: the files, or the one entry
// k_no_corpus when the corpus is missing, so that the suite shows as skipped
// instead of vanishing. Tests start with KORVEX_SKIP_WITHOUT_CORPUS.
inline const std::string k_no_corpus = "corpus_missing";
std::vector<std::string> corpus_params(std::vector<std::string> files);
#define KORVEX_SKIP_WITHOUT_CORPUS(param) \
    if ((param) == ::korvex::testing::k_no_corpus) GTEST_SKIP() << "../shared/corpus is missing"

// A test name from a file parameter: its stem, other characters than letters
// and digits as "_".
std::string file_param_name(const std::string& path);

std::string read_bytes(const std::string& path);

// Decodes bytes as the open TYP file of a fresh store.
void decode_bytes(model::Store& s, platform::Prompt& ui, const std::string& bytes);

// The whole text file the tables print (kind 13, or 14 for UTF-8).
std::string text_of(model::Store& s, platform::Prompt& ui, int kind = 13);

// Encodes the tables with the fixed clock; "" when the save was refused.
std::string encode(model::Store& s, platform::Prompt& ui);

// The built-in English messages, one catalogue for every test that only
// reads them.
const integration::Messages& english_messages();

// Lines of a text, CR LF or LF ended, without their line ends.
std::vector<std::string> lines_of(const std::string& text);

// The text with CR LF for each "\n": expected texts are written with "\n"
// for readability, the program's have CR LF.
std::string crlf(const std::string& text);

// The text without comment lines and blank lines.
std::string without_comments(const std::string& text);

// Keeps the first string of each language in every element and renumbers the
// String keys: a TYP record holds one string a language, so an encode keeps
// just that one.
std::string first_string_per_language(const std::string& text);

// "" when the texts are equal, else the first differing line of each with a
// few lines of context: a readable failure for texts of megabytes.
std::string first_difference(const std::string& a, const std::string& b);

}  // namespace korvex::testing
