// Puts new bytes in the place of one subfile of a map container. The
// container is written anew, streaming: header and table rewritten for the
// new block numbers, every other subfile copied byte for byte, each subfile
// in whole blocks after the one before it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "integration/img_container.h"
#include "platform/file_system.h"

namespace korvex::integration {

// Where everything lies in the rewritten container.
struct ImgLayout {
    uint32_t block_size = 0;
    uint32_t block_count = 0;          // blocks the data ends at
    std::string head;                  // decoded header and table, whole blocks
    std::vector<std::vector<uint16_t>> blocks;  // new block numbers, per subfile
};

// The layout after subfile index takes new_size bytes. The block size grows
// only when the blocks would not be numbered otherwise; nullopt (and error)
// when even the largest block size cannot hold the data.
std::optional<ImgLayout> plan_replace(const ImgContainer& c, size_t index, uint32_t new_size, std::string& error);

// How far a rewrite is, in percent of the bytes to write.
using ImgProgress = std::function<void(int percent)>;

// Writes c with subfile index holding bytes to out_path (c.path for in
// place), atomically: on failure nothing is written and error says why.
bool replace_subfile(const ImgContainer& c, size_t index, std::string_view bytes, const std::string& out_path,
                     std::string& error, platform::FileSystem& fs = platform::real_file_system(),
                     const ImgProgress& progress = {});

// Reads the container at path, finds the TYP subfile (name "" for the only
// one; a container of several needs a name) and replaces it.
bool replace_typ(const std::string& path, const std::string& name, std::string_view typ, const std::string& out_path,
                 std::string& error, platform::FileSystem& fs = platform::real_file_system());

// The TYP to replace: by name, or the only one. -1 and error otherwise.
int choose_typ(const ImgContainer& c, const std::string& name, std::string& error);

}  // namespace korvex::integration
