// Undo and redo of every recorded change: the saved bytes (TYP and text)
// after an undo are the bytes before the change, after a redo the bytes
// after it; the dirty flag follows the saved state; the limit drops the
// oldest steps.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "history_fixture.h"
#include "support/every_form.h"
#include "workbench/type_key.h"

namespace korvex::workbench::test {
namespace {

namespace fs = std::filesystem;

std::string sample_typ() { return testing::source_dir() + "/data/samples/sample.typ"; }

// The file of every form, written where a bench can open it.
std::string every_form_file(const HistoryBench& b) {
    fs::create_directories(b.dir.root / "in");
    const std::string path = (b.dir.root / "in" / "every-form.typ").string();
    std::ofstream(path, std::ios::binary) << testing::every_form_typ();
    return path;
}

size_t undo_all(HistoryBench& b) {
    size_t n = 0;
    while (b.session.undo().done) ++n;
    return n;
}

size_t redo_all(HistoryBench& b) {
    size_t n = 0;
    while (b.session.redo().done) ++n;
    return n;
}

TEST(HistoryKinds, EachKindUndoesToTheBytesBeforeAndRedoesToTheBytesAfter) {
    for (const OpKind& kind : recorded_kinds()) {
        SCOPED_TRACE(kind.name);
        bool changed = false;
        for (unsigned seed = 1; seed <= 12 && !changed; ++seed) {
            HistoryBench b;
            ASSERT_TRUE(b.open(sample_typ()));
            const std::string before = b.saved();
            Rng rng(seed);
            kind.run(b, rng);
            const std::string after = b.saved();
            if (after == before) {
                // Nothing changed: nothing to undo either.
                EXPECT_FALSE(b.history().can_undo());
                continue;
            }
            changed = true;
            ASSERT_TRUE(b.history().can_undo());
            EXPECT_FALSE(b.history().undo_name().empty());
            const size_t steps = undo_all(b);
            EXPECT_LE(steps, 2u);  // a cut and its paste are two
            EXPECT_EQ(testing::first_difference(b.saved(), before), "");
            EXPECT_FALSE(b.s.dirty);
            EXPECT_EQ(redo_all(b), steps);
            EXPECT_EQ(testing::first_difference(b.saved(), after), "");
            EXPECT_TRUE(b.s.dirty);
        }
        EXPECT_TRUE(changed) << "no seed made a change";
    }
}

// Each element of each class deleted and brought back: a column the history
// did not hold would come back empty and change the saved bytes.
TEST(HistoryKinds, DeletingEveryElementOfEveryFormComesBackWhole) {
    HistoryBench b;
    ASSERT_TRUE(b.open(every_form_file(b)));
    const std::string before = b.saved();
    for (int cls = 0; cls < 5; ++cls) {
        b.s.curclass = cls;
        std::vector<int32_t> rows;
        for (int32_t r = first_row(b.s, cls); r < end_row(b.s, cls); ++r) rows.push_back(r);
        if (!rows.empty()) EXPECT_TRUE(b.ops.mdelete(rows)) << cls;
    }
    EXPECT_EQ(b.s.pg_n + b.s.ln_n + b.s.ln_nact + b.s.pt_n + b.s.pt_nx, 0);
    const std::string empty = b.saved();
    undo_all(b);
    EXPECT_EQ(testing::first_difference(b.saved(), before), "");
    redo_all(b);
    EXPECT_EQ(testing::first_difference(b.saved(), empty), "");
}

TEST(HistoryKinds, ARefusedOrCancelledChangeMakesNoStep) {
    HistoryBench b;
    ASSERT_TRUE(b.open(sample_typ()));
    const std::string before = b.saved();
    b.s.curclass = model::k_points;
    b.ui.script(platform::Answer::cancel);  // "Reload TYP file to undo changes." answered Cancel
    EXPECT_FALSE(b.ops.mdelete({b.s.pt_n - 1}));
    b.s.curel = 1;
    EXPECT_FALSE(b.session.apply_code_panel("no element at all"));
    EXPECT_FALSE(mlev(b.s, b.ui, b.msgs, model::k_lines, {{0, -1}}, 3, &b.history()));
    b.session.set_fid(b.s.fid);  // the same value again
    EXPECT_FALSE(b.history().can_undo());
    EXPECT_EQ(b.saved(), before);
}

// The steps are named for the menu after what they did.
TEST(HistoryKinds, StepsAreNamedAfterWhatTheyDid) {
    HistoryBench b;
    ASSERT_TRUE(b.open(sample_typ()));
    b.s.curclass = model::k_points;
    ASSERT_GE(b.s.pt_n, 3);
    ASSERT_TRUE(b.ops.mdelete({0, 1, 1, 2}));
    EXPECT_EQ(b.history().undo_name(), "Delete 3 Points");
    b.session.undo();
    EXPECT_EQ(b.history().redo_name(), "Delete 3 Points");
    ASSERT_TRUE(b.ops.cut({0}));
    EXPECT_EQ(b.history().undo_name(), "Cut Point");
    EXPECT_GE(b.ops.mpaste(), 0);
    EXPECT_EQ(b.history().undo_name(), "Paste Point");
    std::string panel = with_line(panel_of(b, model::k_points, 0), "SubType=", "0x1d");
    panel = with_line(panel, "Type=", panel.find("\nSubType=") == std::string::npos ? "0x6d\r\nSubType=0x1d" : "0x6d");
    ASSERT_TRUE(b.session.apply_code_panel(panel)) << panel << (b.ui.messages.empty() ? "" : b.ui.messages.back());
    EXPECT_EQ(b.history().undo_name(), "Apply 0x6d1d");
    b.session.set_fid("77");
    b.session.set_fid("771");
    EXPECT_EQ(b.history().names().back(), "FID");
    // The undone Delete went with the Cut; typing on in one field is one step.
    EXPECT_EQ(b.history().names(), (std::vector<std::string>{"Cut Point", "Paste Point", "Apply 0x6d1d", "FID"}));
    b.session.undo();
    EXPECT_EQ(b.history().undo_name(), "Apply 0x6d1d");
}

// Undo and redo hand the window the class and the rows to select.
TEST(HistoryKinds, UndoFollowsToTheRowsConcerned) {
    HistoryBench b;
    ASSERT_TRUE(b.open(sample_typ()));
    b.s.curclass = model::k_points;
    const int32_t last = b.s.pt_n - 1;
    ASSERT_TRUE(b.ops.mdelete({1, last}));
    Follow f = b.session.undo();
    EXPECT_EQ(f.cls, model::k_points);
    EXPECT_EQ(f.rows, (std::vector<int32_t>{1, last}));
    EXPECT_TRUE(f.tables_changed);
    EXPECT_FALSE(f.header_changed);
    f = b.session.redo();
    EXPECT_EQ(f.rows, (std::vector<int32_t>{1, last - 2}));  // the rows that took their places
    // Neighbours come back as a run, each row once.
    ASSERT_TRUE(b.ops.mdelete({3, 4}));
    EXPECT_EQ(b.session.undo().rows, (std::vector<int32_t>{3, 4}));
    b.session.redo();
    b.session.set_pid("9");
    f = b.session.undo();
    EXPECT_TRUE(f.header_changed);
    EXPECT_FALSE(f.tables_changed);
    EXPECT_TRUE(f.rows.empty());
}

TEST(HistoryDirty, CaptionFollowsTheSavedStateAcrossSaveUndoAndRedo) {
    HistoryBench b;
    ASSERT_TRUE(b.open(sample_typ()));
    const std::string plain = "Korvex " + b.s.opt.version + " " + b.s.curfile;
    EXPECT_EQ(b.view.caption, plain);
    b.session.set_pid("5");
    EXPECT_EQ(b.view.caption, plain);  // the field sets no caption itself ...
    b.session.set_dirty(true);         // ... the window does after a change
    ASSERT_TRUE(b.session.save(k_save));
    EXPECT_EQ(b.view.caption, plain);
    b.session.set_fid("4242");
    b.session.set_dirty(true);
    EXPECT_EQ(b.view.caption, plain + "+");

    b.session.undo();  // back at the save
    EXPECT_EQ(b.view.caption, plain);
    EXPECT_FALSE(b.s.dirty);
    b.session.undo();  // past it
    EXPECT_EQ(b.view.caption, plain + "+");
    EXPECT_TRUE(b.s.dirty);
    b.session.redo();
    EXPECT_EQ(b.view.caption, plain);
    b.session.redo();
    EXPECT_EQ(b.view.caption, plain + "+");

    // A new change behind the save point leaves the saved state out of reach.
    b.session.undo();
    b.session.undo();
    b.session.set_pid("6");
    undo_all(b);
    EXPECT_TRUE(b.s.dirty);
    redo_all(b);
    EXPECT_TRUE(b.s.dirty);

    // Opening a file starts a history of its own.
    ASSERT_TRUE(b.open(sample_typ()));
    EXPECT_FALSE(b.history().can_undo());
    EXPECT_FALSE(b.history().can_redo());
    EXPECT_FALSE(b.s.dirty);
}

// Steps that alternate between two fields, so that none joins another.
void alternate_fields(HistoryBench& b, int steps) {
    for (int i = 1; i <= steps; ++i) {
        if (i % 2)
            b.session.set_fid(std::to_string(1000 + i));
        else
            b.session.set_pid(std::to_string(i));
    }
}

TEST(HistoryLimit, TwoHundredStepsAreKeptAndTheTwoHundredFirstDropsTheOldest) {
    for (const int steps : {200, 201}) {
        SCOPED_TRACE(steps);
        HistoryBench b;
        ASSERT_TRUE(b.open(sample_typ()));
        const std::string fid = b.s.fid;
        alternate_fields(b, steps);
        EXPECT_EQ(b.history().size(), 200u);
        EXPECT_EQ(undo_all(b), 200u);
        // The oldest step, when dropped, stays done: the file is not as it
        // was opened, and no undo says it is.
        EXPECT_EQ(b.s.fid, steps == 200 ? fid : "1001");
        EXPECT_EQ(b.s.dirty, steps == 201);
        EXPECT_EQ(redo_all(b), 200u);
        EXPECT_EQ(b.s.fid, steps == 200 ? "1199" : "1201");
    }
}

TEST(HistoryLimit, ALowerLimitDropsTheOldestAndKeepsWhatIsUndone) {
    HistoryBench b;
    ASSERT_TRUE(b.open(sample_typ()));
    alternate_fields(b, 6);
    b.session.undo();
    b.history().set_limit(3);
    EXPECT_EQ(b.history().size(), 3u);
    EXPECT_EQ(b.history().position(), 2u);
    EXPECT_EQ(b.history().redo_name(), "PID");
    EXPECT_TRUE(b.session.redo().done);
    EXPECT_EQ(b.s.pid, "6");
}

// The History list's jump undoes or redoes step by step to where it is sent,
// both ways, and stops at the ends.
TEST(HistoryKinds, JumpGoesBothWaysToTheChosenStep) {
    HistoryBench b;
    ASSERT_TRUE(b.open(sample_typ()));
    const std::string opened = b.saved();
    b.session.set_pid("5");
    b.s.curclass = model::k_points;
    ASSERT_TRUE(b.ops.mdelete({2}));
    const std::string after_two = b.saved();
    b.session.set_fid("4242");
    ASSERT_EQ(b.history().size(), 3u);
    EXPECT_EQ(b.history().jump(0).name, b.history().names()[0]);
    EXPECT_EQ(b.history().position(), 0u);
    EXPECT_EQ(b.saved(), opened);
    EXPECT_EQ(b.history().jump(2).cls, model::k_points);
    EXPECT_EQ(b.history().position(), 2u);
    EXPECT_EQ(b.saved(), after_two);
    b.history().jump(99);
    EXPECT_EQ(b.history().position(), 3u);
    EXPECT_FALSE(b.history().jump(3).done);  // already there
}

}  // namespace
}  // namespace korvex::workbench::test
