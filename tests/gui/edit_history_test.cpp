// Edit > Undo, Redo and History… in the window: the entries name the step,
// the window follows it (class, selection, code panel), the "+" of the
// caption follows the saved state, typing keeps its own undo in the code
// panel, and each bulk tool of the menus is one step that undo takes back to
// the bytes of before and redo to the bytes of after.
#include <QAction>
#include <QApplication>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <functional>
#include <random>

#include <gtest/gtest.h>

#include "window_fixture.h"

#include "gui/batch_canvas_dialog.h"
#include "gui/editor_window.h"
#include "gui/element_commands.h"
#include "gui/grid_view.h"
#include "gui/history_commands.h"
#include "gui/history_dialog.h"
#include "gui/label_panel.h"
#include "gui/main_window.h"
#include "gui/tool_menus.h"
#include "gui/workbench_menus.h"
#include "platform/files.h"
#include "text/text_writer.h"
#include "typ/encoder.h"
#include "workbench/settings_file.h"
#include "workbench/type_key.h"

namespace {

using korvex::gui::HistoryCommands;
using korvex::platform::Answer;
using korvex::testing::k_samples;

constexpr int k_points = 2;

// What a save of the project would write, TYP and text, without touching it.
struct SavedBytes {
    std::string typ, text;
    bool operator==(const SavedBytes&) const = default;
};

SavedBytes saved_of(const korvex::model::Store& s) {
    korvex::model::Store copy = s;
    korvex::platform::ScriptedPrompt quiet;
    const korvex::platform::FixedClock clock({2024, 5, 17, 13, 45, 30});
    SavedBytes out;
    korvex::typ::save_typ(copy, quiet, clock, false);
    out.typ = copy.curf;
    korvex::text::save_txt(copy, quiet, clock, 13, [&](std::string_view p) { out.text.append(p); }, false);
    return out;
}

struct HistoryFixture : korvex::testing::WindowFixture {
    explicit HistoryFixture(Answer fallback = Answer::yes) : WindowFixture(fallback) {
        show(services(), 1000, 650);
        EXPECT_TRUE(w->open_file(k_samples + "sample.typ"));
    }
    HistoryCommands& h() { return *w->history_commands(); }
    // The entries as the menu shows them once the operation has returned.
    std::string undo_text() {
        QApplication::processEvents();
        return h().undo_action()->text().toStdString();
    }
    std::string redo_text() {
        QApplication::processEvents();
        return h().redo_action()->text().toStdString();
    }
    // Ctrl-clicks the cells of the class in view, first one first.
    void pick(int cls, std::initializer_list<int> cells) {
        w->show_class(cls);
        w->clear_selection();
        for (const int c : cells) w->click_cell(c, true, false);
    }
    QAction* entry(const QString& menu, const char* name) {
        for (QAction* a : w->menuBar()->actions())
            if (a->text() == menu && a->menu()) return a->menu()->findChild<QAction*>(name);
        return nullptr;
    }
    bool plus() { return w->windowTitle().endsWith("+"); }
};

TEST(EditHistory, EntriesNameTheStepAndAreOffWithoutOne) {
    HistoryFixture f;
    // Nothing done yet: both off, plain words.
    EXPECT_FALSE(f.h().undo_action()->isEnabled());
    EXPECT_FALSE(f.h().redo_action()->isEnabled());
    EXPECT_FALSE(f.h().history_action()->isEnabled());
    EXPECT_EQ(f.undo_text(), "Undo");
    EXPECT_FALSE(f.h().undo());

    const int32_t points = f.w->store().pt_n;
    f.pick(k_points, {0, 1, 2});
    f.w->commands().remove();
    ASSERT_EQ(f.w->store().pt_n, points - 3);
    EXPECT_EQ(f.undo_text(), "Undo Delete 3 Points");
    EXPECT_TRUE(f.h().undo_action()->isEnabled());
    EXPECT_TRUE(f.h().history_action()->isEnabled());
    EXPECT_FALSE(f.h().redo_action()->isEnabled());

    ASSERT_TRUE(f.h().undo());
    EXPECT_EQ(f.w->store().pt_n, points);
    EXPECT_EQ(f.redo_text(), "Redo Delete 3 Points");
    EXPECT_FALSE(f.h().undo_action()->isEnabled());
    EXPECT_TRUE(f.h().redo_action()->isEnabled());
    // At the oldest step a second undo does nothing.
    EXPECT_FALSE(f.h().undo());
    EXPECT_EQ(f.w->store().pt_n, points);

    ASSERT_TRUE(f.h().redo());
    EXPECT_EQ(f.w->store().pt_n, points - 3);
    EXPECT_FALSE(f.h().redo());
    // The keys are the entries' own: Ctrl+Z, and Ctrl+Y beside Ctrl+Shift+Z.
    EXPECT_EQ(f.h().undo_action()->shortcut(), QKeySequence(QKeySequence::Undo));
    ASSERT_EQ(f.h().redo_action()->shortcuts().size(), 2);
    EXPECT_EQ(f.h().redo_action()->shortcuts()[0], QKeySequence(Qt::CTRL | Qt::Key_Y));
    EXPECT_EQ(f.h().redo_action()->shortcuts()[1], QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z));
}

