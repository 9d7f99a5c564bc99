// The numbers of the messages the workbench shows, by name: one list, so that
// a number has the same name in every file that shows it.
#pragma once

namespace korvex::workbench {

enum MessageId : int {
    m_save_changes = 2,
    m_no_data = 3,
    m_not_found = 14,
    m_enter_fid = 15,
    m_enter_pid = 16,
    m_valid_codepage = 19,
    m_valid_fid = 20,
    m_fid_too_big = 21,
    m_valid_pid = 22,
    m_file_exists = 24,
    m_replace = 25,
    m_no_draworder = 37,
    m_reload_to_undo = 55,
    m_bitmap_sizes = 63,
    m_continue = 72,
    m_colours = 79,
    m_type_exists = 93,
    m_invalid_type = 95,
    m_subtypes = 96,
    m_not_replaced = 122,
    m_no_subtype_levels = 133,
    m_invalid_draworder = 134,
    m_no_level_at_0x100 = 135,
    m_ctrl_select = 149,
    m_are_you_sure = 171,
    m_enable_logs = 172,
    m_no_log = 173,
    m_changed_type = 178,
    m_to = 187,
    m_default_activities = 198,
    m_has_draworder = 210,
    m_replace_placeholder = 211,
    m_no_number = 219,
    m_none_found = 224,
    m_extra_not_text = 228,
    m_typ_reload = 236,
    m_labels_may_convert = 237,
    m_save_typ_first = 255,
    m_save_utf8_or_change = 256,
    m_click_apply = 257,
    m_sort_after_import = 268,
    m_cannot_find = 269,
    m_please_select = 270,
    m_select_hint = 274,
};

}  // namespace korvex::workbench
