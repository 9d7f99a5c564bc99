// Every input the fuzz targets ever crashed on or stalled on, kept under
// data/fuzz/<target>/, goes through the same entry point again: it must pass
// without a sanitizer report, printing a text in proportion to it. Its time
// is capped by the fuzz run, not here.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "support/fuzz_entries.h"
#include "support/harness.h"

namespace {

namespace fs = std::filesystem;

struct Finding {
    std::string target, path;
};

std::vector<Finding> findings() {
    std::vector<Finding> out;
    const fs::path root = fs::path(korvex::testing::source_dir()) / "tests" / "data" / "fuzz";
    if (!fs::is_directory(root)) return out;
    for (const auto& dir : fs::directory_iterator(root))
        if (dir.is_directory())
            for (const auto& f : fs::directory_iterator(dir.path()))
                if (f.is_regular_file()) out.push_back({dir.path().filename().string(), f.path().string()});
    std::sort(out.begin(), out.end(), [](const Finding& a, const Finding& b) { return a.path < b.path; });
    return out;
}

class FuzzFindings : public ::testing::TestWithParam<Finding> {};

TEST_P(FuzzFindings, ReplaysPrintingInProportionToTheInput) {
    const Finding& f = GetParam();
    const std::string bytes = korvex::testing::read_bytes(f.path);
    size_t printed = 0;
    ASSERT_TRUE(korvex::fuzzing::run_entry(f.target, bytes, printed)) << "no entry point for folder " << f.target;
    EXPECT_LE(printed, korvex::fuzzing::printed_limit(bytes.size())) << f.path;
}

INSTANTIATE_TEST_SUITE_P(Kept, FuzzFindings, ::testing::ValuesIn(findings()),
                         [](const ::testing::TestParamInfo<Finding>& info) {
                             std::string name = info.param.target + "_" + fs::path(info.param.path).stem().string();
                             for (char& c : name)
                                 if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                             return name + "_" + std::to_string(info.index);
                         });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(FuzzFindings);

}  // namespace
