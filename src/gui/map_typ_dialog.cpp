#include "gui/map_typ_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "gui/main_window.h"
#include "gui/qt_prompt.h"
#include "integration/map_typ.h"

namespace korvex::gui {

namespace {

QString map_caption(const integration::Messages& msgs, const char* key, const char* english) {
    const std::string c = msgs.caption(key);
    return from_message(c.empty() ? std::string(english) : c);
}

}  // namespace

MapTypDialog::MapTypDialog(const integration::Messages& msgs, const std::string& map,
                           const std::vector<integration::ImgSubfile>& typs, QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(map_caption(msgs, "mmaptyptitle", "TYP files in the map"));
    auto* layout = new QVBoxLayout(this);
    auto* where = new QLabel(QString::fromStdString(map), this);
    where->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(where);
    list_ = new QListWidget(this);
    QFont fixed("Monospace");
    fixed.setStyleHint(QFont::TypeWriter);
    list_->setFont(fixed);
    for (const auto& t : typs) list_->addItem(QString::fromStdString(integration::subfile_line(t)));
    list_->setCurrentRow(0);
    layout->addWidget(list_);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    open_ = new QPushButton(map_caption(msgs, "mmaptypopen", "Open"), this);
    open_->setDefault(true);
    auto* cancel = new QPushButton(map_caption(msgs, "mmaptypcancel", "Cancel"), this);
    buttons->addWidget(open_);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);
    connect(open_, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(list_, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
    resize(520, 260);
}

int MapTypDialog::chosen() const { return list_->currentRow(); }

namespace {

integration::TypChoice chooser(MainWindow& w, const std::function<int(QDialog&)>& exec) {
    return [&w, exec](const std::string& map, const std::vector<integration::ImgSubfile>& typs) {
        MapTypDialog d(w.messages(), map, typs, &w);
        const int result = exec ? exec(d) : d.exec();
        return result == QDialog::Accepted ? d.chosen() : -1;
    };
}

}  // namespace

bool open_typ_in_map(MainWindow& w, const std::function<int(QDialog&)>& exec) {
    return integration::open_typ_in_map(w.session(), w.prompt(), w.file_dialogs(), w.settings(), chooser(w, exec));
}

bool open_map_file(MainWindow& w, const std::string& map, const std::function<int(QDialog&)>& exec) {
    return integration::open_map_typ(w.session(), w.prompt(), map, chooser(w, exec));
}

}  // namespace korvex::gui
