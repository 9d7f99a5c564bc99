// The editor's main window: the header fields, the class buttons, the grid of
// icons, the code panel and the menus. The flows behind the commands live in
// the Qt-free workbench; the window only calls them and shows their state.
#pragma once

#include <QMainWindow>

namespace korvex::gui {

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(QWidget* parent = nullptr);
};

}  // namespace korvex::gui
