// The "Errors" window: the load report in one read-only text box.
#pragma once

#include <QWidget>
#include <string>

class QPlainTextEdit;

namespace korvex::gui {

class ErrorsWindow : public QWidget {
    Q_OBJECT
public:
    explicit ErrorsWindow(QWidget* parent = nullptr);
    // Shows the report (lines end in CR LF); an empty report empties the box.
    void show_report(const std::string& loadrep);
    QString text() const;

private:
    QPlainTextEdit* box_;
};

}  // namespace korvex::gui
