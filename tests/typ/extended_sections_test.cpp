// Extra points (blocks 0 and 1) and active routing lines.
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/clock.h"
#include "typ/curf_access.h"
#include "typ/encoder.h"
#include "typ/extended_sections.h"
#include "typ/header.h"
#include "platform/prompt.h"
#include "support/harness.h"
#include "text/load_driver.h"

using namespace korvex;

namespace {

model::Store file_of(int hdr_len, size_t size = 300) {
    model::Store s;
    s.curf.assign(size, '\0');
    typ::head(s, 0, hdr_len);
    s.hdr_len = hdr_len;
    return s;
}

void put_bytes(model::Store& s, int64_t at, const std::string& hex) {
    const std::string b = typ::hexasc(hex);
    for (size_t k = 0; k < b.size(); ++k) typ::head(s, at + static_cast<int64_t>(k), static_cast<unsigned char>(b[k]));
}

// One plain line record at 200 and an active index of 4-byte records at 220.
model::Store active_file(int hdr_len, const std::string& index_hex, int recsize) {
    model::Store s = file_of(hdr_len);
    put_bytes(s, 200, "0600ff000002");  // scheme 6, one colour, width 2
    typ::put_head4(s, 200, typ::hdr::ln_data);
    typ::put_head4(s, 6, typ::hdr::ln_data_len);
    put_bytes(s, 220, index_hex);
    typ::put_head4(s, 220, typ::hdr::act_index);
    typ::head(s, typ::hdr::act_recsize, recsize);
    typ::put_head4(s, static_cast<int64_t>(index_hex.size() / 2), typ::hdr::act_index_len);
    return s;
}

}  // namespace

TEST(ActiveRouting, ActivityDigitsBecomeTheActivityCode) {
    model::Store s = active_file(174, "00000400", 4);
    ASSERT_EQ(typ::active_line_count(s), 1);
    typ::polylinesactive(s);
    EXPECT_EQ(s.ln_nact, 1);
    EXPECT_EQ(s.ln_act[0], "40");
    EXPECT_EQ(s.ln_pos[0], 200);
    EXPECT_EQ(s.ln_len[0], 6);
    EXPECT_EQ(s.ln_mode[0], 6);
    EXPECT_EQ(typ::chkactivity("40"), "Walking");
    EXPECT_EQ(typ::chkactivity("52"), "Mountain Biking");
    EXPECT_EQ(typ::chkactivity("61"), "");

    typ::noactive(s);
    EXPECT_EQ(s.ln_nact, 0);
    EXPECT_EQ(s.ln_act[0], "");
}

TEST(ActiveRouting, ThreeByteRecordsAndShortHeaders) {
    model::Store s = active_file(174, "000501", 3);
    typ::polylinesactive(s);
    EXPECT_EQ(s.ln_act[0], "51");
    // 0xa4 reads blocks but no active routing.
    model::Store t = active_file(164, "00000400", 4);
    EXPECT_EQ(typ::active_line_count(t), 0);
}

TEST(ActiveRouting, CorruptCountsStayWithinTheFile) {
    model::Store s = active_file(174, "00000400", 1);
    typ::put_head4(s, 0xffffffffLL, typ::hdr::act_index_len);
    EXPECT_EQ(typ::active_line_count(s), 80);  // 300 - 220 bytes of one-byte records
    typ::polylinesactive(s);
    EXPECT_EQ(s.ln_nact, 80);
    typ::head(s, typ::hdr::act_recsize, 0);
    EXPECT_EQ(typ::active_line_count(s), 0);
}

TEST(ExtraPoints, HeaderOf6eWithEmptyBlockZeroHasNone) {
    model::Store s = file_of(0x6e);
    typ::put_head4(s, 200, typ::hdr::blk0);
    typ::head(s, typ::hdr::blk0_recsize, 4);
    typ::poiextra_read(s);
    EXPECT_EQ(s.pt_nx, 0);
    typ::put_head4(s, 8, typ::hdr::blk0_len);
    typ::head(s, typ::hdr::blk0_recsize, 0);  // a zero record size
    EXPECT_EQ(typ::extra_point_count(s), 0);
    model::Store plain = file_of(91);
    EXPECT_EQ(typ::extra_point_count(plain), 0);
}

TEST(ExtraPoints, IndexGivesOffsetThenCode) {
    model::Store s = file_of(164);
    // Two 4-byte records, offset width 2: (0, 0x22a3 = 0x115 sub 3), (5, 0x60).
    put_bytes(s, 200, "0000a322" "05006000");
    typ::put_head4(s, 200, typ::hdr::blk0);
    typ::head(s, typ::hdr::blk0_recsize, 4);
    typ::put_head4(s, 8, typ::hdr::blk0_len);
    typ::head(s, typ::hdr::blk0_packing, 15);
    typ::put_head4(s, 220, typ::hdr::blk1);  // zero records: no picture
    typ::put_head4(s, 10, typ::hdr::blk1_len);
    typ::poiextra_read(s);
    ASSERT_EQ(s.pt_nx, 2);
    EXPECT_EQ(s.pt_typ[0], "11503");
    EXPECT_EQ(s.pt_len[0], 5);
    EXPECT_EQ(s.pt_len[1], 5);
    EXPECT_EQ(s.pt_txt[0], "");

    typ::put_head4(s, 0xfffffff0LL, typ::hdr::blk0_len);  // corrupt length
    typ::head(s, typ::hdr::blk0_recsize, 1);
    EXPECT_EQ(typ::extra_point_count(s), 100);
}

