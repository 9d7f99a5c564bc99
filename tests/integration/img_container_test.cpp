// The TYP inside a map container: listing, extracting and replacing, on the
// container mkgmap built (tests/data/img/gmapsupp.img: tiny.osm and the
// bundled sample TYP, `--gmapsupp --family-id=4242`) and on containers of
// other shapes written by the test builder.
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

#include "integration/img_container.h"
#include "integration/img_replace.h"
#include "platform/files.h"
#include "support/harness.h"
#include "support/img_builder.h"

using namespace korvex::integration;
using korvex::testing::read_bytes;
using korvex::testing::source_dir;
namespace fs = std::filesystem;
namespace platform = korvex::platform;
namespace samples = korvex::samples;

namespace {

std::string mkgmap_container() { return source_dir() + "/tests/data/img/gmapsupp.img"; }

std::string filler(size_t n, int seed) {
    std::string b(n, '\0');
    for (size_t i = 0; i < n; ++i) b[i] = static_cast<char>((i * 31 + static_cast<size_t>(seed) * 17) % 251 + 1);
    return b;
}

uint16_t le16(const std::string& b, size_t at) {
    return static_cast<uint16_t>(static_cast<uint8_t>(b[at]) | static_cast<uint8_t>(b[at + 1]) << 8);
}

}  // namespace

class ImgTest : public ::testing::Test {
protected:
    void SetUp() override {
        dir = fs::temp_directory_path() / ("korvex-img-" + std::to_string(::getpid()) + "-" +
                                           ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir);
        fs::create_directories(dir);
    }
    void TearDown() override { fs::remove_all(dir); }
    std::string path(const std::string& name) const { return (dir / name).string(); }
    std::string copy_of(const std::string& from, const std::string& name) const {
        fs::copy_file(from, path(name), fs::copy_options::overwrite_existing);
        return path(name);
    }
    fs::path dir;
};

namespace {

// Equal bytes, or where they first differ: no dump of megabytes.
::testing::AssertionResult same(const std::string& a, const std::string& b) {
    if (a == b) return ::testing::AssertionSuccess();
    size_t i = 0;
    while (i < a.size() && i < b.size() && a[i] == b[i]) ++i;
    return ::testing::AssertionFailure() << "sizes " << a.size() << " and " << b.size() << ", first difference at "
                                         << i;
}

ImgContainer read_ok(const std::string& p) {
    std::string error;
    auto c = read_container(p, error);
    EXPECT_TRUE(c) << error;
    return c ? *c : ImgContainer{};
}

std::string bytes_of(const ImgContainer& c, size_t i) {
    std::string out, error;
    EXPECT_TRUE(read_subfile(c, i, out, error)) << error;
    return out;
}

// The table and header agree with the data: the first entry ends where the
// table ends, each subfile has its blocks in order after the table, the
// file ends at the last block and the block count field is one more.
void expect_consistent(const ImgContainer& c) {
    std::string head(0x65, '\0');
    std::ifstream(c.path, std::ios::binary).read(head.data(), static_cast<std::streamsize>(head.size()));
    uint32_t next = 0;
    const uint32_t table_end = static_cast<uint32_t>(le16(c.first_entry, 0x0c) | le16(c.first_entry, 0x0e) << 16);
    next = (table_end + c.block_size - 1) / c.block_size;
    for (const ImgSubfile& f : c.subfiles)
        for (uint16_t b : f.blocks) EXPECT_EQ(b, next++) << f.full_name();
    EXPECT_EQ(c.file_size, static_cast<uint64_t>(next) * c.block_size);
    EXPECT_EQ(static_cast<uint8_t>(head[0x63] ^ head[0]) | static_cast<uint8_t>(head[0x64] ^ head[0]) << 8, next + 1);
}

}  // namespace

