#include "platform/files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

#ifdef _WIN32
// The few POSIX calls used below, on the C runtime of Windows. rename does
// not replace an existing file there, so commit uses MoveFileEx.
#include <io.h>
#include <windows.h>
#define stat _stat
#define fsync _commit
#define close _close
#define write _write
#define unlink _unlink
#define open _open
using ssize_t = int;
using mode_t = int;
#ifndef S_ISREG
#define S_ISREG(m) (((m) & _S_IFMT) == _S_IFREG)
#endif
namespace {
int mkstemp(char* tmpl) {
    if (_mktemp_s(tmpl, std::strlen(tmpl) + 1) != 0) return -1;
    return _open(tmpl, _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY, _S_IREAD | _S_IWRITE);
}
int fchmod(int, int) { return 0; }
int umask(int) { return 0; }
int replace_file(const char* from, const char* to) {
    return MoveFileExA(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) ? 0 : -1;
}
}  // namespace
#else
#include <unistd.h>
namespace {
int replace_file(const char* from, const char* to) { return std::rename(from, to); }
}  // namespace
#endif

namespace korvex::platform {

bool file_exists(const std::string& path) {
    struct stat st {};
    return !path.empty() && ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

std::optional<std::string> read_file(const std::string& path, std::string* error) {
    std::FILE* f = std::fopen(path.c_str(), "rb");
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

AtomicWriter::AtomicWriter(std::string path) : path_(std::move(path)) {
    // A device or pipe (/dev/null, /dev/stdout) is written in place: renaming
    // a file over it would replace the device itself.
    struct stat st {};
    if (::stat(path_.c_str(), &st) == 0 && !S_ISREG(st.st_mode)) {
        fd_ = ::open(path_.c_str(), O_WRONLY | O_TRUNC);
        if (fd_ < 0) error_ = std::strerror(errno);
        direct_ = true;
        return;
    }
    tmp_ = path_ + ".korvex-XXXXXX";
    fd_ = ::mkstemp(tmp_.data());
    if (fd_ < 0) {
        error_ = std::strerror(errno);
        tmp_.clear();
        return;
    }
    // mkstemp creates 0600; a saved file should get the usual permissions.
    mode_t mask = ::umask(0);
    ::umask(mask);
    ::fchmod(fd_, 0666 & ~mask);
}

AtomicWriter::~AtomicWriter() {
    if (fd_ >= 0) ::close(fd_);
    if (!tmp_.empty()) ::unlink(tmp_.c_str());
}

void AtomicWriter::fail(const std::string& what) {
    if (error_.empty()) error_ = what;
}

void AtomicWriter::write(std::string_view data) {
    if (!ok()) return;
    while (!data.empty()) {
        ssize_t n = ::write(fd_, data.data(), data.size());
        if (n < 0) {
            if (errno == EINTR) continue;
            fail(std::strerror(errno));
            return;
        }
        data.remove_prefix(static_cast<size_t>(n));
    }
}

bool AtomicWriter::commit() {
    if (!ok()) return false;
    if (direct_) {
        const bool closed = ::close(fd_) == 0;
        fd_ = -1;
        if (!closed) fail(std::strerror(errno));
        return closed;
    }
    if (::fsync(fd_) != 0) {
        fail(std::strerror(errno));
        return false;
    }
    if (::close(fd_) != 0) {
        fd_ = -1;
        fail(std::strerror(errno));
        return false;
    }
    fd_ = -1;
    if (replace_file(tmp_.c_str(), path_.c_str()) != 0) {
        fail(std::strerror(errno));
        return false;
    }
    tmp_.clear();
    return true;
}

bool write_file_atomic(const std::string& path, std::string_view data, std::string* error) {
    AtomicWriter w(path);
    w.write(data);
    const bool done = w.commit();
    if (!done && error) *error = w.error();
    return done;
}

}  // namespace korvex::platform
