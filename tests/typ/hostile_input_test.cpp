// Any bytes must decode, print and encode without a crash or a hang, and the
// tables must never grow beyond what the file can hold.
#include <gtest/gtest.h>

#include <random>

#include "support/every_form.h"
#include "support/harness.h"

using namespace korvex;
using namespace korvex::testing;

namespace {

size_t row_count(const model::Store& s) { return s.pg_txt.size() + s.ln_txt.size() + s.pt_txt.size(); }

void survive(const std::string& bytes) {
    model::Store s;
    platform::ScriptedPrompt ui;
    decode_bytes(s, ui, bytes);
    EXPECT_LE(row_count(s), bytes.size() + 8) << "tables larger than the file";
    text_of(s, ui);
    encode(s, ui);
}

std::vector<std::string> seeds() {
    std::vector<std::string> out;
    for (auto& f : files_with(source_dir() + "/data/samples", ".typ")) out.push_back(read_bytes(f));
    out.push_back(every_form_typ());
    if (!corpus_dir().empty())
        for (auto& f : files_with(corpus_dir() + "/typ", ".typ")) out.push_back(read_bytes(f));
    return out;
}

TEST(HostileInput, TruncatedFilesDecode) {
    for (const auto& seed : seeds())
        for (size_t cut : {size_t{0}, size_t{1}, size_t{13}, size_t{60}, size_t{91}, size_t{100}, seed.size() / 3,
                           seed.size() / 2, seed.size() - 1})
            if (cut <= seed.size()) survive(seed.substr(0, cut));
}

TEST(HostileInput, FlippedBytesDecode) {
    std::mt19937 rng(12345);
    for (const auto& seed : seeds()) {
        if (seed.empty()) continue;
        for (int round = 0; round < 8; ++round) {
            std::string bytes = seed;
            const int flips = 1 + static_cast<int>(rng() % 16);
            for (int k = 0; k < flips; ++k) {
                // Half of the flips hit the header, where offsets and counts live.
                const size_t limit = (k % 2 == 0) ? std::min<size_t>(bytes.size(), 180) : bytes.size();
                bytes[rng() % limit] = static_cast<char>(rng() & 0xff);
            }
            survive(bytes);
        }
    }
}

TEST(HostileInput, ExtremeHeaderValuesDecode) {
    for (int len : {0, 1, 90, 91, 110, 156, 164, 174, 255}) {
        std::string bytes(300, '\xff');
        bytes[0] = static_cast<char>(len);
        survive(bytes);
        std::string zeros(300, '\0');
        zeros[0] = static_cast<char>(len);
        survive(zeros);
    }
}

}  // namespace
