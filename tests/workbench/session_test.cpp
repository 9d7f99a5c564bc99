#include "workbench/session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include <cerrno>

#include <unistd.h>

#include "platform/files.h"
#include "support/harness.h"
#include "text/text_writer.h"
#include "workbench/log.h"
#include "workbench/pending.h"
#include "workbench/recent.h"
#include "support/path_text.h"

namespace korvex::workbench {
namespace {

namespace fs = std::filesystem;
using platform::Answer;

std::string sample(const std::string& ext) { return testing::source_dir() + "/data/samples/sample" + ext; }

void write(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

// A data folder of its own, with the sub-folders a prepared D has.
struct TempFolder {
    fs::path root;
    TempFolder() {
        static int made = 0;
        root = fs::temp_directory_path() /
               ("korvex_session_" + std::to_string(::getpid()) + "_" + std::to_string(++made));
        fs::remove_all(root);
        fs::create_directories(root / "system");
    }
    ~TempFolder() { fs::remove_all(root); }
    std::string operator/(const std::string& name) const { return (root / name).string(); }
};

struct Bench {
    TempFolder dir;
    model::Store s;
    AppSettings settings;
    integration::Messages msgs;
    platform::ScriptedPrompt ui{Answer::yes};
    platform::ScriptedFileDialog dialogs;
    platform::RecordingLauncher launcher;
    platform::FixedClock clock{testing::k_fixed_stamp};
    RecordingView view;
    Session session{s, settings, msgs, ui, dialogs, launcher, clock, dir.root.string(), view};

    Bench() { session.start(); }
    // A copy of a sample in the temp folder, opened as the project.
    std::string open_copy(const std::string& ext, const std::string& name = "work") {
        const std::string path = dir / (name + ext);
        fs::copy_file(sample(ext), path);
        EXPECT_TRUE(session.open_path(path));
        return path;
    }
};

TEST(PendingFile, OpensAtFirstActivationAndIsGoneEitherWay) {
    Bench b;
    const std::string typ = b.dir / "pending.typ";
    fs::copy_file(sample(".typ"), typ);
    write(b.dir / "system/cc", "\"" + typ + "\"\r\n");
    EXPECT_TRUE(b.session.first_activation());
    EXPECT_FALSE(fs::exists(b.dir / "system/cc"));
    EXPECT_EQ(b.s.curfile, typ);
    EXPECT_GT(b.s.pg_n + b.s.ln_n + b.s.pt_n, 0);
    EXPECT_EQ(b.settings.recent[0], typ);

    Bench c;
    write(c.dir / "system/cc", "pending.typ\r\n");
    EXPECT_FALSE(c.session.first_activation());
    EXPECT_FALSE(fs::exists(c.dir / "system/cc"));
    EXPECT_EQ(c.s.curfile, "untitled.typ");
}

TEST(SessionLog, OffWritesNothingOnWritesLinesWithClassWordAndTime) {
    Bench b;
    b.session.log_line(2, "Edited text");
    EXPECT_FALSE(fs::exists(b.dir / "logs"));
    b.session.open_log();
    b.settings.logs_on = true;
    b.session.open_log();
    EXPECT_EQ(b.ui.messages, (std::vector<std::string>{"Enable logs in Preference.", "No log details."}));

    b.session.log_line(2, "Edited text");
    b.session.log_line(7, "Loaded:x");
    EXPECT_EQ(testing::read_bytes(b.dir / "logs/korvexlog.txt"),
              "Edited textpoint :13:45:30\r\nLoaded:x :13:45:30\r\n");
    b.session.open_log();
    EXPECT_EQ(b.launcher.opened, std::vector<std::string>{testing::preferred(b.dir / "logs/korvexlog.txt")});

    b.settings.daily_log = true;
    b.session.log_line(0, "a");
    EXPECT_EQ(testing::read_bytes(b.dir / "logs/17-05-24.txt"), "apolygon :13:45:30\r\n");
    b.ui.script(Answer::yes);
    b.session.clear_main_log();
    EXPECT_FALSE(fs::exists(b.dir / "logs/korvexlog.txt"));
    EXPECT_TRUE(fs::exists(b.dir / "logs/17-05-24.txt"));
    EXPECT_EQ(log_header(testing::k_fixed_stamp), std::string(20, '-') + "17-05-24" + std::string(20, '-'));
}

TEST(SessionOpen, DirtyPromptOnlyNoGoesOnAndYesSavesNothing) {
    Bench b;
    const std::string path = b.open_copy(".typ");
    const std::string before = testing::read_bytes(path);
    b.session.set_dirty(true);
    for (Answer a : {Answer::yes, Answer::cancel}) {
        b.ui.script(a);
        b.session.open_typ();
        EXPECT_TRUE(b.dialogs.calls.empty());
        EXPECT_TRUE(b.s.dirty);
    }
    EXPECT_EQ(b.ui.questions, (std::vector<std::string>(2, "Save changes before exiting?")));
    EXPECT_EQ(testing::read_bytes(path), before);

    const std::string other = b.dir / "other.typ";
    fs::copy_file(sample(".typ"), other);
    b.ui.script(Answer::no);
    b.dialogs.script(other);
    b.session.open_typ();
    ASSERT_EQ(b.dialogs.calls.size(), 1u);
    EXPECT_EQ(b.dialogs.calls[0].title, "Open File");
    EXPECT_EQ(b.dialogs.calls[0].filters, "Typ files (*.typ)");
    EXPECT_EQ(b.s.curfile, other);
    EXPECT_FALSE(b.s.dirty);
    EXPECT_EQ(b.settings.recent[0], other);
    EXPECT_EQ(b.settings.recent[1], path);

    b.dialogs.script(b.dir / "notes.txt");
    b.session.open_typ();
    EXPECT_EQ(b.ui.messages.back(), "Not a TYP file:" + (b.dir / "notes.txt"));
    EXPECT_EQ(b.s.curfile, other);
}

TEST(SessionOpen, LoadfileRefusesMissingPathAndShowsTheLoad) {
    Bench b;
    EXPECT_FALSE(b.session.loadfile(b.dir / "missing.typ"));
    EXPECT_EQ(b.session.loadfail(), -1);
    const std::string path = b.open_copy(".typ");
    EXPECT_EQ(b.session.loadfail(), 0);
    EXPECT_FALSE(b.session.loading());
    EXPECT_EQ(b.view.caption, "Korvex " + b.s.opt.version + " " + path);
    EXPECT_NE(std::find(b.view.calls.begin(), b.view.calls.end(), "grid"), b.view.calls.end());
    EXPECT_NE(std::find(b.view.calls.begin(), b.view.calls.end(), "codepage 2"), b.view.calls.end());

    b.session.set_map_tag("Topo");
    b.session.set_dirty(true);
    EXPECT_EQ(b.view.caption, "Korvex " + b.s.opt.version + " " + path + " [Topo]+");
}

// An empty or foreign file gets one message naming it and why, as
// korvex-cli says it, whichever way it is opened; the open project stays.
TEST(SessionOpen, EmptyOrForeignFileIsRefusedAndTheOpenProjectStays) {
    std::string noise(4000, '\0');
    for (size_t k = 0; k < noise.size(); ++k) noise[k] = static_cast<char>((k * 7919 + 13) % 251);
    const std::string not_typ = "not a TYP file (no \"GARMIN TYP\" signature at offset 2)";
    const std::string not_ours = not_typ + ", a TYP text or a MapTK project";
    struct Case {
        std::string name, bytes, why;
        int how;  // 0 open_path, 1 Open TYP, 2 Open TXT, 3 Open UTF-8 TXT, 4 Open Recent of an edited project
    };
    const Case cases[] = {
        {"empty.typ", "", "the file is empty", 0},     {"empty.typ", "", "the file is empty", 1},
        {"noise.typ", noise, not_typ, 0},              {"noise.typ", noise, not_typ, 1},
        {"empty.txt", "", "the file is empty", 2},     {"noise.txt", noise, not_ours, 0},
        {"noise.txt", noise, not_ours, 2},             {"noise.txt", noise, not_ours, 3},
        {"noise.prj", noise, not_ours, 0},             {"empty.prj", "", "the file is empty", 2},
        {"empty.typ", "", "the file is empty", 4},     {"noise.txt", noise, not_ours, 4},
        {"typ.txt", testing::read_bytes(sample(".typ")), "a TYP file, not a text (open it with Open TYP)", 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name + " " + std::to_string(c.how));
        Bench b;
        const std::string open = b.open_copy(".typ");
        if (c.how == 4) {
            b.session.set_dirty(true);
            b.ui.script(Answer::no);  // go on without saving
        }
        const std::string caption = b.view.caption;
        const model::Store before = b.s;
        const std::string path = b.dir / c.name;
        write(path, c.bytes);
        b.view.calls.clear();
        b.dialogs.script(path);
        if (c.how == 0) {
            EXPECT_FALSE(b.session.open_path(path));
        } else if (c.how == 1) {
            b.session.open_typ();
        } else if (c.how == 4) {
            b.settings.recent[0] = path;
            b.session.open_recent(0);
            EXPECT_TRUE(b.s.dirty);
        } else if (c.how == 2) {
            b.session.open_txt();
        } else {
            b.session.open_utf8_txt();
        }
        EXPECT_EQ(b.ui.messages, std::vector<std::string>{path + ": " + c.why});
        EXPECT_EQ(b.s.curfile, open);
        EXPECT_EQ(b.s.curf, before.curf);
        EXPECT_EQ(b.s.fid, before.fid);
        EXPECT_EQ(b.s.pid, before.pid);
        EXPECT_EQ(b.s.codepage, before.codepage);
        EXPECT_EQ(b.s.pg_n, before.pg_n);
        EXPECT_EQ(b.s.pt_n, before.pt_n);
        EXPECT_EQ(b.s.pg_bmp, before.pg_bmp);
        EXPECT_EQ(b.view.caption, caption);
        EXPECT_EQ(std::count(b.view.calls.begin(), b.view.calls.end(), "grid"), 0);
    }
}

TEST(SessionOpen, RecentEntryMovesToHeadAndClearAsksFirst) {
    Bench b;
    const std::string a = b.open_copy(".typ", "a");
    const std::string t = b.open_copy(".txt", "t");
    EXPECT_EQ(b.settings.recent[0], t);
    b.session.open_recent(1);
    EXPECT_EQ(b.s.curfile, a);
    EXPECT_EQ(b.settings.recent[0], a);
    EXPECT_EQ(b.settings.recent[1], t);
    EXPECT_EQ(b.view.recent[0].path, a);

    b.ui.script(Answer::no);
    b.session.clear_recent();
    EXPECT_EQ(b.ui.questions.back(), "Clear Files.\r\n\r\nAre you sure?");
    EXPECT_EQ(b.settings.recent[0], a);
    b.ui.script(Answer::yes);
    b.session.clear_recent();
    EXPECT_FALSE(b.view.recent[0].visible);
    const size_t asked = b.ui.questions.size();
    b.session.clear_recent();  // nothing to clear: no question
    EXPECT_EQ(b.ui.questions.size(), asked);
}

TEST(SessionSave, IdentifierRefusalsStopWithTheirMessageAndFocus) {
    struct Case {
        std::string fid, pid;
        int codepage;
        std::string message, focus;
    };
    const Case cases[] = {
        {"", "1", 1252, "Please enter FID", "focus fid"},
        {"12a", "1", 1252, "Please enter valid FID at the top.", "focus fid"},
        {"65536", "1", 1252, "FID must be smaller than 65536.", "focus fid"},
        {"4711", "1", 0, "Please enter valid codepage.", "focus codepage"},
        {"4711", "", 1252, "Please enter valid PID at the top.", "focus pid"},
    };
    for (const Case& c : cases) {
        Bench b;
        const std::string path = b.open_copy(".typ");
        const std::string before = testing::read_bytes(path);
        b.s.fid = c.fid;
        b.s.pid = c.pid;
        b.s.codepage = c.codepage;
        EXPECT_FALSE(b.session.save(k_save)) << c.message;
        EXPECT_EQ(b.ui.messages, std::vector<std::string>{c.message});
        EXPECT_EQ(b.view.calls.back(), c.focus);
        EXPECT_EQ(testing::read_bytes(path), before);
    }
}

TEST(SessionSave, PidZeroNoRefusesAndKeepsTheWindowOpenOnExit) {
    Bench b;
    b.open_copy(".typ");
    b.s.pid = "0";
    b.session.set_dirty(true);
    b.ui.script(Answer::yes);  // save before exiting
    b.ui.script(Answer::no);   // PID 0
    EXPECT_FALSE(b.session.close_request());
    EXPECT_TRUE(b.session.save_refused());
    EXPECT_EQ(b.ui.questions.back(), "Check: PID=0 \r\n\r\n Continue?");

    b.ui.script(Answer::cancel);
    EXPECT_FALSE(b.session.close_request());
    EXPECT_FALSE(b.session.save_refused());
    b.ui.script(Answer::no);
    EXPECT_TRUE(b.session.close_request());
    EXPECT_TRUE(b.s.dirty);
    // A project without changes closes without a question.
    b.session.set_dirty(false);
    const size_t asked = b.ui.questions.size();
    EXPECT_TRUE(b.session.close_request());
    EXPECT_EQ(b.ui.questions.size(), asked);
}

TEST(SessionSave, SaveAsAsksBeforeReplacingAndTheCopyBecomesTheOpenFile) {
    Bench b;
    const std::string path = b.open_copy(".typ");
    const std::string target = b.dir / "copy.typ";
    write(target, "old");
    b.session.set_dirty(true);

    b.dialogs.script(target + ".bak");  // cut behind ".typ"
    b.ui.script(Answer::no);
    EXPECT_FALSE(b.session.save(k_save_copy));
    ASSERT_EQ(b.dialogs.calls.size(), 1u);
    EXPECT_EQ(b.dialogs.calls[0].title, "Save File");
    EXPECT_EQ(b.dialogs.calls[0].start, path);
    EXPECT_EQ(b.ui.questions.back(), "File exists.\r\n\r\n" + target + "\r\n\r\nReplace this file?");
    EXPECT_EQ(testing::read_bytes(target), "old");
    EXPECT_EQ(b.s.curfile, path);

    b.dialogs.script(b.dir / "copy");
    b.ui.script(Answer::yes);
    EXPECT_TRUE(b.session.save(k_save_copy));
    EXPECT_EQ(testing::read_bytes(target).compare(2, 10, "GARMIN TYP"), 0);
    EXPECT_EQ(b.s.curfile, target);
    EXPECT_FALSE(b.s.dirty);
    EXPECT_EQ(b.view.caption, "Korvex " + b.s.opt.version + " " + target);

    b.session.force_save_as();  // as after a theme: Save asks for a name
    EXPECT_FALSE(b.session.save(k_save));
    EXPECT_EQ(b.dialogs.calls.size(), 3u);
}

TEST(SessionSave, TextOpenedAsTextSavesInPlaceAsTextAndKeepsUtf8) {
    for (bool utf8 : {false, true}) {
        Bench b;
        const std::string path = b.dir / "x.txt";
        fs::copy_file(sample(".txt"), path);
        b.dialogs.script(path);
        if (utf8)
            b.session.open_utf8_txt();
        else
            b.session.open_txt();
        EXPECT_EQ(b.dialogs.calls[0].filters,
                  utf8 ? "Txt files (*.txt)|Themes (*.kmtf)" : "Txt files (*.txt)|Themes (*.kmtf)|MapTK (*.prj)");
        ASSERT_EQ(b.s.curfile, path);
        write(path, "stale");
        b.session.set_dirty(true);
        EXPECT_TRUE(b.session.save(k_save));
        EXPECT_EQ(b.dialogs.calls.size(), 1u);  // no dialog
        const std::string out = testing::read_bytes(path);
        EXPECT_EQ(out.compare(0, 3, "\xEF\xBB\xBF") == 0, utf8) << out.substr(0, 40);
        EXPECT_NE(out.find("[_id]\r\nProductCode=1\r\nFID=4711\r\n"), std::string::npos);
        EXPECT_FALSE(b.s.dirty);
    }
}

// Save as Text makes the text the open file, as Save TYP As does: the
// caption names it, and Save writes the text again in its form, never the
// TYP that lacks the edits.
TEST(SessionSave, SaveAsTextMakesTheTextTheOpenFile) {
    for (int entry : {int(k_save_text), int(k_save_text_utf8)}) {
        SCOPED_TRACE(entry);
        Bench b;
        const std::string typ = b.open_copy(".typ");
        const std::string typ_bytes = testing::read_bytes(typ);
        const std::string text = b.dir / "saved.txt";
        b.session.set_dirty(true);
        b.dialogs.script(text);
        ASSERT_TRUE(b.session.save(entry));
        EXPECT_EQ(b.s.curfile, text);
        EXPECT_EQ(b.view.caption, "Korvex " + b.s.opt.version + " " + text);

        b.session.set_dirty(true);
        EXPECT_EQ(b.view.caption, "Korvex " + b.s.opt.version + " " + text + "+");
        write(text, "stale");
        ASSERT_TRUE(b.session.save(k_save));
        EXPECT_EQ(b.dialogs.calls.size(), 1u);  // in place, no dialog
        const std::string out = testing::read_bytes(text);
        EXPECT_EQ(out.compare(0, 3, "\xEF\xBB\xBF") == 0, entry == k_save_text_utf8) << out.substr(0, 40);
        EXPECT_NE(out.find("[_id]"), std::string::npos);
        EXPECT_EQ(testing::read_bytes(typ), typ_bytes);
        EXPECT_FALSE(b.s.dirty);
    }
}

TEST(SessionSave, PendingTextNoDataAndThemesStopTheFlow) {
    Bench b;
    b.s.fid = "1";
    EXPECT_FALSE(b.session.save(k_save_as));
    EXPECT_EQ(b.ui.messages, std::vector<std::string>{"No data."});

    b.open_copy(".typ");
    b.session.set_text_pending(true);
    EXPECT_TRUE(b.view.apply_visible);
    EXPECT_FALSE(b.session.save(k_save));
    EXPECT_EQ(b.ui.messages.back(), "Please click 'Apply Changes'");
    b.ui.script(Answer::no);
    EXPECT_FALSE(b.session.save(k_save_as));
    EXPECT_EQ(b.ui.questions.back(), "Text Changes have not been saved.\r\n\r\nContinue without saving?");
    EXPECT_TRUE(b.dialogs.calls.empty());

    b.s.codepage = 65001;
    EXPECT_FALSE(b.session.save(k_save_text));
    EXPECT_EQ(b.ui.messages.back(), "Save as TXT (UTF-8) or change codepage to save as non-utf8");

    b.dialogs.script(b.dir / "look.kmtf");
    b.session.open_txt();
    EXPECT_EQ(b.ui.messages.back(), "Cannot find T data in " + b.dir.root.string());
}

// A disk that fills up during the write: whatever the entry, the message
// names the file, nothing is replaced, and the project stays unsaved, so
// closing the window still asks.
TEST(SessionSave, AFailedWriteOfAnyEntryLeavesTheProjectUnsavedAndCloseStillAsks) {
    struct Case {
        int entry;
        std::string ext;  // of the open file
        std::string target;
        std::string words;
    };
    const std::vector<Case> cases = {
        {k_save, ".typ", "work.typ", "Cannot save "},
        {k_save_as, ".typ", "as.typ", "Cannot save "},
        {k_save_copy, ".typ", "copy.typ", "Cannot save "},
        {k_save_text, ".typ", "text.txt", "Cannot write "},
        {k_save_text_utf8, ".typ", "utf8.txt", "Cannot write "},
        {k_save, ".txt", "work.txt", "Cannot write "},  // a text saves in place as text
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.entry) + " " + c.target);
        Bench b;
        platform::FaultyFileSystem full(platform::FaultyFileSystem::Op::write, ENOSPC, 100);
        b.session.set_file_system(full);
        const std::string opened = b.open_copy(c.ext);
        const std::string target = b.dir / c.target;
        if (target != opened) write(target, "old");
        const std::string before = testing::read_bytes(target);
        b.session.set_dirty(true);
        b.dialogs.script(target);

        EXPECT_FALSE(b.session.save(c.entry));
        ASSERT_FALSE(b.ui.messages.empty());
        EXPECT_EQ(b.ui.messages.back(), c.words + target + ": No space left on device");
        EXPECT_EQ(testing::read_bytes(target), before);
        EXPECT_TRUE(b.s.dirty);
        EXPECT_EQ(b.s.curfile, opened);
        EXPECT_EQ(b.view.caption.back(), '+');

        const size_t asked = b.ui.questions.size();
        b.ui.script(Answer::cancel);
        EXPECT_FALSE(b.session.close_request());
        ASSERT_EQ(b.ui.questions.size(), asked + 1);
        EXPECT_EQ(b.ui.questions.back(), "Save changes before exiting?");
        // Yes tries the save again; it fails again, so the window stays open.
        b.ui.script(Answer::yes);
        b.dialogs.script(target);
        EXPECT_FALSE(b.session.close_request());
        EXPECT_TRUE(b.s.dirty);
    }
}

// A save the encoder refuses writes nothing and leaves the project unsaved;
// the text saves offer the filter of their kind.
TEST(SessionSave, AnEncoderRefusalWritesNothingAndTextSavesNameTheirKind) {
    Bench b;
    const std::string opened = b.open_copy(".typ");
    const std::string before = testing::read_bytes(opened);
    b.session.set_dirty(true);
    b.s.hdr_len = 50;
    EXPECT_FALSE(b.session.save(k_save));
    EXPECT_EQ(b.ui.messages.back(), "Select Header.");
    EXPECT_EQ(testing::read_bytes(opened), before);
    EXPECT_TRUE(b.s.dirty);
    for (const auto& [entry, filter] : {std::pair{k_save_text, "Text files (*.txt)"}, {k_save_text_utf8, "Text UTF-8 files (*.txt)"}}) {
        b.dialogs.script("");
        EXPECT_FALSE(b.session.save(entry));
        ASSERT_FALSE(b.dialogs.calls.empty());
        EXPECT_EQ(b.dialogs.calls.back().filters, filter);
    }
}

TEST(SessionPanel, ApplyTakesUtf8LabelsBackToThePageAndMarksTheCell) {
    Bench b;
    b.open_copy(".typ");
    b.s.curclass = model::k_polygons;
    b.s.curel = 0;
    std::string panel;
    bool page_shown_as_utf8 = false;  // the sample's "Gebäude" is in code page 1252
    for (int32_t row = 1; row <= b.s.pg_n && b.s.curel == 0; ++row) {
        panel = text::convert(b.s, text::create_code(b.s, row, model::k_polygons, false));
        if (panel.find(",Wald\r\n") != std::string::npos) b.s.curel = row;
        if (panel.find(",Geb\xC3\xA4ude\r\n") != std::string::npos) page_shown_as_utf8 = true;
    }
    ASSERT_GT(b.s.curel, 0);
    EXPECT_TRUE(page_shown_as_utf8);
    const size_t at = b.s.curel - 1;
    b.session.set_text_pending(true);
    EXPECT_FALSE(b.session.apply_code_panel(panel.replace(panel.find("Type="), 5, "Type=0xZZ")));
    EXPECT_FALSE(b.s.dirty);
    EXPECT_TRUE(b.view.apply_visible);

    panel = text::convert(b.s, text::create_code(b.s, b.s.curel, model::k_polygons, false));
    panel.replace(panel.find(",Wald\r\n"), 5, ",W\xC3\xA4ldchen");
    panel.erase(std::remove(panel.begin(), panel.end(), '\r'), panel.end());  // as a text widget gives it
    ASSERT_TRUE(b.session.apply_code_panel(panel));
    EXPECT_NE(b.s.pg_txt[at].find(",W\xE4ldchen\r\n"), std::string::npos);
    const std::string& txt = b.s.pg_txt[at];
    for (size_t i = txt.find('\n'); i != std::string::npos; i = txt.find('\n', i + 1)) EXPECT_EQ(txt[i - 1], '\r');
    EXPECT_FALSE(b.view.apply_visible);
    EXPECT_EQ(b.view.caption.back(), '+');
    EXPECT_NE(std::find(b.view.calls.begin(), b.view.calls.end(), "cell 0 " + std::to_string(b.s.curel)),
              b.view.calls.end());
}

TEST(SessionCodepage, CrossingUtf8SavesUnderANewNameAndReloadsOthersJustTakeTheValue) {
    Bench b;
    b.open_copy(".txt");
    EXPECT_TRUE(b.session.change_codepage(1250));
    EXPECT_EQ(b.s.codepage, 1250);
    EXPECT_FALSE(b.session.change_codepage(65001));
    EXPECT_EQ(b.ui.messages.back(), "Save as TYP first.");
    EXPECT_EQ(b.s.codepage, 1250);

    Bench c;
    const std::string path = c.open_copy(".typ");
    c.ui.script(Answer::yes);
    c.dialogs.script(c.dir / "utf");
    EXPECT_TRUE(c.session.change_codepage(65001));
    EXPECT_EQ(c.ui.questions[0], "TYP has to be saved and reloaded.\r\n\r\nContinue?");
    EXPECT_EQ(c.dialogs.calls[0].start, c.dir / "work_65001.typ");
    EXPECT_EQ(c.s.curfile, c.dir / "utf.typ");
    EXPECT_EQ(c.s.codepage, 65001);
    EXPECT_GT(c.s.pg_n, 0);

    c.ui.script(Answer::no);
    EXPECT_FALSE(c.session.change_codepage(1252));
    EXPECT_EQ(c.ui.questions.back(),
              "TYP has to be saved and reloaded.\r\n\r\n0x00 and other labels may convert to '??" "?' - see "
              "manual\r\n\r\n0x00 = Codepage 1252?\r\n\r\nContinue?");
    EXPECT_EQ(c.s.codepage, 65001);
}

// A theme opened over the sample, which has extra points: the points and
// extra points stay, polygons and lines are the theme's.
TEST(SessionTheme, OpeningAThemeKeepsThePointsBesideExtraPoints) {
    Bench b;
    b.open_copy(".typ");
    const int32_t points = b.s.pt_n, extra = b.s.pt_nx;
    ASSERT_GT(extra, 0);
    const std::vector<std::string> types = b.s.pt_typ;
    write(b.dir / "tdat", "FOREST,50\nTRAIL,1,16\n");
    write(b.dir / "look.kmtf",
          "<StyleList>\n<Style Field=\"MAP_FOREST_CLR\"><Color Day=\"#4CA04C\"/></Style>\n"
          "<Style Field=\"MAP_TRAIL_CLR\" Scale=\"3\"><Color Day=\"#8B4513\"/></Style>\n</StyleList>\n");
    ASSERT_TRUE(b.session.open_path(b.dir / "look.kmtf"));
    EXPECT_NE(std::find(b.ui.messages.begin(), b.ui.messages.end(), "Merging with Extra Points"), b.ui.messages.end());
    EXPECT_EQ(b.s.pt_n, points);
    EXPECT_EQ(b.s.pt_nx, extra);
    EXPECT_EQ(b.s.pt_typ, types);
    EXPECT_EQ(b.s.pg_n, 1);
    EXPECT_EQ(b.s.ln_n, 1);
    EXPECT_EQ(b.s.curfile, b.dir / "look.typ");
}

}  // namespace
}  // namespace korvex::workbench
