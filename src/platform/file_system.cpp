#include "platform/file_system.h"

#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

#ifdef _WIN32
// The few POSIX calls used below, on the C runtime of Windows, with the
// names made wide. rename does not replace an existing file there, so
// replace uses MoveFileEx.
#include <io.h>
#include <windows.h>

#include "platform/native_path.h"
// MinGW's headers declare these two already; only MSVC lacks them.
#ifdef _MSC_VER
using ssize_t = int;
using mode_t = int;
#endif
#ifndef S_ISREG
#define S_ISREG(m) (((m) & _S_IFMT) == _S_IFREG)
#endif
namespace {
using korvex::platform::wide_name;
using stat_t = struct _stat64;
int os_stat(const char* path, stat_t* st) { return _wstat64(wide_name(path).c_str(), st); }
// The C runtime's stat does not see devices such as NUL: the handle's type does.
bool os_is_device(const char* path) {
    const HANDLE h = CreateFileW(wide_name(path).c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                 nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (h == INVALID_HANDLE_VALUE) return false;
    BY_HANDLE_FILE_INFORMATION info {};
    const bool disk = GetFileType(h) == FILE_TYPE_DISK;
    const bool folder = disk && GetFileInformationByHandle(h, &info) && (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY);
    CloseHandle(h);
    return !disk || folder;
}
int os_open(const char* path, int flags) { return _wopen(wide_name(path).c_str(), flags | _O_BINARY); }
// The X's at the end of tmpl become the name's unique part.
int os_mkstemp(char* tmpl) {
    std::wstring wide = wide_name(tmpl);
    if (_wmktemp_s(wide.data(), wide.size() + 1) != 0) return -1;
    const size_t n = std::strlen(tmpl);
    for (size_t k = 1; k <= 6 && k <= n; ++k) tmpl[n - k] = static_cast<char>(wide[wide.size() - k]);
    return _wopen(wide.c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY, _S_IREAD | _S_IWRITE);
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
int os_unlink(const char* path) { return _wunlink(wide_name(path).c_str()); }
int os_fchmod(int, mode_t) { return 0; }
mode_t os_umask(mode_t) { return 0; }
int errno_of_last_error() {
    switch (GetLastError()) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND: return ENOENT;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL: return ENOSPC;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION: return EBUSY;
    default: return EACCES;
    }
}
// The new contents reach the disk before the call returns, as the folder
// flush does on POSIX.
int replace_file(const char* from, const char* to) {
    if (MoveFileExW(wide_name(from).c_str(), wide_name(to).c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return 0;
    errno = errno_of_last_error();
    return -1;
}
}  // namespace
#else
#include <unistd.h>
namespace {
using stat_t = struct stat;
int os_stat(const char* path, stat_t* st) { return ::stat(path, st); }
bool os_is_device(const char* path) {
    stat_t st {};
    return os_stat(path, &st) == 0 && !S_ISREG(st.st_mode);
}
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

bool RealFileSystem::is_device(const std::string& path) { return os_is_device(path.c_str()); }

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
