// File > Open TYP in Map… in the window: the entry, the choice of TYP when a
// map holds several, the caption, and Save into the map.
#include <QAction>
#include <QApplication>
#include <QFile>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>

#include <gtest/gtest.h>

#include "gui/main_window.h"
#include "gui/map_typ_dialog.h"
#include "integration/img_container.h"
#include "support/harness.h"
#include "support/img_builder.h"
#include "window_fixture.h"

namespace {

struct MapWindow : korvex::testing::WindowFixture {
    MapWindow() : WindowFixture(korvex::platform::Answer::yes) { show(services(), 900, 600); }

    QAction* open_in_map() {
        for (QAction* m : w->menuBar()->actions())
            if (m->text() == "File")
                for (QAction* a : m->menu()->actions())
                    if (a->text() == QString::fromUtf8("Open TYP in Map…")) return a;
        return nullptr;
    }
    std::string typ_in(const std::string& map, size_t index) {
        std::string error, bytes;
        auto c = korvex::integration::read_container(map, error);
        EXPECT_TRUE(c) << error;
        if (c) {
            EXPECT_TRUE(korvex::integration::read_subfile(*c, index, bytes, error));
        }
        return bytes;
    }
};

}  // namespace

TEST(MapTypWindow, TheChosenTypOpensNamedByMapAndSubfileAndSaveGoesIntoTheMap) {
    MapWindow f;
    const std::string second = korvex::testing::read_bytes(korvex::testing::k_samples + "sample.typ");
    const std::string map = f.path("family.img");
    ASSERT_TRUE(korvex::samples::build_img(map, 9, {{"00000001", "TYP", korvex::samples::typ_stub(1, 1, 700)},
                                                    {"00001234", "TRE", std::string(900, 'x')},
                                                    {"00000002", "TYP", second}}));
    QAction* entry = f.open_in_map();
    ASSERT_NE(entry, nullptr);

    // Cancel in the choice: nothing opens.
    QStringList rows;
    f.w->exec_map_dialog = [&](QDialog& d) {
        auto* dialog = dynamic_cast<korvex::gui::MapTypDialog*>(&d);
        EXPECT_NE(dialog, nullptr);
        for (int i = 0; dialog && i < dialog->list()->count(); ++i) rows << dialog->list()->item(i)->text();
        return static_cast<int>(QDialog::Rejected);
    };
    f.dialogs.script(map);
    entry->trigger();
    EXPECT_EQ(rows.join("|").toStdString(),
              "00000001.TYP  700 bytes  FID 1  PID 1|00000002.TYP  5837 bytes  FID 4711  PID 1");
    EXPECT_EQ(f.w->store().pg_n, 0);

    // The second row, opened.
    f.w->exec_map_dialog = [](QDialog& d) {
        auto* dialog = dynamic_cast<korvex::gui::MapTypDialog*>(&d);
        dialog->show();
        dialog->list()->setCurrentRow(1);
        // KORVEX_GRABS=dir keeps a picture of the dialog for a look.
        if (const QByteArray dir = qgetenv("KORVEX_GRABS"); !dir.isEmpty()) {
            QApplication::processEvents();
            dialog->grab().save(QString::fromUtf8(dir) + "/map_typ_dialog.png");
        }
        dialog->open_button()->click();
        return d.result();
    };
    f.dialogs.script(map);
    entry->trigger();
    EXPECT_TRUE(f.w->windowTitle().contains(QString::fromStdString(map + ":00000002.TYP")))
        << f.w->windowTitle().toStdString();
    ASSERT_GT(f.w->store().pg_n, 0);

    // Save writes the encoded TYP into the map; the other subfiles stay.
    f.w->store().pg_typ[0] = f.w->store().pg_typ[1];
    f.w->store().dirty = true;
    f.w->after_change();
    EXPECT_TRUE(f.w->windowTitle().endsWith("+"));
    ASSERT_TRUE(f.w->session().save_in_place());
    EXPECT_EQ(f.typ_in(map, 2), f.w->store().curf);
    EXPECT_EQ(f.typ_in(map, 1), std::string(900, 'x'));
    EXPECT_EQ(f.typ_in(map, 0), korvex::samples::typ_stub(1, 1, 700));
    EXPECT_FALSE(f.w->windowTitle().endsWith("+"));
}

TEST(MapTypWindow, AMapOnTheCommandLineOpensItsOnlyTypWithoutAQuestion) {
    MapWindow f;
    const std::string map = f.path("gmapsupp.img");
    ASSERT_TRUE(QFile::copy(QString::fromStdString(korvex::testing::source_dir() + "/tests/data/img/gmapsupp.img"),
                            QString::fromStdString(map)));
    bool asked = false;
    f.w->exec_map_dialog = [&](QDialog&) {
        asked = true;
        return static_cast<int>(QDialog::Rejected);
    };
    ASSERT_TRUE(f.w->open_file(map));
    EXPECT_FALSE(asked);
    EXPECT_TRUE(f.w->windowTitle().contains(QString::fromStdString(map + ":0XSAMPLE.TYP")));
    EXPECT_EQ(f.w->store().fid, "4242");
    // A file that is not a map is said, and the map's TYP stays open.
    const std::string bad = f.path("bad.img");
    QFile out(QString::fromStdString(bad));
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    out.write("not a map");
    out.close();
    f.prompt.messages.clear();
    EXPECT_FALSE(f.w->open_file(bad));
    ASSERT_EQ(f.prompt.messages.size(), 1u);
    EXPECT_EQ(f.prompt.messages[0], bad + " is not a Garmin map file (no DSKIMG container).");
    EXPECT_TRUE(f.w->windowTitle().contains(QString::fromStdString(map + ":0XSAMPLE.TYP")));
}
