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

namespace korvex::gui {

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
