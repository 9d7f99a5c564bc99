// The viewer of a check's or a tool's report: read-only text with Copy,
// Save As… and Close. It stays open beside the main window, so the user can
// work through the list it names.
#pragma once

#include <QWidget>
#include <string>

class QPlainTextEdit;
class QPushButton;

namespace korvex::gui {

class ReportWindow : public QWidget {
    Q_OBJECT
public:
    // text: the report's bytes, lines ending in CR LF.
    ReportWindow(const std::string& title, const std::string& text, QWidget* parent = nullptr);
    QString text() const;
    QPushButton* copy_button() const { return copy_; }
    QPushButton* save_button() const { return save_; }
    QPushButton* close_button() const { return close_; }
    // Writes the report to path as it came (the bytes, CR LF kept); false
    // when the file could not be written.
    bool save_to(const QString& path) const;

private:
    void save_as();

    std::string bytes_;
    QPlainTextEdit* box_;
    QPushButton* copy_;
    QPushButton* save_;
    QPushButton* close_;
};

}  // namespace korvex::gui
