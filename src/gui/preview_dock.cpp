#include "gui/preview_dock.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>

#include "gui/language_menu.h"
#include "gui/main_window.h"
#include "gui/preview_canvas.h"
#include "gui/qt_prompt.h"
#include "preview/draw_list.h"
#include "workbench/browser.h"

namespace korvex::gui {

namespace {

// The scene box: Town and Sampler, then the user's file once there is one.
constexpr int k_town_entry = 0, k_sampler_entry = 1, k_file_entry = 2;
const char* const k_scene_names[2] = {"Town", "Sampler"};

// Device screens as frames; entry 0 shows none.
const QSize k_frames[3] = {QSize(), QSize(240, 400), QSize(480, 800)};
const char* const k_no_frame = "No Frame";

const char* const k_title = "Map Preview";
constexpr int k_start_width = 420;

}  // namespace

PreviewDock::PreviewDock(MainWindow& w) : QDockWidget(&w), w_(w) {
    setObjectName("map_preview");
    setFeatures(QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    build();
    recaption();
}

void PreviewDock::build() {
    auto* body = new QWidget(this);
    auto* outer = new QVBoxLayout(body);
    outer->setContentsMargins(4, 4, 4, 4);
    auto* bar = new QHBoxLayout;
    scenes_ = new QComboBox(body);
    scenes_->setObjectName("preview_scene");
    scenes_->addItems({k_scene_names[0], k_scene_names[1]});
    night_ = new QCheckBox("Night", body);
    night_->setObjectName("preview_night");
    zooms_ = new QComboBox(body);
    zooms_->setObjectName("preview_zoom");
    zooms_->addItems({"1:1", "2x", "3x"});
    frames_ = new QComboBox(body);
    frames_->setObjectName("preview_frame");
    frames_->addItem(k_no_frame);
    for (int i = 1; i < 3; ++i) frames_->addItem(QString("%1 x %2").arg(k_frames[i].width()).arg(k_frames[i].height()));
    bar->addWidget(scenes_);
    bar->addWidget(night_);
    bar->addWidget(zooms_);
    bar->addWidget(frames_);
    bar->addStretch(1);
    outer->addLayout(bar);

    canvas_ = new PreviewCanvas(body);
    canvas_->setObjectName("preview_canvas");
    outer->addWidget(canvas_, 1);
    info_ = new QLabel(body);
    info_->setObjectName("preview_info");
    info_->setTextFormat(Qt::PlainText);
    outer->addWidget(info_);
    setWidget(body);

    canvas_->set_source([this](const preview::DrawOptions& options) {
        preview::DrawOptions o = options;
        o.language = w_.store().opt.langid;
        return preview::build_draw_list(w_.store(), current_scene(), o);
    });
    connect(scenes_, &QComboBox::activated, this, [this](int index) { scene_picked(index); });
    connect(night_, &QCheckBox::toggled, canvas_, &PreviewCanvas::set_night);
    connect(zooms_, &QComboBox::activated, this, [this](int index) { canvas_->set_zoom(index + 1); });
    connect(canvas_, &PreviewCanvas::zoom_changed, this, [this](int zoom) { zooms_->setCurrentIndex(zoom - 1); });
    connect(frames_, &QComboBox::activated, this, [this](int index) { canvas_->set_frame(k_frames[index]); });
    connect(canvas_, &PreviewCanvas::hovered, this, &PreviewDock::show_info);
    connect(canvas_, &PreviewCanvas::rebuilt, this, [this] { show_info(QString()); });
    connect(canvas_, &PreviewCanvas::element_chosen, this, &PreviewDock::select_element);
    connect(&w_, &MainWindow::tables_changed, this, &PreviewDock::tables_changed);
}

void PreviewDock::recaption() {
    const integration::Messages& msgs = w_.messages();
    setWindowTitle(caption_for(k_title, msgs));
    for (int i = 0; i < 2; ++i) scenes_->setItemText(i, caption_for(k_scene_names[i], msgs));
    frames_->setItemText(0, caption_for(k_no_frame, msgs));
}

void PreviewDock::open() {
    if (!placed_) {
        placed_ = true;
        w_.addDockWidget(Qt::RightDockWidgetArea, this);
        // Wide enough to show a street or two, not only a corner of the map.
        w_.resizeDocks({this}, {std::max(k_start_width, w_.width() * 2 / 5)}, Qt::Horizontal);
    }
    show();
    raise();
}

const preview::Scene& PreviewDock::current_scene() {
    if (choice_ == SceneChoice::sampler) {
        // The sampler is the project itself: made again with every build.
        scene_ = load_preview_scene(choice_, file_, w_.store()).scene;
        scene_report_.clear();
        scene_read_ = false;
        return scene_;
    }
    if (!scene_read_) {
        preview::SceneRead r = load_preview_scene(choice_, file_, w_.store());
        scene_ = std::move(r.scene);
        scene_report_ = std::move(r.report);
        scene_read_ = true;
    }
    return scene_;
}

void PreviewDock::set_scene(SceneChoice choice) {
    choice_ = choice;
    scene_read_ = false;
    scenes_->setCurrentIndex(choice == SceneChoice::town ? k_town_entry
                             : choice == SceneChoice::sampler ? k_sampler_entry
                                                               : k_file_entry);
    canvas_->reset_view();
}

void PreviewDock::scene_picked(int index) {
    set_scene(index == k_town_entry ? SceneChoice::town : index == k_sampler_entry ? SceneChoice::sampler : SceneChoice::file);
}

bool PreviewDock::choose_scene_file() {
    const std::string path = w_.file_dialogs().open_file(
        to_path(caption_for("Open Preview Scene", w_.messages())), {"Preview scenes (*.txt)", "All files (*.*)"},
        file_.empty() ? std::string() : to_path(QFileInfo(from_path(file_)).absolutePath()));
    if (path.empty()) return false;
    return use_scene_file(path);
}

bool PreviewDock::use_scene_file(const std::string& path) {
    preview::SceneRead r = preview::load_scene(path);
    if (r.scene.features.empty()) {
        // Nothing to draw: the scene on show stays.
        std::string text = path + " holds no map features.";
        if (!r.report.empty()) text += "\n" + r.report.front();
        w_.prompt().message(text);
        return false;
    }
    file_ = path;
    const QString name = QFileInfo(from_path(path)).fileName();
    if (scenes_->count() > k_file_entry)
        scenes_->setItemText(k_file_entry, name);
    else
        scenes_->addItem(name);
    set_scene(SceneChoice::file);
    scene_ = std::move(r.scene);
    scene_report_ = std::move(r.report);
    scene_read_ = true;
    open();
    return true;
}

void PreviewDock::tables_changed() {
    // A hidden dock builds when it is shown again.
    canvas_->invalidate();
}

// The element of a double-clicked feature becomes the grid's current one,
// its class brought into view first, as a click on its cell would make it.
void PreviewDock::select_element(int store_class, int row) {
    if (!w_.leave_panel_text()) return;
    if (w_.browser().cls() != store_class) w_.show_class(store_class);
    if (store_class == model::k_extra_points) {
        const int page = (row - w_.store().pt_n) / w_.browser().extra_page_size();
        if (w_.browser().extra_first() != page * w_.browser().extra_page_size()) {
            w_.browser().set_extra_page(page);
            w_.rebuild_grid();
        }
    }
    w_.browser().no_multi();
    w_.show_row(row);
}

void PreviewDock::show_info(const QString& hover) {
    if (!hover.isEmpty()) {
        info_->setText(hover);
        return;
    }
    QStringList lines;
    for (const std::string& note : canvas_->prepared().list().notes()) lines << QString::fromStdString(note);
    if (const size_t n = scene_report_.size(); n > 0)
        lines << QString(n == 1 ? "1 line of the scene was skipped: %2" : "%1 lines of the scene were skipped: %2")
                     .arg(n)
                     .arg(QString::fromStdString(scene_report_.front()));
    info_->setText(lines.join("; "));
}

}  // namespace korvex::gui