TEST_F(ImgTest, ListsMkgmapsSubfilesAndTheTypIdsItWroteIn) {
    const ImgContainer c = read_ok(mkgmap_container());
    EXPECT_EQ(c.block_size, 512u);
    std::vector<std::string> names;
    for (const auto& f : c.subfiles) names.push_back(f.full_name());
    EXPECT_EQ(names, (std::vector<std::string>{"MAKEGMAP.MPS", "63240001.RGN", "63240001.TRE", "63240001.LBL",
                                               "0XSAMPLE.TYP", "00004242.SRT"}));
    ASSERT_EQ(c.typ_indexes(), std::vector<size_t>{4});
    const ImgSubfile& t = c.subfiles[4];
    EXPECT_TRUE(t.has_ids);
    EXPECT_EQ(t.fid, 4242);
    EXPECT_EQ(t.pid, 1);
    EXPECT_EQ(subfile_line(t), "0XSAMPLE.TYP  5837 bytes  FID 4242  PID 1");
    // mkgmap copies the TYP but for the four bytes of its ids.
    std::string sample = read_bytes(source_dir() + "/data/samples/sample.typ");
    std::string inside = bytes_of(c, 4);
    ASSERT_EQ(inside.size(), sample.size());
    inside.replace(0x2f, 4, sample.substr(0x2f, 4));
    EXPECT_TRUE(same(inside, sample));
}

TEST_F(ImgTest, ReplacingATypWithItselfGivesTheSameFile) {
    const std::string p = copy_of(mkgmap_container(), "map.img");
    const std::string before = read_bytes(p);
    ImgContainer c = read_ok(p);
    std::string error;
    ASSERT_TRUE(replace_subfile(c, 4, bytes_of(c, 4), p, error)) << error;
    EXPECT_TRUE(same(read_bytes(p), before));
}

// Containers of several shapes, each with a TYP that grows and shrinks
// across the boundaries of a block and of a table entry (240 blocks).
struct ImgShape {
    const char* name;
    int exponent;   // block size
    uint8_t key;    // XOR byte
    bool sparse;    // a large zero subfile left as a hole
};

class ImgRoundTrip : public ImgTest, public ::testing::WithParamInterface<ImgShape> {};

TEST_P(ImgRoundTrip, ReplaceExtractAndBackKeepEveryOtherSubfile) {
    const ImgShape shape = GetParam();
    const uint32_t bs = 1u << shape.exponent;
    const std::string p = path("map.img");
    std::vector<samples::ImgPart> parts = {
        {"MAKEGMAP", "MPS", filler(91, 1)},
        {"00001234", "TRE", filler(bs * 3 + 7, 2)},
        {"00001234", "RGN", shape.sparse ? "" : filler(bs * 250 + 3, 3), shape.sparse ? uint64_t{bs} * 300 : 0},
        {"0000XMAP", "TYP", samples::typ_stub(1234, 7, bs + 1)},
        {"00001234", "SRT", filler(bs, 4)},
    };
    ASSERT_TRUE(samples::build_img(p, shape.exponent, parts, shape.key));
    const ImgContainer original = read_ok(p);
    ASSERT_EQ(original.subfiles.size(), parts.size());
    EXPECT_EQ(original.xor_key, shape.key);
    std::vector<std::string> others;
    for (size_t i = 0; i < original.subfiles.size(); ++i) others.push_back(bytes_of(original, i));
    EXPECT_TRUE(same(others[3], parts[3].bytes));
    if (shape.sparse) {
        EXPECT_TRUE(same(others[2], std::string(bs * 300, '\0')));
    }

    std::vector<size_t> sizes = {1, bs - 1, bs, bs + 1, size_t{240} * bs, size_t{240} * bs + 1};
    if (bs <= 4096) sizes.push_back(size_t{481} * bs);  // three entries
    for (size_t n : sizes) {
        SCOPED_TRACE("new TYP of " + std::to_string(n) + " bytes");
        const std::string typ = samples::typ_stub(4321, 2, n);
        const std::string out = path("out.img");
        std::string error;
        ASSERT_TRUE(replace_subfile(original, 3, typ, out, error)) << error;
        const ImgContainer c = read_ok(out);
        ASSERT_EQ(c.subfiles.size(), original.subfiles.size());
        EXPECT_EQ(c.block_size, bs);
        EXPECT_EQ(c.xor_key, shape.key);
        expect_consistent(c);
        EXPECT_TRUE(same(bytes_of(c, 3), typ));
        EXPECT_EQ(c.subfiles[3].size, n);
        const size_t blocks = (n + bs - 1) / bs;
        EXPECT_EQ(c.subfiles[3].entries.size(), std::max<size_t>(1, (blocks + 239) / 240));
        if (n >= 0x33) {
            EXPECT_EQ(c.subfiles[3].fid, 4321);
        }
        for (size_t i : {0, 1, 2, 4}) EXPECT_TRUE(same(bytes_of(c, i), others[i])) << c.subfiles[i].full_name();

        // And back: the original subfiles, and the original table and header.
        const std::string back = path("back.img");
        ASSERT_TRUE(replace_subfile(c, 3, others[3], back, error)) << error;
        const ImgContainer b = read_ok(back);
        for (size_t i = 0; i < b.subfiles.size(); ++i) EXPECT_TRUE(same(bytes_of(b, i), others[i]));
        EXPECT_EQ(b.first_entry, original.first_entry);
        for (size_t i = 0; i < b.subfiles.size(); ++i) EXPECT_EQ(b.subfiles[i].entries, original.subfiles[i].entries);
        EXPECT_EQ(b.file_size, original.file_size);
    }
}

