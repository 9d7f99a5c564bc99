// The Language menu: English first, then one entry a language file found,
// and the captions of the window re-applied when the language changes.
#pragma once

#include <QObject>
#include <QPointer>
#include <functional>
#include <string>
#include <vector>

#include "integration/messages.h"

class QAction;
class QAbstractButton;
class QMenu;
class QWidget;

namespace korvex::gui {

// The key of a caption the file format names no key for: "c_" and the
// words of its English text, lower case, joined by "_" ("Paste UTF-8" is
// "c_paste_utf_8", "Night && Opacity" is "c_night_opacity").
std::string caption_key(const QString& english);

// The key a control's caption is looked up by: the key it was given, else
// the one of its English caption; "" for a control that shows no fixed
// caption (file names, numbers, language names).
std::string control_caption_key(const QObject* control);

// Gives a control whose caption the program sets itself the key it is worded by.
void set_caption_key(QObject* control, const std::string& key);

// Marks a control whose text is data, not a caption: no language replaces it.
void no_caption(QObject* control);

// Every action, menu, button and group box under root (root included) that
// has no key of its own takes the language's caption for its English
// text, or the English text again when the language gives none. The
// English text is remembered on the control at the first call.
void translate_tree(QWidget* root, const integration::Messages& msgs);

// The language's caption for an English text set at run time, or the text.
QString caption_for(const QString& english, const integration::Messages& msgs);

// The captions a language file may replace: each control with its key
// ("mfile", "btnapplyX") and the built-in English caption it returns to.
class CaptionTable {
public:
    void add(QAction* action, const std::string& key, const QString& builtin);
    void add(QMenu* menu, const std::string& key, const QString& builtin);
    void add(QAbstractButton* button, const std::string& key, const QString& builtin);
    // Every control takes the language's caption, or its built-in one when
    // the language gives none. Controls deleted meanwhile are skipped.
    void apply(const integration::Messages& msgs) const;

private:
    struct Entry {
        QPointer<QObject> control;
        std::string key;
        QString builtin;
    };
    std::vector<Entry> entries_;
};

class LanguageMenu : public QObject {
    Q_OBJECT
public:
    // Called after a language was applied, to re-apply the captions of the
    // window (and anything else worded by the language).
    using Recaption = std::function<void()>;

    // folders: where language files are looked for, in order (the data
    // folder's "languages" first, then the bundled ones).
    LanguageMenu(QMenu* menu, integration::Messages& msgs, std::vector<std::string> folders,
                 Recaption recaption, QObject* parent = nullptr);

    // Lists the language files again and refills the menu: entry 0 "English",
    // then each file by the name it gives itself. The entry in force is
    // checked.
    void rebuild();
    // Applies entry n (0 English) as a click on it does; false for a number
    // outside the menu or a file that could no longer be read.
    bool select(int n);

    int count() const { return 1 + static_cast<int>(entries_.size()); }
    const std::vector<integration::LanguageEntry>& entries() const { return entries_; }

signals:
    // The language file now in force ("" for English), for the settings.
    void language_changed(const QString& lanfile);

private:
    void check_current();

    QPointer<QMenu> menu_;
    integration::Messages& msgs_;
    std::vector<std::string> folders_;
    Recaption recaption_;
    std::vector<integration::LanguageEntry> entries_;
};

}  // namespace korvex::gui
