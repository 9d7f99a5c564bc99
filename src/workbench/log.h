// The activity log: one line an event, in the data folder's "logs", written
// only while logging is on.
#pragma once

#include <string>

#include "platform/clock.h"

namespace korvex::workbench {

struct LogOptions {
    bool on = false;     // the log option is 1
    bool daily = false;  // one file a day instead of the main file
};

// "korvexlog.txt", the main file, in data_folder/logs.
std::string main_log_path(const std::string& data_folder);

// The file the next line goes to: the day's "dd-mm-yy.txt" or the main file.
std::string log_path(const std::string& data_folder, const LogOptions& o, const platform::Stamp& now);

// "polygon", "line", "point" for classes 0, 1, 2; "" for any other.
std::string class_word(int cls);

// The line: text, class word, " :", time "hh:mm:ss".
std::string log_text(int cls, const std::string& text, const platform::Stamp& now);

// Appends log_text to the log file when logging is on; nothing otherwise.
// False only when the line could not be written.
bool log_line(const std::string& data_folder, const LogOptions& o, const platform::Stamp& now, int cls,
              const std::string& text);

// The start line: 20 "-", the date "dd-mm-yy", 20 "-".
std::string log_header(const platform::Stamp& now);

}  // namespace korvex::workbench
