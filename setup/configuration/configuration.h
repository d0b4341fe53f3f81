// The whole configuration: its settings and job lists, how they are loaded, made anew and saved, and what a new UPS
// model changes of them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "setup/settings/settings.h"

extern const char *const kConfigurationFile;  // the one file that every session works on
extern int32_t create_new_cfg;  // 1 when the program started without a configuration; read by init_new_config_vals

// Every setting and every job list once, in the order in which a new file has them, the extra jobs after the paths.
std::span<const Setting *const> all_settings();
// The setting of a key, whatever the case of its letters; null when there is none.
const Setting *setting_of_key(std::string_view key);

// The field tables of all masks. Before anything else here.
void init_all_tabs();
// All records from the configuration `file`, missing keys from the defaults: 1, or 0 (records untouched) when it can't
// be opened.
int init_config_vals(const char *file);
// The same from the open profile, whose lines are noted; 0, settings untouched, when memory runs out.
int load_configuration();
// All records to the defaults of a new file; 1.
int init_new_config_vals();

// The values of all settings in their order, as the file holds them. A missing key has its default, a missing job list
// and a key that is only written "". values_of_file: 1, or 0 (`values` untouched) when the file can't be read.
// default_values: of a new configuration, but for the paths. Neither touches the records.
[[nodiscard]] int values_of_file(const char *file, std::vector<std::string> &values);
std::vector<std::string> default_values();

// Writes all sections into `file`, which is created when it is missing, in one replacement: the whole new configuration
// or the whole old one. A setting that another program changed meanwhile, and this session did not, keeps the file's
// value. 1, or 0 when a section (the others are written all the same) or the file could not be written.
int save_configuration(const char *file);
// Its parts: opens a profile for a `file` that is not there yet, which begins as a new configuration does, 1 or 0; and
// writes all sections into the open profile, false when one was refused.
int create_profile(const char *file);
bool write_all_sections();
// Why a save failed with this errno, in the present language.
std::string failure_reason(int error);
// What the person should know of the last save, when the screen is gone: why it failed, what others changed. The same
// reason beforehand: why `file` could not be saved now, "" when nothing is known.
const std::vector<std::string> &save_report();
std::string obstacle_to_saving(const char *file);

// Makes `name`, a model of UpsTypeArr, the chosen one, with everything that depends on it: line settings, ratings, the
// job lists of the events, and a password where the model needs one.
void choose_model(const char *name);
// The job lists of all events to the defaults, after the model has become `name`.
void reset_job_lists(const char *name);