TEST(ExtraPoints, Blk0PacksLowestByteFirst) {
    EXPECT_EQ(typ::fnblk0("1A2", 2), std::string("\xa2\x01", 2));
    EXPECT_EQ(typ::fnblk0("5", 3), std::string("\x05\x00\x00", 3));
    EXPECT_EQ(typ::fnblk0("123456", 2), std::string("\x56\x34", 2));
}

TEST(ExtendedSections, ExtraPointsAndActiveLinesSurviveASaveOfACorpusFile) {
    const std::string dir = korvex::testing::corpus_dir();
    if (dir.empty()) GTEST_SKIP() << "no corpus";
    platform::ScriptedPrompt ui;
    model::Store s;
    korvex::testing::decode_bytes(s, ui, korvex::testing::read_bytes(dir + "/typ/nickoe-m00003d5.typ"));
    ASSERT_GT(s.pt_n, 1);
    ASSERT_GT(s.ln_n, 1);
    // Every point becomes an extra point, the last line an active one.
    s.pt_nx = s.pt_n;
    s.pt_n = 0;
    s.ln_n -= 1;
    s.ln_nact = 1;
    s.ln_act[static_cast<size_t>(s.ln_n)] = "41";
    s.hdr_caption = typ::header_caption(174);
    const model::Store before = s;
    const std::string bytes = korvex::testing::encode(s, ui);
    ASSERT_FALSE(bytes.empty());

    model::Store t;
    korvex::testing::decode_bytes(t, ui, bytes);
    EXPECT_EQ(t.pt_n, 0);
    ASSERT_EQ(t.pt_nx, before.pt_nx);
    for (int32_t k = 0; k < t.pt_nx; ++k) {
        EXPECT_EQ(t.pt_typ[static_cast<size_t>(k)], before.pt_typ[static_cast<size_t>(k)]);
        EXPECT_EQ(t.pt_bmp[static_cast<size_t>(k)], before.pt_bmp[static_cast<size_t>(k)]);
    }
    ASSERT_EQ(t.ln_nact, 1);
    const auto row = static_cast<size_t>(t.ln_n);
    EXPECT_EQ(t.ln_act[row], "41");
    EXPECT_EQ(t.ln_col[row], before.ln_col[static_cast<size_t>(before.ln_n)]);
    EXPECT_EQ(t.ln_bmp[row], before.ln_bmp[static_cast<size_t>(before.ln_n)]);
}

// Saving to disk names missing labels of extra points only when they are
// missing: the sample (both forms) and every corpus file with extra points
// save without the word, and their extra points decode as they were. A label
// block the file's header names but whose bytes were not read still says so.
TEST(ExtraPoints, SavingSaysLabelsAreMissingOnlyWhenTheyAre) {
    const std::string lost = "Cannot find data labels. Extra Points not saved correctly.";
    const std::string sample = korvex::testing::source_dir() + "/data/samples/sample";
    std::vector<std::string> files = {sample + ".typ", sample + ".txt"};
    for (const std::string& f : korvex::testing::files_with(korvex::testing::corpus_dir() + "/typ", ".typ")) files.push_back(f);
    for (const std::string& f : korvex::testing::corpus_texts()) files.push_back(f);
    int with_extra_points = 0;
    for (const std::string& path : files) {
        SCOPED_TRACE(path);
        platform::ScriptedPrompt ui;
        model::Store s;
        model::newproject(s);
        const std::string bytes = korvex::testing::read_bytes(path);
        if (path.size() > 4 && path.compare(path.size() - 4, 4, ".txt") == 0)
            text::load_txt(s, ui, path, bytes, false, false);
        else
            korvex::testing::decode_bytes(s, ui, bytes);
        if (s.pt_nx == 0) continue;
        ++with_extra_points;
        const model::Store before = s;
        platform::FixedClock clock(korvex::testing::k_fixed_stamp);
        ASSERT_TRUE(typ::save_typ(s, ui, clock, true));
        for (const std::string& m : ui.messages) EXPECT_NE(m, lost);
        model::Store t;
        korvex::testing::decode_bytes(t, ui, s.curf);
        ASSERT_EQ(t.pt_nx, before.pt_nx);
        for (int32_t k = 0; k < t.pt_nx; ++k) {
            const auto a = static_cast<size_t>(t.pt_n + k), b = static_cast<size_t>(before.pt_n + k);
            EXPECT_EQ(t.pt_typ[a], before.pt_typ[b]);
            EXPECT_EQ(t.pt_bmp[a], before.pt_bmp[b]);
            EXPECT_EQ(t.pt_col[a], before.pt_col[b]);
            EXPECT_EQ(t.pt_lab[a], before.pt_lab[b]);
        }
    }
    EXPECT_GE(with_extra_points, 2);

    // The sample again, its header naming 10 bytes of block 3 that are not there.
    platform::ScriptedPrompt ui;
    model::Store s;
    korvex::testing::decode_bytes(s, ui, korvex::testing::read_bytes(sample + ".typ"));
    ASSERT_GT(s.pt_nx, 0);
    typ::put_head4(s, 10, typ::hdr::block_len[3]);
    platform::FixedClock clock(korvex::testing::k_fixed_stamp);
    ASSERT_TRUE(typ::save_typ(s, ui, clock, true));
    EXPECT_NE(std::find(ui.messages.begin(), ui.messages.end(), lost), ui.messages.end());
}
