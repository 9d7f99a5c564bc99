#include "integration/map_typ.h"

#include <filesystem>
#include <memory>

#include "integration/img_replace.h"

namespace korvex::integration {

namespace {

// A TYP's family id.
constexpr size_t k_family_id = 0x2f;

std::string folder_part(const std::string& path) {
    return path.empty() ? std::string() : std::filesystem::path(path).parent_path().string();
}

}  // namespace

ImgTypHolder::ImgTypHolder(std::string map, std::string subfile, platform::Prompt& ui)
    : map_(std::move(map)), subfile_(std::move(subfile)), ui_(ui) {}

std::string ImgTypHolder::label() const { return map_ + ":" + subfile_; }

std::string ImgTypHolder::typ_name() const {
    return (std::filesystem::path(map_).parent_path() / subfile_).string();
}

bool ImgTypHolder::put(std::string& typ, std::string& error) {
    // Read again: the container may have changed since the TYP was opened.
    auto c = read_typ_container(map_, error);
    if (!c) return false;
    const int at = choose_typ(*c, subfile_, error);
    if (at < 0) return false;
    const ImgSubfile& old = c->subfiles[static_cast<size_t>(at)];
    if (old.has_ids && typ.size() > k_family_id + 1) {
        const unsigned fid = static_cast<uint8_t>(typ[k_family_id]) | static_cast<uint8_t>(typ[k_family_id + 1]) << 8;
        if (fid != old.fid) {
            const platform::Answer a = ui_.yes_no_cancel(
                "The TYP's family id (FID) " + std::to_string(fid) + " is not the map's " + std::to_string(old.fid) +
                ": a device uses a TYP only for maps of its family.\r\n\r\nSave it with the map's family id " +
                std::to_string(old.fid) + "?");
            if (a == platform::Answer::cancel) {
                error.clear();
                return false;
            }
            if (a == platform::Answer::yes) {
                typ[k_family_id] = static_cast<char>(old.fid & 0xff);
                typ[k_family_id + 1] = static_cast<char>(old.fid >> 8);
            }
        }
    }
    return replace_subfile(*c, static_cast<size_t>(at), typ, map_, error, platform::real_file_system(),
                           [this](int percent) { ui_.progress(percent); });
}

bool open_map_typ(workbench::Session& session, platform::Prompt& ui, const std::string& map, const TypChoice& choose) {
    std::string error;
    const auto c = read_typ_container(map, error);
    if (!c) {
        ui.message(error);
        return false;
    }
    const std::vector<size_t> at = c->typ_indexes();
    std::vector<ImgSubfile> typs;
    for (size_t i : at) typs.push_back(c->subfiles[i]);
    int pick = 0;
    if (typs.size() > 1) {
        pick = choose(map, typs);
        if (pick < 0 || pick >= static_cast<int>(typs.size())) return false;
    }
    const ImgSubfile& chosen = typs[static_cast<size_t>(pick)];
    std::string bytes;
    if (!read_subfile(*c, at[static_cast<size_t>(pick)], bytes, error)) {
        ui.message(error);
        return false;
    }
    return session.open_held_typ(std::make_unique<ImgTypHolder>(map, chosen.full_name(), ui), std::move(bytes));
}

bool open_typ_in_map(workbench::Session& session, platform::Prompt& ui, platform::FileDialog& dialogs,
                     workbench::AppSettings& settings, const TypChoice& choose) {
    if (!session.ready_to_open()) return false;
    const std::string map =
        dialogs.open_file("Open TYP in Map", {"Map files (*.img)"}, folder_part(settings.last_typ_path));
    if (map.empty() || map.find('*') != std::string::npos) return false;
    return open_map_typ(session, ui, map, choose);
}

}  // namespace korvex::integration
