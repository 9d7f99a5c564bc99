#include "workbench/log.h"

#include <cstdio>
#include <filesystem>
#include <system_error>

#include "platform/native_path.h"
#include "workbench/recent.h"

namespace korvex::workbench {

namespace {

std::string two(int v) {
    std::string t = std::to_string(v % 100);
    return t.size() < 2 ? "0" + t : t;
}

std::string logs_folder(const std::string& data_folder) {
    return data_folder + k_native_separator + "logs";
}

}  // namespace

std::string main_log_path(const std::string& data_folder) {
    return logs_folder(data_folder) + k_native_separator + "korvexlog.txt";
}

std::string log_path(const std::string& data_folder, const LogOptions& o, const platform::Stamp& now) {
    if (!o.daily) return main_log_path(data_folder);
    return logs_folder(data_folder) + k_native_separator + two(now.day) + "-" + two(now.month) + "-" +
           two(now.year) + ".txt";
}

std::string class_word(int cls) {
    switch (cls) {
    case 0: return "polygon";
    case 1: return "line";
    case 2: return "point";
    default: return {};
    }
}

std::string log_text(int cls, const std::string& text, const platform::Stamp& now) {
    return text + class_word(cls) + " :" + two(now.hour) + ":" + two(now.minute) + ":" + two(now.second);
}

bool log_line(const std::string& data_folder, const LogOptions& o, const platform::Stamp& now, int cls,
              const std::string& text) {
    if (!o.on) return true;
    std::error_code ec;
    std::filesystem::create_directories(platform::native_path(logs_folder(data_folder)), ec);
    std::FILE* f = platform::open_file(log_path(data_folder, o, now), "ab");
    if (!f) return false;
    const std::string line = log_text(cls, text, now) + "\r\n";
    const bool ok = std::fwrite(line.data(), 1, line.size(), f) == line.size();
    return std::fclose(f) == 0 && ok;
}

std::string log_header(const platform::Stamp& now) {
    const std::string dashes(20, '-');
    return dashes + two(now.day) + "-" + two(now.month) + "-" + two(now.year) + dashes;
}

}  // namespace korvex::workbench
