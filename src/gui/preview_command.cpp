#include "gui/preview_command.h"

#include <QGuiApplication>
#include <algorithm>
#include <cstdio>
#include <cstring>

#include "gui/preview_painter.h"
#include "gui/preview_scenes.h"
#include "gui/qt_prompt.h"
#include "model/store.h"
#include "platform/files.h"
#include "platform/prompt.h"
#include "preview/draw_list.h"
#include "text/file_kind.h"
#include "text/load_driver.h"
#include "text/maptk_project.h"
#include "typ/decoder.h"
#include "workbench/load_options.h"

namespace korvex::gui {

namespace {

constexpr int k_render_ok = 0;
constexpr int k_render_failed = 1;
constexpr int k_render_usage = 2;

const char* const k_render_usage_text =
    "usage: korvex --render-preview FILE [--scene town|sampler|SCENE.txt] [--night] [--zoom N] -o OUT.png\n";

// A picture of more than this many pixels a side is cut: a sampler of tens
// of thousands of elements would need gigabytes.
constexpr int k_max_side = 16384;

int fail(const std::string& why, int status) {
    std::fprintf(stderr, "korvex: %s\n", why.c_str());
    return status;
}

void print_lines(const char* tag, const std::string& text) {
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty()) std::fprintf(stderr, "%s: %s\n", tag, line.c_str());
        start = end + 1;
    }
}

}  // namespace

bool load_preview_project(model::Store& s, platform::Prompt& ui, const std::string& path, std::string* error) {
    if (!platform::file_exists(path)) {
        *error = path + " doesn't exist";
        return false;
    }
    if (!workbench::chkldop(s, ui)) {
        *error = "the load options load nothing";
        return false;
    }
    std::string why;
    auto data = platform::read_file(path, &why);
    if (!data) {
        *error = "cannot read " + path + ": " + why;
        return false;
    }
    const text::FileKind kind = text::file_kind(*data, path);
    if (why = text::unreadable_reason(*data, kind); !why.empty()) {
        *error = path + ": " + why;
        return false;
    }
    if (kind == text::FileKind::prj)
        text::load_prj_data(s, ui, path, *data);
    else if (kind == text::FileKind::text)
        text::load_txt(s, ui, path, std::move(*data), false, false);
    else
        typ::open_typ_bytes(s, ui, std::move(*data), path);
    return true;
}

bool wants_render_preview(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], k_render_preview_flag) == 0) return true;
    return false;
}

RenderArgs parse_render_args(const std::vector<std::string>& args) {
    RenderArgs r;
    auto fail = [&r](const std::string& why) {
        r.error = why;
        return r;
    };
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        const bool has_value = i + 1 < args.size();
        if (a == k_render_preview_flag) {
            if (!has_value) return fail("--render-preview needs a TYP, text or project file");
            r.input = args[++i];
        } else if (a == "--scene") {
            if (!has_value) return fail("--scene needs town, sampler or a scene file");
            r.scene = args[++i];
        } else if (a == "--night") {
            r.night = true;
        } else if (a == "--zoom") {
            if (!has_value) return fail("--zoom needs 1, 2 or 3");
            const std::string& z = args[++i];
            if (z != "1" && z != "2" && z != "3") return fail("--zoom needs 1, 2 or 3, not " + z);
            r.zoom = z[0] - '0';
        } else if (a == "-o" || a == "--output") {
            if (!has_value) return fail(a + " needs the PNG file to write");
            r.output = args[++i];
        } else {
            return fail("unknown argument " + a);
        }
    }
    if (r.input.empty()) return fail("--render-preview needs a TYP, text or project file");
    if (r.output.empty()) return fail("-o needs the PNG file to write");
    return r;
}

int run_render_preview(int argc, char** argv) {
    const RenderArgs a = parse_render_args(std::vector<std::string>(argv + 1, argv + argc));
    if (!a.error.empty()) {
        std::fprintf(stderr, "korvex: %s\n%s", a.error.c_str(), k_render_usage_text);
        return k_render_usage;
    }
    // Painting text needs the fonts of a GUI application, never a display:
    // a platform set for the window (xcb without an X server) would stop it.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    return render_preview(a);
}

int render_preview(const RenderArgs& a) {
    model::Store s;
    platform::ConsolePrompt ui(platform::Answer::no);
    std::string error;
    if (!load_preview_project(s, ui, a.input, &error)) return fail(error, k_render_failed);
    print_lines("report", s.loadrep);
    s.loadrep.clear();

    const SceneChoice choice = a.scene == "town"      ? SceneChoice::town
                               : a.scene == "sampler" ? SceneChoice::sampler
                                                      : SceneChoice::file;
    const preview::SceneRead scene = load_preview_scene(choice, a.scene, s);
    for (const std::string& line : scene.report) std::fprintf(stderr, "scene: %s\n", line.c_str());
    if (scene.scene.features.empty() && !scene.report.empty()) return fail("no scene to draw", k_render_failed);

    preview::DrawOptions options;
    options.night = a.night;
    options.language = s.opt.langid;
    options.zoom = a.zoom;
    preview::DrawList list = preview::build_draw_list(s, scene.scene, options);
    print_lines("report", s.loadrep);
    for (const std::string& note : list.notes()) std::fprintf(stderr, "note: %s\n", note.c_str());
    if (list.width > k_max_side || list.height > k_max_side) {
        std::fprintf(stderr, "note: the scene is cut to %d pixels a side\n", k_max_side);
        list.width = std::min<double>(list.width, k_max_side);
        list.height = std::min<double>(list.height, k_max_side);
    }
    const QImage img = render_preview_image(PreparedPreview(std::move(list)));
    if (!img.save(from_path(a.output), "PNG")) return fail("cannot write " + a.output, k_render_failed);
    return k_render_ok;
}

}  // namespace korvex::gui
