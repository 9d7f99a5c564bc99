// The prompt of the editor window: modal message boxes, the progress bar and
// the status label. Texts of the logic arrive as bytes with CR LF between
// lines; they are turned into Qt strings only here.
#pragma once

#include <QMessageBox>
#include <QPointer>
#include <QString>
#include <functional>
#include <string>

#include "platform/prompt.h"

class QLabel;
class QProgressBar;
class QWidget;

namespace korvex::gui {

// The caption of every message box.
inline constexpr const char* k_box_title = "Korvex";

// The program's own texts (English or a language file) are Latin-1, one
// character a byte, or UTF-8 when the bytes are well-formed UTF-8 (a
// language file saved so). CR LF and lone CR become LF.
QString from_message(const std::string& text);
// Label bytes of code page cp (65001 is UTF-8) to a Qt string, and back.
// Characters outside the page come back as "?".
QString from_codepage(const std::string& bytes, int cp);
std::string to_codepage(const QString& text, int cp);
// Paths are bytes of the file system's encoding.
QString from_path(const std::string& path);
std::string to_path(const QString& path);

class QtPrompt : public platform::Prompt {
public:
    // Shows a prepared box and gives the button pressed. The default runs the
    // box modally; tests put in one that presses a button.
    using Answerer = std::function<QMessageBox::StandardButton(QMessageBox& box)>;

    explicit QtPrompt(QWidget* parent = nullptr) : parent_(parent) {}

    // Where progress and status go; either may be left unset (then the call
    // does nothing). The widgets belong to the window.
    void set_progress_bar(QProgressBar* bar);
    void set_status_label(QLabel* label);
    void set_parent(QWidget* parent);
    void set_answerer(Answerer answerer) { answerer_ = std::move(answerer); }

    // OK box.
    void message(const std::string& text) override;
    // Yes / No box; closing the box counts as No.
    bool yes_no(const std::string& text) override;
    // Yes / No / Cancel box; closing the box counts as Cancel.
    platform::Answer yes_no_cancel(const std::string& text) override;
    // A percent above 0 fills the bar so far; 0 or less shows it empty. The
    // bar is repainted at once, as the caller is in a long loop.
    void progress(int percent) override;
    void status(const std::string& text) override;
    // Opens a report window beside the parent; it stays until the user closes it.
    void report(const std::string& title, const std::string& text) override;
    // The newest report window still open (tests read it).
    QWidget* last_report() const { return report_; }

private:
    QMessageBox::StandardButton ask(QMessageBox::Icon icon, const std::string& text,
                                    QMessageBox::StandardButtons buttons,
                                    QMessageBox::StandardButton escape);

    QPointer<QWidget> parent_;
    QPointer<QProgressBar> bar_;
    QPointer<QLabel> label_;
    QPointer<QWidget> report_;
    Answerer answerer_;
};

}  // namespace korvex::gui
