#include "gui/label_panel.h"

#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>

#include "editor/label_panel.h"
#include "editor/palette_file.h"
#include "gui/colour_dialog.h"
#include "gui/preferences_dialog.h"
#include "gui/qt_colour.h"
#include "gui/qt_prompt.h"

namespace korvex::gui {

namespace {

void paint_button(QPushButton* b, uint32_t c) {
    const QColor fg = editor::chktxt4(editor::hex6(c)) ? Qt::white : Qt::black;
    b->setStyleSheet(QString("background:%1; color:%2").arg(qcolour(c).name(), fg.name()));
    b->setText(QString::fromStdString("#" + editor::hex6(c)));
}

}  // namespace

LabelPanel::LabelPanel(editor::EditorSession& e, platform::Prompt& ui, int file_codepage, QWidget* parent)
    : QWidget(parent), e_(e), ui_(ui), file_codepage_(file_codepage) {
    auto* form = new QFormLayout(this);
    form->setContentsMargins(0, 0, 0, 0);
    auto* lang_row = new QHBoxLayout;
    languages_ = new QComboBox;
    new_language_ = new QComboBox;
    new_language_->setObjectName("new_language");
    for (const char* name : label_languages()) new_language_->addItem(name);
    new_language_->setCurrentIndex(4);
    auto* add = new QPushButton("Add");
    add->setToolTip("Add a label in the language beside");
    lang_row->addWidget(languages_, 1);
    auto* paste = new QPushButton("Pasted UTF-8");
    paste->setToolTip("Paste the clipboard's text as this language's label");
    lang_row->addWidget(paste);
    auto* add_row = new QHBoxLayout;
    add_row->addWidget(new_language_, 1);
    add_row->addWidget(add);
    connect(paste, &QPushButton::clicked, this, [this] {
        const int slot = e_.labels.curlang;
        const int lang = slot >= 0 && static_cast<size_t>(slot) < e_.labels.labels.size() ? e_.labels.labels[static_cast<size_t>(slot)].language : 0;
        const QByteArray clip = QGuiApplication::clipboard()->text().toUtf8();
        std::string bytes;
        if (!editor::mut8(std::string(clip.constData(), static_cast<size_t>(clip.size())), file_codepage_, lang,
                          languages_->currentText().toStdString(), ui_, bytes))
            return;
        text_->insertPlainText(from_codepage(bytes, codepage_of(slot)));
    });
    form->addRow("Language", lang_row);
    form->addRow("New", add_row);
    text_ = new QPlainTextEdit;
    text_->setMinimumHeight(44);
    text_->setMaximumHeight(60);
    text_->setTabChangesFocus(true);
    form->addRow("Label", text_);
    style_ = new QComboBox;
    for (const std::string& s : editor::font_styles()) style_->addItem(QString::fromStdString(s));
    if (e_.labels.fontstyle_index == 5) style_->addItem(QString::fromStdString(e_.labels.fontstyle));
    form->addRow("Font style", style_);
    extended_ = new QCheckBox("Extended Labels");
    colours_ = new QCheckBox("Font Colours");
    auto* ticks = new QHBoxLayout;
    ticks->addWidget(extended_);
    ticks->addWidget(colours_);
    form->addRow(ticks);
    day_ = new QPushButton;
    night_ = new QPushButton;
    day_->setObjectName("fntcol_day");
    night_->setObjectName("fntcol_night");
    for (QPushButton* b : {day_, night_})
        b->setToolTip("Takes the colour picked in the chooser palette; with none picked there, the colour dialog's");
    auto* cols = new QHBoxLayout;
    cols->addWidget(new QLabel("Day"));
    cols->addWidget(day_);
    cols->addWidget(new QLabel("Night"));
    cols->addWidget(night_);
    form->addRow(cols);
    sample_ = new QLabel;
    sample_->setMinimumHeight(28);
    sample_->setAlignment(Qt::AlignCenter);
    sample_->setFrameShape(QFrame::StyledPanel);
    sample_->setAutoFillBackground(true);
    form->addRow("Sample", sample_);

    filling_ = true;
    extended_->setChecked(e_.labels.extendedlabels);
    colours_->setChecked(e_.labels.fontcolours);
    style_->setCurrentIndex(std::max(0, e_.labels.fontstyle_index));
    paint_button(day_, e_.labels.daylabelcolour);
    paint_button(night_, e_.labels.nightlabelcolour);
    filling_ = false;
    fill_languages();
    show_slot(e_.labels.labels.empty() ? -1 : 0);

    connect(languages_, &QComboBox::currentIndexChanged, this, [this](int i) {
        if (filling_) return;
        store_shown();
        e_.labelchanged = false;
        show_slot(i);
    });
    connect(add, &QPushButton::clicked, this, [this] {
        store_shown();
        e_.labelchanged = false;
        e_.labels.labels.push_back({0, new_language_->currentIndex(), ""});
        e_.changes2 |= editor::ch_language;
        fill_languages();
        languages_->setCurrentIndex(languages_->count() - 1);
        emit changed();
    });
    connect(text_, &QPlainTextEdit::textChanged, this, [this] {
        if (filling_) return;
        if (e_.labels.labels.empty()) e_.labels.labels.push_back({1, 0, ""});
        e_.labelchanged = true;
        store_shown();
        refresh_sample();
        emit changed();
    });
    connect(style_, &QComboBox::currentIndexChanged, this, [this](int i) {
        if (filling_) return;
        e_.labels.fontstyle_index = i;
        e_.changes1 |= editor::ch_font;
        refresh_sample();
        emit changed();
    });
    connect(extended_, &QCheckBox::toggled, this, [this](bool on) {
        if (filling_) return;
        editor::set_extended_labels(e_, on);
        filling_ = true;
        style_->setCurrentIndex(std::max(0, e_.labels.fontstyle_index));
        colours_->setChecked(e_.labels.fontcolours);
        filling_ = false;
        refresh_sample();
        emit changed();
    });
    connect(colours_, &QCheckBox::toggled, this, [this](bool on) {
        if (filling_) return;
        const bool now = editor::set_font_colours(e_, on, ui_);
        if (now != on) {
            filling_ = true;
            colours_->setChecked(now);
            filling_ = false;
        }
        refresh_sample();
        emit changed();
    });
    connect(day_, &QPushButton::clicked, this, [this] { pick_colour(false); });
    connect(night_, &QPushButton::clicked, this, [this] { pick_colour(true); });
    refresh_sample();
}

int LabelPanel::codepage_of(int slot) const {
    if (slot < 0 || static_cast<size_t>(slot) >= e_.labels.labels.size()) return file_codepage_;
    return editor::language_codepage(e_.labels.labels[static_cast<size_t>(slot)].language, file_codepage_);
}

void LabelPanel::fill_languages() {
    filling_ = true;
    languages_->clear();
    for (const editor::LabelSlot& l : e_.labels.labels)
        languages_->addItem(l.language >= 0 && l.language < k_label_languages ? QString(label_languages()[static_cast<size_t>(l.language)])
                                                                              : QString("0x%1").arg(l.language, 2, 16, QChar('0')));
    filling_ = false;
}

void LabelPanel::show_slot(int slot) {
    filling_ = true;
    if (slot >= 0 && static_cast<size_t>(slot) < e_.labels.labels.size()) {
        e_.labels.curlang = slot;
        e_.labels.labelcodepage = codepage_of(slot);
        // The box wraps long lines itself; only "|" is a line end.
        std::string box = e_.labels.labels[static_cast<size_t>(slot)].text;
        std::replace(box.begin(), box.end(), '|', '\n');
        text_->setPlainText(from_codepage(box, e_.labels.labelcodepage));
        languages_->setCurrentIndex(slot);
    } else {
        text_->clear();
    }
    filling_ = false;
    refresh_sample();
}

void LabelPanel::store_shown() {
    // Converting back to the code page turns what it cannot show into "?":
    // only an edited label goes through it.
    if (!e_.labelchanged) return;
    editor::store_label(e_, to_codepage(text_->toPlainText(), codepage_of(e_.labels.curlang)));
}

void LabelPanel::refresh_sample() {
    static const int sizes[] = {9, 9, 7, 9, 12, 9};
    QFont f = sample_->font();
    f.setPointSize(sizes[std::clamp(e_.labels.fontstyle_index, 0, 5)]);
    sample_->setFont(f);
    const bool hidden = e_.labels.extendedlabels && e_.labels.fontstyle_index == 1;
    QString t = text_->toPlainText();
    t.replace('\n', ' ');
    sample_->setText(hidden ? QString() : t);
    QPalette pal = sample_->palette();
    pal.setColor(QPalette::WindowText, e_.labels.fontcolours ? qcolour(e_.labels.daylabelcolour) : QColor(Qt::black));
    sample_->setPalette(pal);
    day_->setEnabled(e_.labels.fontcolours);
    night_->setEnabled(e_.labels.fontcolours);
}

void LabelPanel::pick_colour(bool night) {
    const auto dialog = [this](uint32_t c) { return pick_ ? pick_(c) : cmcolor(c, ui_, this); };
    if (!editor::set_label_colour(e_, night, blocked_ && blocked_(), chooser_ ? chooser_() : std::nullopt, dialog)) return;
    paint_button(night ? night_ : day_, night ? e_.labels.nightlabelcolour : e_.labels.daylabelcolour);
    refresh_sample();
    emit changed();
}

}  // namespace korvex::gui
