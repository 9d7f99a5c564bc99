// The code pages through iconv: a page number n is iconv's "CPn". Compiled
// off Windows only; there this file is empty.
#ifndef _WIN32

#include <cerrno>
#include <iconv.h>

#include "platform/codepage.h"
#include "platform/codepage_system.h"

namespace korvex::platform {

namespace {

constexpr char32_t k_iconv_replacement = 0xFFFD;

class Iconv {
public:
    Iconv(const std::string& to, const std::string& from) : h_(iconv_open(to.c_str(), from.c_str())) {}
    ~Iconv() {
        if (ok()) iconv_close(h_);
    }
    Iconv(const Iconv&) = delete;
    Iconv& operator=(const Iconv&) = delete;
    bool ok() const { return h_ != reinterpret_cast<iconv_t>(-1); }
    iconv_t get() const { return h_; }

private:
    iconv_t h_;
};

}  // namespace

std::optional<std::u32string> system_bytes_to_wide(const std::string& bytes, int cp) {
    Iconv cd("UTF-32LE", iconv_name(cp));
    if (!cd.ok()) return std::nullopt;
    std::u32string out;
    std::string in = bytes;
    char* ip = in.data();
    size_t il = in.size();
    char32_t buf[256];
    while (il > 0) {
        char* op = reinterpret_cast<char*>(buf);
        size_t ol = sizeof buf;
        size_t r = iconv(cd.get(), &ip, &il, &op, &ol);
        out.append(buf, static_cast<size_t>(reinterpret_cast<char32_t*>(op) - buf));
        if (r == static_cast<size_t>(-1)) {
            if (errno == E2BIG) continue;
            // EILSEQ or EINVAL: one bad byte becomes one replacement.
            out += k_iconv_replacement;
            ++ip;
            --il;
            iconv(cd.get(), nullptr, nullptr, nullptr, nullptr);
        }
    }
    // Pages that compose (1255, 1258) hold back the last character in case a
    // combining mark follows: it comes out only when asked for.
    char* op = reinterpret_cast<char*>(buf);
    size_t ol = sizeof buf;
    iconv(cd.get(), nullptr, nullptr, &op, &ol);
    out.append(buf, static_cast<size_t>(reinterpret_cast<char32_t*>(op) - buf));
    return out;
}

std::optional<std::string> system_wide_to_bytes(const std::u32string& text, int cp) {
    Iconv cd(iconv_name(cp), "UTF-32LE");
    if (!cd.ok()) return std::nullopt;
    std::string out;
    char buf[512];
    for (char32_t c : text) {
        char32_t one = c;
        char* ip = reinterpret_cast<char*>(&one);
        size_t il = sizeof one;
        char* op = buf;
        size_t ol = sizeof buf;
        size_t r = iconv(cd.get(), &ip, &il, &op, &ol);
        if (r == static_cast<size_t>(-1)) {
            iconv(cd.get(), nullptr, nullptr, nullptr, nullptr);
            out += '?';
            continue;
        }
        out.append(buf, static_cast<size_t>(op - buf));
    }
    // Flush any shift state of stateful pages.
    char* op = buf;
    size_t ol = sizeof buf;
    iconv(cd.get(), nullptr, nullptr, &op, &ol);
    out.append(buf, static_cast<size_t>(op - buf));
    return out;
}

}  // namespace korvex::platform

#endif
