// On the corpus files, 200 changes of every recorded kind in a fixed random
// order; undoing them all gives the bytes the file saved as when opened,
// redoing them all the bytes after the last change.
#include <gtest/gtest.h>


#include "history_fixture.h"

namespace korvex::workbench::test {
namespace {

constexpr int k_changes = 200;

class HistoryCorpus : public ::testing::TestWithParam<std::string> {};

// Every other TYP and every other text, by name: the run stays short, and
// the files left out are of the same producers as those taken.
std::vector<std::string> corpus_files() {
    const std::string dir = testing::corpus_dir();
    if (dir.empty()) return testing::corpus_params({});
    std::vector<std::string> files;
    for (const auto& [sub, ext] : {std::pair{"/typ", ".typ"}, std::pair{"/txt", ".txt"}}) {
        const std::vector<std::string> all = testing::files_with(dir + sub, ext);
        for (size_t k = 0; k < all.size(); k += 2) files.push_back(all[k]);
    }
    return testing::corpus_params(files);
}

TEST_P(HistoryCorpus, UndoingEveryChangeGivesTheOpenedBytesAndRedoingThemTheLast) {
    KORVEX_SKIP_WITHOUT_CORPUS(GetParam());
    HistoryBench b;
    ASSERT_TRUE(b.open(GetParam()));
    b.history().set_limit(4 * k_changes);  // a cut and its paste are two steps
    const std::string opened = b.saved();
    const std::vector<OpKind>& kinds = recorded_kinds();
    Rng rng(20261125);
    for (int n = 0; n < k_changes; ++n) {
        const size_t k = std::uniform_int_distribution<size_t>(0, kinds.size() - 1)(rng);
        kinds[k].run(b, rng);
        ASSERT_FALSE(b.history().recording()) << kinds[k].name;
    }
    const std::string last = b.saved();
    while (b.session.undo().done) {
    }
    ASSERT_EQ(testing::first_difference(b.saved(), opened), "");
    while (b.session.redo().done) {
    }
    ASSERT_EQ(testing::first_difference(b.saved(), last), "");
}

INSTANTIATE_TEST_SUITE_P(Files, HistoryCorpus, ::testing::ValuesIn(corpus_files()),
                         [](const auto& info) {
                             // A text and a TYP may share a name.
                             const std::string& p = info.param;
                             const bool text = p.size() > 4 && p.compare(p.size() - 4, 4, ".txt") == 0;
                             return testing::file_param_name(p) + (text ? "_txt" : "");
                         });

}  // namespace
}  // namespace korvex::workbench::test
