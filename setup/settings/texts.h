// Texts of the settings: labels, help, what a file can't give back.
#pragma once

#include "util/language.h"

// Labels of the UPS mask in field order; the last one, of the UPS identifier, is not drawn: it has no field.
extern Label stdframe_label01, stdframe_label02, stdframe_label03, stdframe_label04, stdframe_label05, stdframe_label06,
    stdframe_label07, stdframe_label08, stdframe_label09, stdframe_label10, stdframe_label11, stdframe_label12,
    stdframe_label13;

// Labels of the system mask in field order.
extern Label customframe_label01, customframe_label02, customframe_label03, customframe_label04, customframe_label05,
    customframe_label06, customframe_label07, customframe_label08, customframe_label09;

// Labels of the path mask in field order.
extern Label pathframe_label01, pathframe_label02, pathframe_label03, pathframe_label04;

// Labels of the extra-job mask: the switches of the three jobs, delay and path of each.
extern Label specialframe_label01, specialframe_label02, specialframe_label03, specialframe_label04,
    specialframe_label05;

// Labels of the mail mask in field order, and the heading above the last two.
extern Label mailframe_label01, mailframe_label02, mailframe_label03, mailframe_label04, mailframe_label05,
    mailframe_label06, mailframe_label07, mailframe_label08, mailframe_label09;

// Helps of the fields, mask by mask; "|" starts a new line. The last one is for every field without one.
extern Label help_location, help_device, help_logging_rate, help_log_limit, help_caution, help_warning, help_model,
    help_cable, help_power, help_load, help_hold_minutes, help_recharge_hours;
extern Label help_password, help_check_rate, help_shutdown, help_shutdown_minutes, help_ups_shutdown,
    help_ups_shutdown_delay, help_ups_restart, help_fixed_shutdown, help_fixed_down_time;
extern Label help_extra_switch, help_extra_time, help_extra_path;
extern Label help_log_file, help_data_log_file, help_data_logging, help_data_log_size;
extern Label help_mail_subject, help_use_signature, help_signature_file, help_sender, help_smtp_host, help_smtp_enabled,
    help_smtp_user, help_smtp_password;
extern Label help_missing;

// Titles of the helps, by mask.
extern Label std_help_title, custom_help_title, job_help_title, path_help_title, mail_help_title, other_help_title;

// Why a value would not come back from the file.
extern Label fault_bracket_label, fault_blank_label, fault_empty_label, fault_cut_label;
extern Label fault_section_label;  // an empty value keeps the settings after it from being saved
