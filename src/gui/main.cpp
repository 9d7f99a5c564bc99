// korvex [FILE]: the editor window, opening FILE when given.
#include <QApplication>

#include "gui/main_window.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    korvex::gui::MainWindow w;
    w.show();
    return app.exec();
}
