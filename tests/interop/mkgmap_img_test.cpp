// mkgmap builds a small map (tests/data/img/tiny.osm) with TYP A and again
// with TYP B; our replace of A by B in the first container must give what
// mkgmap itself built with B: the same header and table, the same TYP and
// MPS, and the first build's tiles and SRT (which carry their own times).
#include <gtest/gtest.h>

#include <unistd.h>

#include "integration/img_container.h"
#include "integration/img_replace.h"
#include "interop/mkgmap_support.h"
#include "support/sample_builder.h"
#include "typ/encoder.h"

using namespace korvex;
using namespace korvex::testing;
using namespace korvex::testing::interop;

namespace {

// The gmapsupp.img mkgmap builds of the tiny map with typ, named style.typ
// on its command line (the name becomes the subfile's).
std::string mkgmap_container(const std::string& typ, const std::string& tag) {
    const fs::path dir = fs::temp_directory_path() / ("korvex-mkgmap-img-" + std::to_string(::getpid()) + "-" + tag);
    fs::remove_all(dir);
    fs::create_directories(dir);
    platform::write_file_atomic((dir / "style.typ").string(), typ);
    const std::string cmd = "cd '" + dir.string() + "' && java -jar " + std::string(k_jar) +
                            " --gmapsupp --family-id=4242 '" + source_dir() + "/tests/data/img/tiny.osm' style.typ" +
                            " >log.txt 2>&1";
    const int st = std::system(cmd.c_str());
    std::string out = st == 0 ? read_bytes((dir / "gmapsupp.img").string()) : std::string();
    fs::remove_all(dir);
    return out;
}

// A valid TYP of about the given size, from the benchmark's generator.
std::string generated_typ(int64_t bytes) {
    model::Store s;
    platform::ScriptedPrompt ui;
    samples::build_large(s, bytes);
    return encode(s, ui);
}

std::string subfile_bytes(const integration::ImgContainer& c, size_t i) {
    std::string out, error;
    EXPECT_TRUE(integration::read_subfile(c, i, out, error)) << error;
    return out;
}

}  // namespace

TEST(MkgmapImg, OurReplaceGivesTheContainerMkgmapBuildsWithTheNewTyp) {
    if (!have_mkgmap()) GTEST_SKIP() << "mkgmap is not installed";
    const std::string a = read_bytes(source_dir() + "/data/samples/sample.typ");
    const fs::path dir = fs::temp_directory_path() / ("korvex-mkgmap-img-" + std::to_string(::getpid()));
    fs::create_directories(dir);
    const std::string with_a = (dir / "a.img").string();
    ASSERT_TRUE(platform::write_file_atomic(with_a, mkgmap_container(a, "a")));
    std::string error;
    const auto ca = integration::read_typ_container(with_a, error);
    ASSERT_TRUE(ca) << error;

    // A larger TYP in one table entry, and one of more than 240 blocks.
    for (int64_t size : {int64_t{40000}, int64_t{200000}}) {
        SCOPED_TRACE("TYP B of about " + std::to_string(size) + " bytes");
        const std::string b = generated_typ(size);
        const std::string with_b = (dir / "b.img").string();
        ASSERT_TRUE(platform::write_file_atomic(with_b, mkgmap_container(b, "b")));
        const auto cb = integration::read_typ_container(with_b, error);
        ASSERT_TRUE(cb) << error;
        const size_t t = cb->typ_indexes().at(0);

        const std::string ours = (dir / "ours.img").string();
        ASSERT_TRUE(integration::replace_subfile(*ca, ca->typ_indexes().at(0), subfile_bytes(*cb, t), ours, error))
            << error;
        const auto r = integration::read_typ_container(ours, error);
        ASSERT_TRUE(r) << error;
        ASSERT_EQ(r->subfiles.size(), cb->subfiles.size());
        EXPECT_EQ(r->block_size, cb->block_size);
        EXPECT_EQ(r->file_size, cb->file_size);
        // The header but for the creation time, and the whole table.
        std::string head_r = r->head, head_b = cb->head;
        head_r.replace(0x39, 7, 7, '\0');
        head_b.replace(0x39, 7, 7, '\0');
        EXPECT_EQ(head_r, head_b);
        EXPECT_EQ(r->first_entry, cb->first_entry);
        for (size_t i = 0; i < r->subfiles.size(); ++i) {
            const auto& f = r->subfiles[i];
            EXPECT_EQ(f.entries, cb->subfiles[i].entries) << f.full_name();
            // The tiles and the SRT carry the time of their build: ours are the first build's.
            const bool dated = f.type != "TYP" && f.type != "MPS";
            EXPECT_TRUE(subfile_bytes(*r, i) == subfile_bytes(dated ? *ca : *cb, i)) << f.full_name();
        }
        EXPECT_EQ(r->subfiles[t].entries.size(), size > 150000 ? 2u : 1u);
    }
    fs::remove_all(dir);
}