TEST(EditHistory, UndoShowsTheClassOfTheStepSelectsItsElementsAndFillsThePanel) {
    HistoryFixture f;
    f.pick(k_points, {3, 1});
    const std::vector<int32_t> rows = f.w->browser().selected_rows();
    ASSERT_EQ(rows.size(), 2u);
    f.w->commands().remove();
    f.w->show_class(korvex::model::k_polygons);

    ASSERT_TRUE(f.h().undo());
    EXPECT_EQ(f.w->store().curclass, k_points);
    std::vector<int32_t> selected = f.w->browser().selected_rows();
    std::sort(selected.begin(), selected.end());
    std::vector<int32_t> wanted = rows;
    std::sort(wanted.begin(), wanted.end());
    EXPECT_EQ(selected, wanted);
    const int32_t current = f.w->browser().current_row();
    EXPECT_NE(std::find(wanted.begin(), wanted.end(), current), wanted.end());
    const QString panel = f.w->code_panel()->toPlainText();
    EXPECT_TRUE(panel.contains("[_point]")) << panel.toStdString();
    EXPECT_TRUE(panel.contains(QString::fromStdString(korvex::workbench::five_digits(
                    korvex::workbench::row_type_code(f.w->store(), k_points, current))).right(4),
                               Qt::CaseInsensitive));

    // The redo shows the points again, from another class too.
    f.w->show_class(korvex::model::k_lines);
    ASSERT_TRUE(f.h().redo());
    EXPECT_EQ(f.w->store().curclass, k_points);
}

TEST(EditHistory, TheCaptionsPlusFollowsTheSavedStateAcrossUndoAndRedo) {
    HistoryFixture f;
    EXPECT_FALSE(f.plus());
    f.pick(k_points, {0});
    f.w->commands().remove();
    EXPECT_TRUE(f.plus());
    // Undone back to the file as opened: clean again.
    ASSERT_TRUE(f.h().undo());
    EXPECT_FALSE(f.plus());
    EXPECT_FALSE(f.w->store().dirty);
    ASSERT_TRUE(f.h().redo());
    EXPECT_TRUE(f.plus());

    // Saved after the delete: the save is the clean state, before it is dirty.
    f.dialogs.script(f.path("saved.typ"));
    ASSERT_TRUE(f.w->session().save(korvex::workbench::k_save_as));
    EXPECT_FALSE(f.plus());
    ASSERT_TRUE(f.h().undo());
    EXPECT_TRUE(f.plus());
    ASSERT_TRUE(f.h().redo());
    EXPECT_FALSE(f.plus());

    // A new step after an undo past the save: the saved state is gone for good.
    ASSERT_TRUE(f.h().undo());
    f.pick(k_points, {4});
    f.w->commands().remove();
    EXPECT_TRUE(f.plus());
    ASSERT_TRUE(f.h().undo());
    EXPECT_TRUE(f.plus());
}