INSTANTIATE_TEST_SUITE_P(Shapes, ImgRoundTrip,
                         ::testing::Values(ImgShape{"Blocks512", 9, 0, false}, ImgShape{"Blocks4096", 12, 0, false},
                                           ImgShape{"Xored", 10, 0x5a, false},
                                           ImgShape{"SparseLargeBlocks", 15, 0, true}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(ImgTest, TheMkgmapTypGrowsIntoTwoTableEntriesAndShrinksBack) {
    const std::string p = copy_of(mkgmap_container(), "map.img");
    const std::string before = read_bytes(p);
    ImgContainer c = read_ok(p);
    const std::string old_typ = bytes_of(c, 4), srt = bytes_of(c, 5);
    std::string large = old_typ + filler(200000, 9);  // more than 240 blocks
    std::string error;
    ASSERT_TRUE(replace_subfile(c, 4, large, p, error)) << error;
    ImgContainer grown = read_ok(p);
    expect_consistent(grown);
    EXPECT_EQ(grown.subfiles[4].entries.size(), 2u);
    EXPECT_EQ(le16(grown.subfiles[4].entries[1], 0x10), 0x0100);
    EXPECT_TRUE(same(bytes_of(grown, 4), large));
    EXPECT_TRUE(same(bytes_of(grown, 5), srt));  // the subfile after the TYP moved
    ASSERT_TRUE(replace_subfile(grown, 4, old_typ, p, error)) << error;
    EXPECT_TRUE(same(read_bytes(p), before));
}

TEST_F(ImgTest, ABlockSizeGrowsWhenTheBlocksWouldRunOutOfNumbers) {
    const std::string p = path("full.img");
    // 64000 blocks of 1 kB, almost all of them one hole; 1500 more would pass
    // the last block number, 1000 more would not.
    ASSERT_TRUE(samples::build_img(p, 10, {{"00001234", "RGN", "", uint64_t{64000} * 1024},
                                           {"0000XMAP", "TYP", samples::typ_stub(1, 1, 100)}}));
    ImgContainer c = read_ok(p);
    const std::string typ = samples::typ_stub(1, 1, 1500 * 1024);
    std::string error;
    ASSERT_TRUE(replace_subfile(c, 1, typ, path("out.img"), error)) << error;
    ImgContainer out = read_ok(path("out.img"));
    EXPECT_EQ(out.block_size, 2048u);
    expect_consistent(out);
    EXPECT_TRUE(same(bytes_of(out, 1), typ));
    EXPECT_EQ(out.subfiles[0].size, uint64_t{64000} * 1024);
    EXPECT_EQ(out.subfiles[0].entries.size(), (64000u / 2 + 239) / 240);
#ifndef _WIN32
    // The hole stays a hole: 64 MB that take next to no room. (Windows has
    // no holes in a file that is not marked sparse.)
    struct stat st {};
    ASSERT_EQ(::stat(path("out.img").c_str(), &st), 0);
    EXPECT_LT(static_cast<uint64_t>(st.st_blocks) * 512, uint64_t{8} << 20);
#endif
    ASSERT_TRUE(replace_subfile(c, 1, samples::typ_stub(1, 1, 1000 * 1024), path("out.img"), error)) << error;
    EXPECT_EQ(read_ok(path("out.img")).block_size, 1024u);
}

// Every refusal says why and leaves the container as it was.
TEST_F(ImgTest, RefusalsSayWhyAndWriteNothing) {
    const std::string good = read_bytes(mkgmap_container());
    struct Case {
        const char* what;
        std::string bytes;
        const char* says;
    };
    std::string twice = good, short_list = good;
    twice[0x0e20] = 0x0a;          // the TYP's first block is the RGN's
    twice[0x0e21] = 0;
    short_list[0x0e32] = '\xff';   // the TYP's list ends three blocks early
    short_list[0x0e33] = '\xff';
    const std::vector<Case> cases = {
        {"truncated in the TYP", good.substr(0, 0x2000), "is truncated: 0XSAMPLE.TYP lies past the end"},
        {"truncated in the table", good.substr(0, 0x800), "is truncated: the allocation table"},
        {"a TYP file", read_bytes(source_dir() + "/data/samples/sample.typ"),
         "is not a Garmin map file"},
        {"empty", "", "is not a Garmin map file"},
        {"one byte short of a header", good.substr(0, 511), "is not a Garmin map file"},
        {"a tile without TYP", read_bytes(source_dir() + "/tests/data/img/no-typ.img"),
         "holds no TYP file."},
        {"a block used twice", twice, "block 10 is used twice"},
        {"a block list too short", short_list, "0XSAMPLE.TYP has too few blocks"},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(k.what);
        const std::string p = path("bad.img");
        ASSERT_TRUE(platform::write_file_atomic(p, k.bytes));
        std::string error;
        EXPECT_FALSE(replace_typ(p, "", samples::typ_stub(1, 1, 600), p, error));
        EXPECT_NE(error.find(k.says), std::string::npos) << error;
        EXPECT_NE(error.find(p), std::string::npos) << error;
        EXPECT_TRUE(same(read_bytes(p), k.bytes));
        EXPECT_EQ(std::distance(fs::directory_iterator(dir), fs::directory_iterator{}), 1);
    }
}

TEST_F(ImgTest, AFolderThatRefusesTheWriteOrADiskThatFillsUpLeavesTheMapAsItWas) {
    const std::string p = copy_of(mkgmap_container(), "map.img");
    const std::string before = read_bytes(p);
    using Op = platform::FaultyFileSystem::Op;
    for (auto [op, err] :
         {std::pair{Op::create, EACCES}, std::pair{Op::write, ENOSPC}, std::pair{Op::replace, EXDEV}}) {
        platform::FaultyFileSystem faulty(op, err, 4000);
        std::string error;
        EXPECT_FALSE(replace_typ(p, "0xsample.typ", samples::typ_stub(1, 1, 9000), p, error, faulty));
        EXPECT_NE(error.find("Cannot write " + p + ": "), std::string::npos) << error;
        EXPECT_TRUE(same(read_bytes(p), before));
        EXPECT_EQ(std::distance(fs::directory_iterator(dir), fs::directory_iterator{}), 1);
    }
}

TEST_F(ImgTest, ATypIsChosenByNameWhenThereAreSeveral) {
    const std::string p = path("two.img");
    ASSERT_TRUE(samples::build_img(p, 9, {{"0000AAAA", "TYP", samples::typ_stub(11, 1, 700)},
                                          {"00001234", "TRE", filler(100, 1)},
                                          {"0000BBBB", "TYP", samples::typ_stub(22, 1, 800)}}));
    ImgContainer c = read_ok(p);
    EXPECT_EQ(c.typ_indexes(), (std::vector<size_t>{0, 2}));
    std::string error;
    EXPECT_EQ(choose_typ(c, "", error), -1);
    EXPECT_NE(error.find("holds 2 TYP files"), std::string::npos);
    EXPECT_EQ(choose_typ(c, "0000bbbb.typ", error), 2);
    EXPECT_EQ(choose_typ(c, "00001234.TRE", error), -1);
    EXPECT_NE(error.find("holds no TYP file 00001234.TRE"), std::string::npos);
    const std::string typ = samples::typ_stub(22, 1, 50);
    ASSERT_TRUE(replace_typ(p, "0000BBBB.TYP", typ, p, error)) << error;
    ImgContainer out = read_ok(p);
    EXPECT_TRUE(same(bytes_of(out, 2), typ));
    EXPECT_TRUE(same(bytes_of(out, 0), samples::typ_stub(11, 1, 700)));
}

// Any byte of the header or the table set to 0x00 or 0xFF: the container is
// refused with a reason naming it, or read so that every subfile lies inside
// the file; a replace in it then reads back.
TEST_F(ImgTest, DamageInTheHeaderOrTableIsRefusedOrReadSafely) {
    const std::string good = read_bytes(mkgmap_container());
    const std::string p = path("damaged.img");
    int refused = 0, replaced = 0;
    for (size_t at = 0; at < 0x1200; ++at) {
        for (char v : {'\x00', '\xff'}) {
            if (good[at] == v) continue;
            std::string bad = good;
            bad[at] = v;
            std::ofstream(p, std::ios::binary | std::ios::trunc) << bad;
            std::string error;
            const auto c = read_container(p, error);
            if (!c) {
                ++refused;
                EXPECT_EQ(error.rfind(p, 0), 0u) << "byte " << at << ": " << error;
                continue;
            }
            for (size_t i = 0; i < c->subfiles.size(); ++i) {
                std::string bytes;
                EXPECT_TRUE(read_subfile(*c, i, bytes, error)) << "byte " << at << ": " << error;
                EXPECT_EQ(bytes.size(), c->subfiles[i].size);
            }
            // A sample of them is rewritten too: each write is flushed to disk.
            if (at % 149 != 0 || c->typ_indexes().empty()) continue;
            const std::string typ = samples::typ_stub(1, 1, 3000);
            if (!replace_typ(p, c->subfiles[c->typ_indexes()[0]].full_name(), typ, path("out.img"), error)) continue;
            ++replaced;
            const auto out = read_container(path("out.img"), error);
            ASSERT_TRUE(out) << "byte " << at << ": " << error;
            EXPECT_TRUE(same(bytes_of(*out, out->typ_indexes().at(0)), typ));
        }
    }
    // Both kinds happen: the test reaches the refusals and the replaces.
    EXPECT_GT(refused, 50);
    EXPECT_GT(replaced, 10);
}

// Offsets past 4 GiB: 128 kB blocks and a 5 GB hole before the TYP.
TEST_F(ImgTest, ATypPastFourGigabytesIsListedAndRead) {
    const std::string p = path("huge.img");
    const std::string typ = samples::typ_stub(4242, 3, 5000);
    ASSERT_TRUE(samples::build_img(p, 17, {{"00001234", "RGN", "", uint64_t{40000} << 17},
                                           {"0000XMAP", "TYP", typ}}));
    const ImgContainer c = read_ok(p);
    ASSERT_EQ(c.subfiles.size(), 2u);
    EXPECT_GT(static_cast<uint64_t>(c.subfiles[1].blocks.at(0)) * c.block_size, uint64_t{1} << 32);
    EXPECT_EQ(c.subfiles[1].fid, 4242);
    EXPECT_EQ(c.subfiles[1].pid, 3);
    EXPECT_TRUE(same(bytes_of(c, 1), typ));
}
