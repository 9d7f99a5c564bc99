#include "platform/file_system.h"

#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

#ifdef _WIN32
// The few POSIX calls used below, on the C runtime of Windows. rename does
// not replace an existing file there, so replace uses MoveFileEx.
#include <io.h>
#include <windows.h>
// MinGW's headers declare these two already; only MSVC lacks them.
#ifdef _MSC_VER
using ssize_t = int;
using mode_t = int;
#endif
#ifndef S_ISREG
#define S_ISREG(m) (((m) & _S_IFMT) == _S_IFREG)
#endif
namespace {
using stat_t = struct _stat;
int os_stat(const char* path, stat_t* st) { return _stat(path, st); }
int os_open(const char* path, int flags) { return _open(path, flags | _O_BINARY); }
int os_mkstemp(char* tmpl) {
    if (_mktemp_s(tmpl, std::strlen(tmpl) + 1) != 0) return -1;
    return _open(tmpl, _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY, _S_IREAD | _S_IWRITE);
}
ssize_t os_write(int fd, const char* data, size_t n) { return _write(fd, data, static_cast<unsigned>(n)); }
int os_fsync(int fd) { return _commit(fd); }
int os_skip(int fd, uint64_t n) { return _lseeki64(fd, static_cast<__int64>(n), SEEK_CUR) < 0 ? -1 : 0; }
int os_resize(int fd, uint64_t size) {
    const errno_t e = _chsize_s(fd, static_cast<__int64>(size));
    if (e != 0) errno = e;
    return e == 0 ? 0 : -1;
}
int os_close(int fd) { return _close(fd); }
int os_unlink(const char* path) { return _unlink(path); }
int os_fchmod(int, mode_t) { return 0; }
mode_t os_umask(mode_t) { return 0; }
int replace_file(const char* from, const char* to) {
    if (MoveFileExA(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) return 0;
    errno = EACCES;  // GetLastError has no errno; the usual cause
    return -1;
}
}  // namespace
#else
#include <unistd.h>
namespace {
using stat_t = struct stat;
int os_stat(const char* path, stat_t* st) { return ::stat(path, st); }
int os_open(const char* path, int flags) { return ::open(path, flags); }
int os_mkstemp(char* tmpl) { return ::mkstemp(tmpl); }
ssize_t os_write(int fd, const char* data, size_t n) { return ::write(fd, data, n); }
int os_fsync(int fd) { return ::fsync(fd); }
int os_skip(int fd, uint64_t n) { return ::lseek(fd, static_cast<off_t>(n), SEEK_CUR) < 0 ? -1 : 0; }
int os_resize(int fd, uint64_t size) { return ::ftruncate(fd, static_cast<off_t>(size)); }
int os_close(int fd) { return ::close(fd); }
int os_unlink(const char* path) { return ::unlink(path); }
int os_fchmod(int fd, mode_t mode) { return ::fchmod(fd, mode); }
mode_t os_umask(mode_t mask) { return ::umask(mask); }
// The folder is flushed after the rename, so that a power cut cannot bring
// back the old name's contents; a folder that cannot be opened is no error.
int replace_file(const char* from, const char* to) {
    if (std::rename(from, to) != 0) return -1;
    std::string folder(to);
    const size_t slash = folder.rfind('/');
    folder = slash == std::string::npos ? "." : slash == 0 ? "/" : folder.substr(0, slash);
    const int fd = ::open(folder.c_str(), O_RDONLY);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
    return 0;
}
}  // namespace
#endif

namespace korvex::platform {

bool RealFileSystem::is_device(const std::string& path) {
    stat_t st {};
    return os_stat(path.c_str(), &st) == 0 && !S_ISREG(st.st_mode);
}

int RealFileSystem::open_in_place(const std::string& path, int& fd) {
    fd = os_open(path.c_str(), O_WRONLY | O_TRUNC);
    return fd < 0 ? errno : 0;
}

int RealFileSystem::create_temp(const std::string& target, std::string& tmp, int& fd) {
    tmp = target + ".korvex-XXXXXX";
    fd = os_mkstemp(tmp.data());
    if (fd < 0) {
        const int err = errno;
        tmp.clear();
        return err;
    }
    // mkstemp creates 0600: a replaced file keeps its permissions, a new one
    // gets the usual ones.
    stat_t st {};
    mode_t mode;
    if (os_stat(target.c_str(), &st) == 0) {
        mode = st.st_mode & 07777;
    } else {
        const mode_t mask = os_umask(0);
        os_umask(mask);
        mode = 0666 & ~mask;
    }
    os_fchmod(fd, mode);
    return 0;
}

int RealFileSystem::write(int fd, std::string_view data, size_t& written) {
    written = 0;
    const ssize_t n = os_write(fd, data.data(), data.size());
    if (n < 0) return errno;
    written = static_cast<size_t>(n);
    return 0;
}

int RealFileSystem::skip(int fd, uint64_t n) { return os_skip(fd, n) == 0 ? 0 : errno; }

int RealFileSystem::resize(int fd, uint64_t size) { return os_resize(fd, size) == 0 ? 0 : errno; }

int RealFileSystem::sync(int fd) { return os_fsync(fd) == 0 ? 0 : errno; }

int RealFileSystem::close(int fd) { return os_close(fd) == 0 ? 0 : errno; }

int RealFileSystem::replace(const std::string& from, const std::string& to) {
    return replace_file(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

int RealFileSystem::remove(const std::string& path) { return os_unlink(path.c_str()) == 0 ? 0 : errno; }

FileSystem& real_file_system() {
    static RealFileSystem real;
    return real;
}

int FaultyFileSystem::create_temp(const std::string& target, std::string& tmp, int& fd) {
    if (op_ == Op::create) {
        fd = -1;
        return error_;
    }
    return RealFileSystem::create_temp(target, tmp, fd);
}

int FaultyFileSystem::write(int fd, std::string_view data, size_t& written) {
    if (op_ != Op::write) return RealFileSystem::write(fd, data, written);
    written = 0;
    if (budget_ == 0) return error_;
    const int err = RealFileSystem::write(fd, data.substr(0, budget_), written);
    budget_ -= written;
    return err;
}

int FaultyFileSystem::sync(int fd) { return op_ == Op::sync ? error_ : RealFileSystem::sync(fd); }

int FaultyFileSystem::close(int fd) {
    // The descriptor is released even when the close reports a failure.
    const int err = RealFileSystem::close(fd);
    return op_ == Op::close ? error_ : err;
}

int FaultyFileSystem::replace(const std::string& from, const std::string& to) {
    return op_ == Op::replace ? error_ : RealFileSystem::replace(from, to);
}

}  // namespace korvex::platform
