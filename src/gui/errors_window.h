// The "Errors" window: the load report in one read-only text box, closed
// with its Close button or Esc.
#pragma once

#include <QWidget>
#include <string>

class QPlainTextEdit;
class QPushButton;

namespace korvex::gui {

class ErrorsWindow : public QWidget {
    Q_OBJECT
public:
    // close_caption: the Close button's caption in the language in force.
    explicit ErrorsWindow(const QString& close_caption = QStringLiteral("Close"), QWidget* parent = nullptr);
    QPushButton* close_button() const { return close_; }
    // Shows the report (lines end in CR LF); an empty report empties the box.
    void show_report(const std::string& loadrep);
    QString text() const;

private:
    QPlainTextEdit* box_;
    QPushButton* close_;
};

}  // namespace korvex::gui
