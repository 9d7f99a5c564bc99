// File access the logic needs. Writes never destroy: the bytes go to a
// temporary file beside the target, which is flushed and renamed over it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/file_system.h"

namespace korvex::platform {

bool file_exists(const std::string& path);

// The whole file, or nothing when it cannot be read.
std::optional<std::string> read_file(const std::string& path, std::string* error = nullptr);

// Writes data atomically: every save of a user's file goes through here or
// AtomicWriter. On failure the old file is untouched, no temporary file is
// left, and error names the reason ("No space left on device").
bool write_file_atomic(const std::string& path, std::string_view data, std::string* error = nullptr,
                       FileSystem& fs = real_file_system());

// Streams a file atomically: write pieces, then commit; destroying an
// uncommitted writer removes the temporary file.
class AtomicWriter {
public:
    explicit AtomicWriter(std::string path, FileSystem& fs = real_file_system());
    ~AtomicWriter();
    AtomicWriter(const AtomicWriter&) = delete;
    AtomicWriter& operator=(const AtomicWriter&) = delete;

    bool ok() const { return fd_ >= 0 && error_.empty(); }
    const std::string& error() const { return error_; }  // the reason alone
    void write(std::string_view data);
    // n zero bytes, left as a hole where the file system keeps them (a
    // device gets them written).
    void skip(uint64_t n);
    bool commit();

private:
    void fail(int err);
    FileSystem& fs_;
    std::string path_;
    std::string tmp_;
    int fd_ = -1;
    bool direct_ = false;
    uint64_t pos_ = 0;
    bool ends_in_hole_ = false;
    std::string error_;
};

}  // namespace korvex::platform
