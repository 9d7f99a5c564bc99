// "TYP files in Mapsource/Basecamp": the installed map families, with
// Open TYP, Add or Replace TYP, Search (read the maps again) and Close.
#pragma once

#include <QDialog>
#include <functional>
#include <memory>

#include "integration/map_families.h"
#include "platform/map_platform.h"

class QLabel;
class QListWidget;
class QPushButton;

namespace korvex::gui {

class MainWindow;

class FamiliesDialog : public QDialog {
    Q_OBJECT
public:
    using MakePlatform = std::function<std::unique_ptr<platform::MapPlatform>()>;
    FamiliesDialog(MainWindow& w, MakePlatform make, QWidget* parent = nullptr);

    const integration::FamilyList& families() const { return list_; }
    QListWidget* list() const { return rows_; }

    // The buttons' commands on the selected row.
    void open_typ();
    void add_or_replace();
    // Reads the maps again.
    void search();

private:
    integration::Family* selected();
    void fill();
    void follow_selection();

    MainWindow& w_;
    MakePlatform make_;
    std::unique_ptr<platform::MapPlatform> sys_;
    integration::FamilyList list_;
    QLabel* header_ = nullptr;
    QListWidget* rows_ = nullptr;
    QPushButton* open_ = nullptr;
    QPushButton* upload_ = nullptr;
};

}  // namespace korvex::gui
