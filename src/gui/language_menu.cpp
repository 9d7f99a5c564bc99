#include "gui/language_menu.h"

#include <QAbstractButton>
#include <QAction>
#include <QActionGroup>
#include <QGroupBox>
#include <QMenu>
#include <QRegularExpression>
#include <QToolButton>
#include <QVariant>

#include "gui/qt_prompt.h"

namespace korvex::gui {

namespace {

// Properties a control carries: its own key, its English caption, "no caption".
constexpr const char* k_key_property = "korvexCaptionKey";
constexpr const char* k_english_property = "korvexEnglish";
constexpr const char* k_data_property = "korvexNoCaption";

// A caption without its mnemonic marks ("&&" is a plain "&").
QString plain_caption(const QString& text) {
    QString out;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == QLatin1Char('&') && i + 1 < text.size()) ++i;
        out += text[i];
    }
    return out;
}

// A caption with words; a colour ("#FF8000"), a type ("0x2f") or a number is data.
bool has_letters(const QString& text) {
    const QString t = text.trimmed();
    static const QRegularExpression data("^(#[0-9A-Fa-f]{6}|0[xX][0-9A-Fa-f]+)$");
    if (data.match(t).hasMatch()) return false;
    for (const QChar c : t)
        if (c.isLetter()) return true;
    return false;
}

QString english_of(const QObject* control, const QString& shown) {
    const QVariant v = control->property(k_english_property);
    return v.isValid() ? v.toString() : shown;
}

// Sets one control's caption from its English text.
void translate_control(QObject* control, const QString& shown, const integration::Messages& msgs,
                       const std::function<void(const QString&)>& set) {
    if (control->property(k_key_property).isValid() || control->property(k_data_property).toBool()) return;
    // A caption the program changed since (to English again) is the new English one.
    const QVariant known = control->property(k_english_property);
    if (!known.isValid() || (shown != known.toString() && shown != caption_for(known.toString(), msgs))) {
        if (!has_letters(shown)) return;
        control->setProperty(k_english_property, shown);
    }
    const QString english = control->property(k_english_property).toString();
    const QString text = caption_for(english, msgs);
    if (text != shown) set(text);
}

}  // namespace

std::string caption_key(const QString& english) {
    std::string key = "c";
    bool gap = true;
    const QString text = plain_caption(english);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        // A "+" or "-" standing alone is a word ("Zoom +", "Zoom -").
        const bool alone = (i == 0 || text[i - 1].isSpace()) && (i + 1 == text.size() || text[i + 1].isSpace());
        if (alone && (c == QLatin1Char('+') || c == QLatin1Char('-'))) {
            key += c == QLatin1Char('+') ? "_plus" : "_minus";
            gap = true;
        } else if (c.isLetterOrNumber() && c.unicode() < 0x80) {
            if (gap) key += '_';
            key += static_cast<char>(c.toLower().unicode());
            gap = false;
        } else {
            gap = true;
        }
    }
    return key == "c" ? std::string() : key;
}

std::string control_caption_key(const QObject* control) {
    if (control->property(k_data_property).toBool()) return {};
    const QVariant key = control->property(k_key_property);
    if (key.isValid()) return key.toString().toStdString();
    QString shown;
    if (const auto* a = qobject_cast<const QAction*>(control)) shown = a->text();
    else if (const auto* b = qobject_cast<const QAbstractButton*>(control)) shown = b->text();
    else if (const auto* g = qobject_cast<const QGroupBox*>(control)) shown = g->title();
    const QString english = english_of(control, shown);
    return has_letters(english) ? caption_key(english) : std::string();
}

void set_caption_key(QObject* control, const std::string& key) {
    control->setProperty(k_key_property, QString::fromStdString(key));
}

void no_caption(QObject* control) { control->setProperty(k_data_property, true); }

QString caption_for(const QString& english, const integration::Messages& msgs) {
    const std::string given = msgs.caption(caption_key(english));
    return given.empty() ? english : from_message(given);
}

void translate_tree(QWidget* root, const integration::Messages& msgs) {
    if (!root) return;
    QList<QWidget*> widgets = root->findChildren<QWidget*>();
    widgets.prepend(root);
    for (QWidget* w : widgets) {
        for (QAction* a : w->actions()) {
            // A menu's title is its action's text; a menu shown as data (the
            // language menu) keeps its entries.
            if (a->menu() && (a->menu()->property(k_key_property).isValid() ||
                              a->menu()->property(k_data_property).toBool())) {
                continue;
            }
            if (qobject_cast<QMenu*>(w) && w->property(k_data_property).toBool()) continue;
            if (a->isSeparator()) continue;
            translate_control(a, a->text(), msgs, [a](const QString& t) { a->setText(t); });
        }
        if (auto* b = qobject_cast<QAbstractButton*>(w)) {
            const auto* tool = qobject_cast<QToolButton*>(w);
            if (!tool || !tool->defaultAction())
                translate_control(b, b->text(), msgs, [b](const QString& t) { b->setText(t); });
        } else if (auto* g = qobject_cast<QGroupBox*>(w)) {
            translate_control(g, g->title(), msgs, [g](const QString& t) { g->setTitle(t); });
        }
    }
}

void CaptionTable::add(QAction* action, const std::string& key, const QString& builtin) {
    action->setProperty(k_key_property, QString::fromStdString(key));
    entries_.push_back({action, key, builtin});
}

void CaptionTable::add(QMenu* menu, const std::string& key, const QString& builtin) {
    menu->setProperty(k_key_property, QString::fromStdString(key));
    menu->menuAction()->setProperty(k_key_property, QString::fromStdString(key));
    entries_.push_back({menu, key, builtin});
}

void CaptionTable::add(QAbstractButton* button, const std::string& key, const QString& builtin) {
    button->setProperty(k_key_property, QString::fromStdString(key));
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
    no_caption(menu_);
    auto* group = new QActionGroup(menu_);
    for (int n = 0; n < count(); ++n) {
        const QString name = n == 0 ? QStringLiteral("English") : from_message(entries_[n - 1].name);
        QAction* action = menu_->addAction(name);
        action->setCheckable(true);
        action->setData(n);
        no_caption(action);
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
