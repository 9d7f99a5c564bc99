// The few file-system calls a save makes. Saving goes through this interface
// so that tests can make any one of them fail the way a full disk, a pulled
// stick or a read-only folder does.
#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace korvex::platform {

// Every call returns 0 or the errno value of its failure.
class FileSystem {
public:
    virtual ~FileSystem() = default;
    // True when the path names something that is not a regular file (a
    // device or a pipe), which is written in place rather than replaced.
    virtual bool is_device(const std::string& path) = 0;
    virtual int open_in_place(const std::string& path, int& fd) = 0;
    // Creates a new file beside target with a unique name, stored in tmp, and
    // gives it the permissions target has (or those of a new file).
    virtual int create_temp(const std::string& target, std::string& tmp, int& fd) = 0;
    // Writes some of data; written says how much.
    virtual int write(int fd, std::string_view data, size_t& written) = 0;
    // Moves the write position n bytes on: what lies between reads as zeros
    // and takes no room where the file system keeps holes.
    virtual int skip(int fd, uint64_t n) = 0;
    // Sets the file's length (a file that ends in skipped bytes needs it).
    virtual int resize(int fd, uint64_t size) = 0;
    virtual int sync(int fd) = 0;
    virtual int close(int fd) = 0;
    // Puts from in the place of to, replacing it.
    virtual int replace(const std::string& from, const std::string& to) = 0;
    virtual int remove(const std::string& path) = 0;
};

// The operating system's calls.
class RealFileSystem : public FileSystem {
public:
    bool is_device(const std::string& path) override;
    int open_in_place(const std::string& path, int& fd) override;
    int create_temp(const std::string& target, std::string& tmp, int& fd) override;
    int write(int fd, std::string_view data, size_t& written) override;
    int skip(int fd, uint64_t n) override;
    int resize(int fd, uint64_t size) override;
    int sync(int fd) override;
    int close(int fd) override;
    int replace(const std::string& from, const std::string& to) override;
    int remove(const std::string& path) override;
};

// The real file system. It holds no state, so one instance serves every save.
FileSystem& real_file_system();

// For tests: the real calls, with the chosen one failing. A failing write
// first accepts write_budget bytes of the file, as a disk that fills up does.
class FaultyFileSystem : public RealFileSystem {
public:
    enum class Op { none, create, write, sync, close, replace };
    FaultyFileSystem(Op op, int error, size_t write_budget = 0)
        : op_(op), error_(error), budget_(write_budget) {}

    int create_temp(const std::string& target, std::string& tmp, int& fd) override;
    int write(int fd, std::string_view data, size_t& written) override;
    int sync(int fd) override;
    int close(int fd) override;
    int replace(const std::string& from, const std::string& to) override;

private:
    Op op_;
    int error_;
    size_t budget_;
};

}  // namespace korvex::platform
