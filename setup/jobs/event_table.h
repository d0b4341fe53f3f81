// The job lists of the 25 events while the tool runs: their defaults, and how they are read and saved.
#pragma once

#include <span>
#include <string>

#include "setup/jobs/texts.h"
#include "setup/settings/setting.h"
#include "upstools/cfg_obj.h"

// One job list for each event, index = event number. Written by the functions below and by the job editor; read by
// both.
extern CStrArr EventStrings;
// Its length; 0: not filled yet, the editor's next start takes the defaults.
extern int DbEventListCnt;
// The model (its first 30 characters) that the lists are for; written when lists are read and when the editor starts.
extern char event_ups_name[31];

// The lists as settings, by event, with the keys "Event0" to "Event24"; and one of the keys.
std::span<const Setting> job_list_settings();
const char *event_key(int event);

// 1 for the event (20) whose jobs run before a scheduled shutdown, else 0.
int is_shutdown_with_sched(int code);

// Makes EventStrings an empty array, whatever it held before.
void init_cstr_array();

// Puts the default lists of the current language in the place of all lists, for every model the same. Returns the
// number of lists (25; fewer when memory runs out) and stores it in DbEventListCnt.
int fill_event_strings(const char *ups_type);

// Reads the lists from the keys Event0 to Event24; a missing key gives an empty list. Remembers the current model.
// Returns the number of lists, which is also stored in DbEventListCnt; or 0, nothing changed, when the file can't be
// opened or memory runs out.
int init_event_strings(const char *cfg_path);
// Its parts: the lists from the file's texts as noted, with the same results; and the present model as theirs.
int load_event_strings();
void remember_lists_model();

// Writes the lists, empty ones too (which removes their keys). Returns the number of lists dealt with; or 0 when one
// that is not empty was refused, the profile then stays open, or when the file could not be written.
[[nodiscard]] int save_new_event_cfg(const char *cfg_path);
// The same into the open profile, which stays open.
[[nodiscard]] int write_event_lists();

// What the editor does when it starts: for another model than before, and when there are no lists yet, all lists become
// the defaults. Returns DbEventListCnt.
int reset_lists_for_model(const char *ups_type);

// Gives `event` the list `jobs`. 1, or 0 when memory runs out: the old list then stays.
[[nodiscard]] int store_event_jobs(int event, const char *jobs);
