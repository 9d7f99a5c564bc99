// korvex [FILE]: the editor window, opening FILE when given (else the pending
// file or the auto-load path of the settings). korvex --render-preview ...
// draws the map preview of a file into a PNG instead.
#include <QApplication>
#include <QFileInfo>
#include <QTimer>

#include "gui/main_window.h"
#include "gui/preview_command.h"
#include "gui/qt_prompt.h"

int main(int argc, char** argv) {
    // A rendered map preview needs no window (nor a display).
    if (korvex::gui::wants_render_preview(argc, argv)) return korvex::gui::run_render_preview(argc, argv);
    QApplication app(argc, argv);
    QApplication::setApplicationName("Korvex");
    QApplication::setOrganizationName("Halden");
    korvex::gui::MainWindow w;
    w.show();
    const QStringList args = QApplication::arguments();
    // Absolute, so that the caption and the recent list name the file fully.
    const std::string file =
        args.size() > 1 ? korvex::gui::to_path(QFileInfo(args.at(1)).absoluteFilePath()) : std::string();
    // After the first paint, so the window is there while the file loads.
    QTimer::singleShot(0, &w, [&w, file] {
        if (file.empty())
            w.first_activation();
        else
            w.open_file(file);
    });
    return app.exec();
}
