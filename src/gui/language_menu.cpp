#include "gui/language_menu.h"

#include <QAbstractButton>
#include <QAction>
#include <QActionGroup>
#include <QMenu>

#include "gui/qt_prompt.h"

namespace korvex::gui {

void CaptionTable::add(QAction* action, const std::string& key, const QString& builtin) {
    entries_.push_back({action, key, builtin});
}

void CaptionTable::add(QMenu* menu, const std::string& key, const QString& builtin) {
    entries_.push_back({menu, key, builtin});
}

void CaptionTable::add(QAbstractButton* button, const std::string& key, const QString& builtin) {
    entries_.push_back({button, key, builtin});
}

void CaptionTable::apply(const integration::Messages& msgs) const {
    for (const Entry& e : entries_) {
        if (!e.control) continue;
        const std::string given = msgs.caption(e.key);
        const QString text = given.empty() ? e.builtin : from_message(given);
        if (auto* action = qobject_cast<QAction*>(e.control))
            action->setText(text);
        else if (auto* menu = qobject_cast<QMenu*>(e.control))
            menu->setTitle(text);
        else if (auto* button = qobject_cast<QAbstractButton*>(e.control))
            button->setText(text);
    }
}

LanguageMenu::LanguageMenu(QMenu* menu, integration::Messages& msgs, std::vector<std::string> folders,
                           Recaption recaption, QObject* parent)
    : QObject(parent), menu_(menu), msgs_(msgs), folders_(std::move(folders)), recaption_(std::move(recaption)) {}

void LanguageMenu::rebuild() {
    entries_ = integration::loadlanguages(folders_);
    if (!menu_) return;
    menu_->clear();
    auto* group = new QActionGroup(menu_);
    for (int n = 0; n < count(); ++n) {
        const QString name = n == 0 ? QStringLiteral("English") : from_message(entries_[n - 1].name);
        QAction* action = menu_->addAction(name);
        action->setCheckable(true);
        action->setData(n);
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, n] { select(n); });
    }
    check_current();
}

bool LanguageMenu::select(int n) {
    if (n < 0 || n >= count()) return false;
    if (n == 0) {
        msgs_.use_english(folders_);
    } else if (!msgs_.apply_lang(entries_[n - 1].path)) {
        return false;
    }
    if (recaption_) recaption_();
    check_current();
    emit language_changed(from_path(msgs_.lanfile()));
    return true;
}

void LanguageMenu::check_current() {
    if (!menu_) return;
    const std::string& current = msgs_.lanfile();
    for (QAction* action : menu_->actions()) {
        const int n = action->data().toInt();
        action->setChecked(n == 0 ? current.empty() : entries_[n - 1].path == current);
    }
}

}  // namespace korvex::gui
