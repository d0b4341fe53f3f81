#include "setup/jobs/event_table.h"

#include <array>
#include <cstring>
#include <string>
#include <tuple>

#include "corbix/xconfig.h"
#include "setup/settings/models.h"
#include "setup/settings/settings.h"
#include "util/text.h"
#include "util/trace.h"

CStrArr EventStrings;
int DbEventListCnt = 0;
char event_ups_name[31] = "";

namespace {

constexpr const char *kKeys[kEventCount] = {
    "Event0",  "Event1",  "Event2",  "Event3",  "Event4",  "Event5",  "Event6",  "Event7",  "Event8",
    "Event9",  "Event10", "Event11", "Event12", "Event13", "Event14", "Event15", "Event16", "Event17",
    "Event18", "Event19", "Event20", "Event21", "Event22", "Event23", "Event24",
};

void take_list(const Setting &setting, const char *value, bool) {
  std::ignore = store_event_jobs(setting.field, value);  // without memory the old list stays
}
bool list_value(const Setting &setting, std::string &value) {
  if (setting.field >= EventStrings.nCount) return false;  // memory did not suffice for it
  value = CStrArr_GetStr(&EventStrings, setting.field);
  return true;
}

constexpr auto kJobLists = [] {
  std::array<Setting, kEventCount> settings = {};
  for (int event = 0; event < kEventCount; ++event) {
    settings[static_cast<size_t>(event)] = {.key = kKeys[event],
                                            .kind = Kind::job_list,
                                            .fallback = "",
                                            .read = 0,
                                            .field = event,
                                            .min = 0,
                                            .max = 0,
                                            .unit = Unit::none,
                                            .in_file = {.take = take_list, .value_of = list_value}};
  }
  return settings;
}();

}  // namespace

std::span<const Setting> job_list_settings() { return kJobLists; }
const char *event_key(int event) { return kJobLists[static_cast<size_t>(event)].key; }

int is_shutdown_with_sched(int code) { return code == kSchedulerEvent; }

void init_cstr_array() {
  CStrArr_Empty(&EventStrings);
  DbEventListCnt = 0;
}

int fill_event_strings(const char * /*ups_type*/) {
  init_cstr_array();
  for (const EventTexts *event = eventlist; event->name[0][0] != '\0'; ++event) {
    if (!CStrArr_Add(&EventStrings, event->jobs[language])) break;
    ++DbEventListCnt;
  }
  return DbEventListCnt;
}

int load_event_strings() {
  CStrArr lists = {};
  for (const Setting &setting : kJobLists) {
    const std::string *text = text_in_file(setting);
    if (CStrArr_Add(&lists, text == nullptr ? "" : text->c_str())) continue;
    CStrArr_Empty(&lists);
    return 0;
  }
  CStrArr_Empty(&EventStrings);
  EventStrings = lists;
  DbEventListCnt = EventStrings.nCount;
  return DbEventListCnt;
}

void remember_lists_model() { cpynstr(event_ups_name, get_act_ups()); }

int init_event_strings(const char *cfg_path) {
  if (!XOpenProfile(cfg_path, kReadText)) return 0;
  note_file();
  const int lists = load_event_strings();
  if (lists > 0) remember_lists_model();
  XCloseProfile();
  return lists;
}

int write_event_lists() {
  for (int event = 0; event < EventStrings.nCount; ++event) {
    if (is_left_to_file(kJobLists[static_cast<size_t>(event)])) continue;
    const char *jobs = CStrArr_GetStr(&EventStrings, event);
    const bool empty = *jobs == '\0';
    if (empty && debugLevel > kTraceResults) myfprintf("saving empty Event %d\n", event);
    if (XSetPrivateProfileString(kTmpTopic, event_key(event), jobs, "") || empty) continue;
    set_refused_key(event_key(event));
    return 0;
  }
  return EventStrings.nCount;
}

int save_new_event_cfg(const char *cfg_path) {
  if (!XOpenProfile(cfg_path, kWriteText)) return 0;
  const int lists = write_event_lists();
  // kept: a refused list leaves the profile open, what was set so far is not written by this call
  return lists > 0 && XCloseProfile() ? lists : 0;
}

int reset_lists_for_model(const char *ups_type) {
  if (std::strncmp(ups_type, event_ups_name, sizeof(event_ups_name) - 1) != 0) {
    cpynstr(event_ups_name, ups_type);
    DbEventListCnt = 0;
  }
  return DbEventListCnt == 0 ? fill_event_strings(ups_type) : DbEventListCnt;
}

int store_event_jobs(int event, const char *jobs) {
  CStrArr_GetStr(&EventStrings, event);  // there is such an event
  CStr list = {};
  if (!CStr_Add(&list, jobs)) return 0;
  CStr_Empty(&EventStrings.Arr[event]);
  EventStrings.Arr[event] = list;
  return 1;
}
