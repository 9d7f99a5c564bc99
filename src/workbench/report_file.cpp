#include "workbench/report_file.h"

#include "platform/files.h"
#include "workbench/data_folder.h"

namespace korvex::workbench {

std::string show_report(platform::Prompt& ui, const std::string& data_folder, const std::string& relative,
                        const std::string& title, const std::string& text) {
    std::string path = under(data_folder, relative);
    if (!platform::write_file_atomic(path, text)) path.clear();
    ui.report(title, text);
    return path;
}

}  // namespace korvex::workbench
