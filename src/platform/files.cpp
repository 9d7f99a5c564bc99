#include "platform/files.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <sys/stat.h>

#include "platform/native_path.h"

#ifdef _WIN32
#ifndef S_ISREG
#define S_ISREG(m) (((m) & _S_IFMT) == _S_IFREG)
#endif
#endif

namespace korvex::platform {

bool file_exists(const std::string& path) {
#ifdef _WIN32
    struct _stat64 st {};
    return !path.empty() && _wstat64(wide_name(path).c_str(), &st) == 0 && S_ISREG(st.st_mode);
#else
    struct stat st {};
    return !path.empty() && ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
#endif
}

std::optional<std::string> read_file(const std::string& path, std::string* error) {
    std::FILE* f = open_file(path, "rb");
    if (!f) {
        if (error) *error = std::strerror(errno);
        return std::nullopt;
    }
    std::string data;
    if (std::fseek(f, 0, SEEK_END) == 0) {
        long len = std::ftell(f);
        if (len > 0) data.reserve(static_cast<size_t>(len));
        std::fseek(f, 0, SEEK_SET);
    }
    char buf[1 << 16];
    size_t got;
    while ((got = std::fread(buf, 1, sizeof buf, f)) > 0) data.append(buf, got);
    const bool bad = std::ferror(f) != 0;
    std::fclose(f);
    if (bad) {
        if (error) *error = "read error";
        return std::nullopt;
    }
    return data;
}

namespace {

// A link is followed to the file it names, so that saving through it
// updates that file instead of replacing the link with a copy.
std::string followed(std::string path) {
    std::error_code ec;
    for (int hops = 0; hops < 40 && std::filesystem::is_symlink(native_path(path), ec); ++hops) {
        const std::filesystem::path p = native_path(path);
        const std::filesystem::path to = std::filesystem::read_symlink(p, ec);
        if (ec) break;
        path = utf8_path((to.is_absolute() ? to : p.parent_path() / to).lexically_normal());
    }
    return path;
}

}  // namespace

AtomicWriter::AtomicWriter(std::string path, FileSystem& fs) : fs_(fs), path_(followed(std::move(path))) {
    // A device or pipe (/dev/null, /dev/stdout) is written in place: renaming
    // a file over it would replace the device itself.
    if (fs_.is_device(path_)) {
        direct_ = true;
        if (const int err = fs_.open_in_place(path_, fd_)) fail(err);
        return;
    }
    if (const int err = fs_.create_temp(path_, tmp_, fd_)) {
        fd_ = -1;
        tmp_.clear();
        fail(err);
    }
}

AtomicWriter::~AtomicWriter() {
    if (fd_ >= 0) fs_.close(fd_);
    if (!tmp_.empty()) fs_.remove(tmp_);
}

void AtomicWriter::fail(int err) {
    if (error_.empty()) error_ = std::strerror(err);
}

void AtomicWriter::write(std::string_view data) {
    if (!ok()) return;
    while (!data.empty()) {
        size_t n = 0;
        const int err = fs_.write(fd_, data, n);
        if (err == EINTR) continue;
        if (err != 0 || n == 0) {
            fail(err != 0 ? err : EIO);
            return;
        }
        data.remove_prefix(n);
        pos_ += n;
        ends_in_hole_ = false;
    }
}

void AtomicWriter::skip(uint64_t n) {
    if (!ok() || n == 0) return;
    if (direct_) {
        static const std::string zeros(1 << 16, '\0');
        while (n > 0 && ok()) {
            const size_t m = static_cast<size_t>(std::min<uint64_t>(n, zeros.size()));
            write(std::string_view(zeros.data(), m));
            n -= m;
        }
        return;
    }
    if (const int err = fs_.skip(fd_, n)) {
        fail(err);
        return;
    }
    pos_ += n;
    ends_in_hole_ = true;
}

bool AtomicWriter::commit() {
    if (!ok()) return false;
    if (ends_in_hole_) {
        if (const int err = fs_.resize(fd_, pos_)) {
            fail(err);
            return false;
        }
    }
    if (!direct_) {
        if (const int err = fs_.sync(fd_)) {
            fail(err);
            return false;
        }
    }
    // A failed close may be the first news of a write the disk refused.
    const int closed = fs_.close(fd_);
    fd_ = -1;
    if (closed != 0) {
        fail(closed);
        return false;
    }
    if (direct_) return true;
    if (const int err = fs_.replace(tmp_, path_)) {
        fail(err);
        return false;
    }
    tmp_.clear();
    return true;
}

bool write_file_atomic(const std::string& path, std::string_view data, std::string* error, FileSystem& fs) {
    AtomicWriter w(path, fs);
    w.write(data);
    const bool done = w.commit();
    if (!done && error) *error = w.error();
    return done;
}

}  // namespace korvex::platform
