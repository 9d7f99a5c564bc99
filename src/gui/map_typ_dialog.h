// The choice of a TYP subfile when a map container holds several: one row a
// TYP with its name, size, family and product id.
#pragma once

#include <QDialog>
#include <functional>
#include <string>
#include <vector>

#include "integration/img_container.h"
#include "integration/messages.h"

class QListWidget;
class QPushButton;

namespace korvex::gui {

class MainWindow;

class MapTypDialog : public QDialog {
    Q_OBJECT
public:
    MapTypDialog(const integration::Messages& msgs, const std::string& map,
                 const std::vector<integration::ImgSubfile>& typs, QWidget* parent = nullptr);
    QListWidget* list() const { return list_; }
    QPushButton* open_button() const { return open_; }
    // The row chosen, -1 when none.
    int chosen() const;

private:
    QListWidget* list_ = nullptr;
    QPushButton* open_ = nullptr;
};

// File > Open TYP in Map…: the file dialog, the choice, the open. exec runs
// the choice dialog (modally when empty).
bool open_typ_in_map(MainWindow& w, const std::function<int(QDialog&)>& exec);
// A map file given on the command line or dropped: its TYP, chosen as above.
bool open_map_file(MainWindow& w, const std::string& map, const std::function<int(QDialog&)>& exec);

}  // namespace korvex::gui