TEST(EditHistory, TypingIsUndoneInTheCodePanelAndTheProjectOnlyOutsideIt) {
    HistoryFixture f;
    f.pick(k_points, {0});
    f.w->commands().remove();
    const int32_t points = f.w->store().pt_n;
    f.w->click_cell(0, false, false);
    QPlainTextEdit* panel = f.w->code_panel();
    const QString shown = panel->toPlainText();
    f.w->activateWindow();
    panel->setFocus(Qt::OtherFocusReason);
    panel->moveCursor(QTextCursor::End);
    QTest::keyClicks(panel, "zz");
    ASSERT_EQ(panel->toPlainText(), shown + "zz");
    QTest::keyClick(panel, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(panel->toPlainText(), shown);
    EXPECT_EQ(f.w->store().pt_n, points);
    EXPECT_EQ(f.w->session().history().position(), 1u);

    // From the menu with the typed text pending: kept on No, nothing undone.
    QTest::keyClicks(panel, "q");
    f.prompt.script(Answer::no);
    EXPECT_FALSE(f.h().undo());
    EXPECT_EQ(f.prompt.questions.back(), "Return to ICONS without saving changes?");
    EXPECT_EQ(f.w->store().pt_n, points);
    EXPECT_TRUE(panel->toPlainText().endsWith("q"));

    // Add String writes into the panel as an edit: the panel's undo takes it back.
    const QString typed = panel->toPlainText();
    f.w->workbench_menus()->add_string();
    ASSERT_NE(panel->toPlainText(), typed);
    QTest::keyClick(panel, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(panel->toPlainText(), typed);
    EXPECT_EQ(f.w->session().history().position(), 1u);

    // In the grid Ctrl+Z is the project's.
    QApplication::processEvents();
    f.w->grid()->setFocus(Qt::OtherFocusReason);
    f.prompt.script(Answer::yes);
    QTest::keyClick(f.w->grid(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(f.w->store().pt_n, points + 1);
}

TEST(EditHistory, TheListMarksTheStateOnShowAndJumpsToTheChosenStep) {
    HistoryFixture f;
    const int32_t points = f.w->store().pt_n;
    for (int i = 0; i < 3; ++i) {
        f.pick(k_points, {0});
        f.w->commands().remove();
    }
    ASSERT_TRUE(f.h().undo());
    int rows = 0;
    QString marked;
    f.h().exec_dialog = [&](QDialog& d) {
        auto& list = *dynamic_cast<korvex::gui::HistoryDialog&>(d).list();
        rows = list.count();
        for (int i = 0; i < list.count(); ++i)
            if (list.item(i)->font().bold()) marked = list.item(i)->text();
        list.setCurrentRow(1);
        return static_cast<int>(QDialog::Accepted);
    };
    f.h().show_history();
    EXPECT_EQ(rows, 4);  // the opened project and three steps
    EXPECT_TRUE(marked.endsWith("Delete Point")) << marked.toStdString();
    EXPECT_EQ(f.w->session().history().position(), 1u);
    EXPECT_EQ(f.w->store().pt_n, points - 1);

    // Cancel jumps nowhere.
    f.h().exec_dialog = [](QDialog& d) {
        dynamic_cast<korvex::gui::HistoryDialog&>(d).list()->setCurrentRow(3);
        return static_cast<int>(QDialog::Rejected);
    };
    f.h().show_history();
    EXPECT_EQ(f.w->session().history().position(), 1u);
}

// One bulk tool of the menus: how to set it up and run it, and the step it makes.
struct BulkKind {
    const char* step;
    std::function<void(HistoryFixture&, std::mt19937&)> run;
    // The project the tool needs, opened before the bytes of before are taken.
    std::function<void(HistoryFixture&)> setup = nullptr;
};

// A text project of two polygons, one with its day colour twice.
void open_wasteful(HistoryFixture& f) {
    const std::string file = f.path("waste.txt");
    ASSERT_TRUE(korvex::platform::write_file_atomic(
        file, "[_id]\r\nProductCode=1\r\nFID=100\r\nCodePage=1252\r\n[end]\r\n"
              "[_polygon]\r\nType=0x03\r\nString1=0x04,Twice\r\nXpm=\"0 0 2 0\"\r\n\"0 c #FF0000\"\r\n"
              "\"1 c #FF0000\"\r\n[end]\r\n"));
    ASSERT_TRUE(f.w->open_file(file));
}

// Ctrl-clicks up to n distinct cells of the class, picked by rng.
void pick_some(HistoryFixture& f, int cls, std::mt19937& rng, int n) {
    f.w->show_class(cls);
    f.w->clear_selection();
    const int count = f.w->browser().cell_count();
    std::vector<int> cells;
    for (int i = 0; i < n && count > 0; ++i) {
        const int c = std::uniform_int_distribution<int>(0, count - 1)(rng);
        if (std::find(cells.begin(), cells.end(), c) == cells.end()) cells.push_back(c);
    }
    for (const int c : cells) f.w->click_cell(c, true, false);
}

void trigger(HistoryFixture& f, const QString& menu, const char* name) {
    QAction* a = f.entry(menu, name);
    ASSERT_NE(a, nullptr) << name;
    a->trigger();
    QApplication::processEvents();
}

std::vector<BulkKind> bulk_kinds() {
    auto on_points = [](const QString& menu, const char* name) {
        return [menu, name](HistoryFixture& f, std::mt19937& rng) {
            pick_some(f, k_points, rng, 4);
            trigger(f, menu, name);
        };
    };
    return {
        {"Make Transparent", on_points("Colours", "c_make_transparent")},
        {"Convert to 16 Colours", on_points("Colours", "c_convert_16")},
        {"Add POI Label Pixel", on_points("Tools", "adpixel")},
        {"Add Night POIs", on_points("Tools", "add_nightpois")},
        {"Add Border",
         [](HistoryFixture& f, std::mt19937& rng) {
             pick_some(f, k_points, rng, 2);
             f.w->tool_menus()->exec_dialog = [](QDialog&) { return static_cast<int>(QDialog::Accepted); };
             trigger(f, "Canvas", "adborder");
         }},
        {"Fix Unused Colours",
         [](HistoryFixture& f, std::mt19937&) {
             f.w->show_class(korvex::model::k_polygons);
             trigger(f, "Colours", "mfixunused");
         },
         open_wasteful},
        {"Import Style",
         [](HistoryFixture& f, std::mt19937&) {
             const std::string file = f.path("style.krvx");
             ASSERT_TRUE(korvex::platform::write_file_atomic(file, "<2/>\r\n<Points>6601,amenity=yes</Points>\r\n"));
             f.dialogs.script(file);
             QAction* a = f.w->commands().action("Import Style (KRVX)");
             ASSERT_NE(a, nullptr);
             a->trigger();
         }},
        {"Edit Icon 0x",
         [](HistoryFixture& f, std::mt19937& rng) {
             pick_some(f, k_points, rng, 1);
             ASSERT_TRUE(f.w->open_icon_editor(f.w->browser().selected_rows()));
             korvex::gui::EditorWindow* ed = f.w->icon_editor();
             ed->labels()->text_box()->setPlainText("Undone later");
             QTest::mouseClick(ed->apply_button(), Qt::LeftButton);
             QApplication::processEvents();
         }},
    };
}

TEST(EditHistory, EachBulkToolIsOneStepThatUndoAndRedoTakeBackToTheSameBytes) {
    for (const BulkKind& k : bulk_kinds()) {
        SCOPED_TRACE(k.step);
        HistoryFixture f;
        if (k.setup) k.setup(f);
        const SavedBytes before = saved_of(f.w->store());
        const size_t steps = f.w->session().history().size();
        std::mt19937 rng(7);
        k.run(f, rng);
        const SavedBytes after = saved_of(f.w->store());
        ASSERT_NE(after, before) << "the tool changed nothing";
        ASSERT_EQ(f.w->session().history().size(), steps + 1);
        EXPECT_EQ(f.undo_text().rfind(std::string("Undo ") + k.step, 0), 0u) << f.undo_text();
        EXPECT_TRUE(f.plus());

        ASSERT_TRUE(f.h().undo());
        EXPECT_TRUE(saved_of(f.w->store()) == before);
        EXPECT_FALSE(f.plus());
        ASSERT_TRUE(f.h().redo());
        EXPECT_TRUE(saved_of(f.w->store()) == after);
        EXPECT_TRUE(f.plus());
    }
}

TEST(EditHistory, ARandomRunOfBulkToolsAndDeletesIsUndoneToTheOpenedBytesAndRedoneToTheLast) {
    HistoryFixture f;
    std::vector<BulkKind> kinds;
    for (BulkKind& k : bulk_kinds())
        if (!k.setup) kinds.push_back(std::move(k));
    kinds.push_back({"Delete", [](HistoryFixture& f, std::mt19937& rng) {
                         pick_some(f, std::uniform_int_distribution<int>(0, 2)(rng), rng, 2);
                         f.w->commands().remove();
                     }});
    std::mt19937 rng(20261125);
    const SavedBytes opened = saved_of(f.w->store());
    for (int i = 0; i < 24; ++i) {
        const BulkKind& k = kinds[std::uniform_int_distribution<size_t>(0, kinds.size() - 1)(rng)];
        SCOPED_TRACE(k.step);
        k.run(f, rng);
        ASSERT_EQ(f.w->icon_editor(), nullptr);
    }
    const SavedBytes last = saved_of(f.w->store());
    const size_t steps = f.w->session().history().position();
    ASSERT_GT(steps, 12u);
    while (f.h().undo()) {
    }
    EXPECT_TRUE(saved_of(f.w->store()) == opened);
    EXPECT_FALSE(f.plus());
    while (f.h().redo()) {
    }
    EXPECT_EQ(f.w->session().history().position(), steps);
    EXPECT_TRUE(saved_of(f.w->store()) == last);
}

// The flows that ask "Reload TYP file to undo changes." / "Continue?".
struct AskingFlow {
    const char* name;
    std::function<void(HistoryFixture&)> run;
};

TEST(EditHistory, ThePreferenceOffGoesOnUnaskedAndOnAsksAndACancelChangesNothing) {
    const AskingFlow flows[] = {
        {"Delete", [](HistoryFixture& f) { f.pick(k_points, {0}); f.w->commands().remove(); }},
        {"Make Transparent", [](HistoryFixture& f) { f.pick(k_points, {0}); trigger(f, "Colours", "c_make_transparent"); }},
        {"Add Night POIs", [](HistoryFixture& f) { f.pick(k_points, {0}); trigger(f, "Tools", "add_nightpois"); }},
    };
    auto asked_continue = [](const HistoryFixture& f) {
        for (const std::string& q : f.prompt.questions)
            if (q.find("Continue?") != std::string::npos) return true;
        return false;
    };
    for (const AskingFlow& flow : flows) {
        SCOPED_TRACE(flow.name);
        {
            HistoryFixture f(Answer::cancel);
            const SavedBytes before = saved_of(f.w->store());
            flow.run(f);
            EXPECT_TRUE(asked_continue(f));
            EXPECT_TRUE(saved_of(f.w->store()) == before);
            EXPECT_EQ(f.w->session().history().size(), 0u);
        }
        {
            HistoryFixture f(Answer::cancel);
            f.w->settings().ask_reload_undo = false;
            korvex::workbench::settings_to_store(f.w->settings(), f.w->store());
            flow.run(f);
            EXPECT_FALSE(asked_continue(f));
            EXPECT_EQ(f.w->session().history().size(), 1u);
        }
    }
}

}  // namespace
