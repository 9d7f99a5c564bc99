#include "gui/main_window.h"

namespace korvex::gui {

MainWindow::MainWindow(QWidget* parent) : QMainWindow(parent) {
    setWindowTitle("Korvex");
}

}  // namespace korvex::gui
