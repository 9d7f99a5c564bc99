// The walk over a whole file: header fields, counts, the date rule, and
// what corrupt headers do.
#include <gtest/gtest.h>

#include "support/harness.h"
#include "typ/curf_access.h"
#include "typ/decoder.h"
#include "typ/encoder.h"
#include "typ/header.h"

using namespace korvex;
using namespace korvex::testing;

namespace {

// A bare header of the given length with magic, date and ids.
std::string bare_header(int len) {
    model::Store s;
    s.curf.assign(static_cast<size_t>(len), '\0');
    typ::head(s, 0, len);
    const char* magic = "GARMIN TYP";
    for (int k = 0; k < 10; ++k) typ::head(s, 2 + k, magic[k]);
    typ::head(s, typ::hdr::year, 0xdf);
    typ::head(s, typ::hdr::year + 1, 0x07);  // 2015
    typ::head(s, typ::hdr::month_or_day, 2);
    typ::head(s, typ::hdr::day_or_month, 19);
    typ::head(s, typ::hdr::hour, 22);
    typ::head(s, typ::hdr::minute, 38);
    typ::head(s, typ::hdr::codepage, 0xe4);
    typ::head(s, typ::hdr::codepage + 1, 0x04);
    typ::head(s, typ::hdr::fid, 35);
    typ::head(s, typ::hdr::pid, 1);
    return s.curf;
}

TEST(Decoder, EmptyHeaderHasNoElementsAndSaysSo) {
    model::Store s;
    platform::ScriptedPrompt ui;
    decode_bytes(s, ui, bare_header(91));
    EXPECT_EQ(s.pg_n + s.ln_n + s.pt_n + s.pt_nx + s.ln_nact, 0);
    EXPECT_EQ(s.hdr_len, 91);
    EXPECT_EQ(s.codepage, 1252);
    EXPECT_EQ(s.fid, "35");
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0], "\r\nTYP file contains no visual elements.");
}

TEST(Decoder, HeaderOf164AsksForExtraData) {
    model::Store s;
    platform::ScriptedPrompt ui;
    decode_bytes(s, ui, bare_header(164));
    ASSERT_EQ(ui.messages.size(), 1u);
    EXPECT_EQ(ui.messages[0], "Click Tools --> Extra Data\r\nTYP file contains no visual elements.");
}

TEST(Decoder, DateReadsDayFrom17AndMonthFrom16PlusOne) {
    model::Store s;
    platform::ScriptedPrompt ui;
    decode_bytes(s, ui, bare_header(156));
    EXPECT_EQ(s.created, "Created  19/3/2015 22:38");
}

TEST(Decoder, OurSavedDateShowsDayAndMonthExchanged) {
    // Saved on 17 May: the file holds day 17 at 16 and month 5 at 17, so it
    // reads back as day 5 of month 18. Kept as the format's history has it.
    model::Store s;
    platform::ScriptedPrompt ui;
    decode_bytes(s, ui, bare_header(91));
    const std::string saved = encode(s, ui);
    model::Store back;
    decode_bytes(back, ui, saved);
    EXPECT_EQ(back.created, "Created  5/18/2024 13:45");
    EXPECT_EQ(static_cast<unsigned char>(saved[14]), 124);  // two-digit year plus 100
}

TEST(Decoder, SecondHeaderByteIsIgnored) {
    std::string bytes = bare_header(110);
    bytes[1] = 0x01;
    model::Store s;
    platform::ScriptedPrompt ui;
    decode_bytes(s, ui, bytes);
    EXPECT_EQ(s.hdr_len, 110);
    EXPECT_EQ(s.hdr_caption, " 6e");
}

TEST(Decoder, HugeCountsFromACorruptHeaderAreCutToTheFile) {
    std::string bytes = bare_header(91);
    model::Store s;
    s.curf = bytes;
    typ::head(s, typ::hdr::pt_index, 91);
    typ::head(s, typ::hdr::pt_recsize, 4);
    typ::put_head4(s, 0x7ffffff0, typ::hdr::pt_index_len);
    typ::head(s, typ::hdr::ln_recsize, 1);
    typ::put_head4(s, 0x7ffffff0, typ::hdr::ln_index_len);
    typ::head(s, typ::hdr::pg_recsize, 3);
    typ::put_head4(s, 0xfffffff0, typ::hdr::pg_index_len);
    platform::ScriptedPrompt ui;
    model::Store d;
    decode_bytes(d, ui, s.curf);
    EXPECT_LE(d.pt_n, 1);
    EXPECT_LE(d.pt_typ.size(), 2u);
    EXPECT_LE(d.ln_txt.size(), 92u);
    EXPECT_LE(d.pg_txt.size(), 92u);
    EXPECT_NE(d.loadrep.find("index runs past the end of the file"), std::string::npos);
}

TEST(Decoder, PolygonIndexOffsetMismatchIsReported) {
    model::Store s;
    s.curf = bare_header(91);
    typ::put_head4(s, 500, typ::hdr::pg_index);
    platform::ScriptedPrompt ui;
    model::Store d;
    decode_bytes(d, ui, s.curf);
    EXPECT_NE(d.loadrep.find("Bytes Not identical!!!"), std::string::npos);
}

TEST(Encoder, UnusualCodepageRefusesAndLeavesTheBufferAlone) {
    model::Store s;
    platform::ScriptedPrompt ui;
    decode_bytes(s, ui, bare_header(91));
    const std::string before = s.curf;
    s.codepage = 0;
    platform::FixedClock clock(k_fixed_stamp);
    EXPECT_FALSE(typ::save_typ(s, ui, clock, true));
    EXPECT_EQ(ui.messages.back(), "Unusual Codepage");
    EXPECT_EQ(s.curf, before);

    s.codepage = 1300;
    ui.script(platform::Answer::cancel);
    EXPECT_FALSE(typ::save_typ(s, ui, clock, true));
    EXPECT_EQ(ui.questions.back(), "Unusual Codepage\r\n\r\nContinue?");
    ui.script(platform::Answer::yes);
    EXPECT_TRUE(typ::save_typ(s, ui, clock, true));
}

TEST(Encoder, EmptyProjectIsHeaderOnly) {
    model::Store s;
    platform::ScriptedPrompt ui;
    decode_bytes(s, ui, bare_header(91));
    const std::string saved = encode(s, ui);
    ASSERT_EQ(saved.size(), 91u);
    EXPECT_EQ(saved.substr(2, 10), "GARMIN TYP");
    EXPECT_EQ(saved[12], 1);
}

TEST(Encoder, LoweringTheHeaderWithActiveLinesWarnsFirst) {
    model::Store s;
    platform::ScriptedPrompt ui;
    decode_bytes(s, ui, bare_header(174));
    s.ln_nact = 1;  // as if an active line had been loaded
    s.hdr_caption = " 5b";
    ui.script(platform::Answer::no);
    platform::FixedClock clock(k_fixed_stamp);
    EXPECT_FALSE(typ::save_typ(s, ui, clock, true));
    ASSERT_FALSE(ui.questions.empty());
    EXPECT_EQ(ui.questions.back(),
              "Your Active Routing will not be saved!\r\nImportant data may get lost.\r\nContinue anyway?\r\n"
              "Header was changed!");
    EXPECT_EQ(s.hdr_len, 174);
}

}  // namespace
