#include "setup/events_cfg/event_table.h"

#include <cstring>
#include <string>

#include "corbix/xconfig.h"
#include "setup/cfgmask/settings.h"
#include "util/text.h"
#include "util/trace.h"

CStrArr EventStrings;
int DbEventListCnt = 0;
char event_ups_name[31] = "";

namespace {

constexpr int kReadMode = 1;
constexpr int kWriteMode = 2;
constexpr int kListBuffer = 2048;

}  // namespace

std::string event_key(int event) { return "Event" + std::to_string(event); }

void init_cstr_array() {
  CStrArr_Empty(&EventStrings);
  CStrArr_Init(&EventStrings);
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

int init_event_strings(const char *cfg_path) {
  if (!XOpenProfile(cfg_path, kReadMode)) return 0;
  init_cstr_array();
  for (int event = 0; event < kEventCount; ++event) {
    char jobs[kListBuffer] = "";
    XGetPrivateProfileString(kTmpTopic, event_key(event).c_str(), jobs, kListBuffer);
    if (!CStrArr_Add(&EventStrings, jobs)) break;
    ++DbEventListCnt;
  }
  cpynstr(event_ups_name, get_act_ups());
  XCloseProfile();
  return DbEventListCnt;
}

int save_new_event_cfg(const char *cfg_path) {
  if (!XOpenProfile(cfg_path, kWriteMode)) return 0;
  for (int event = 0; event < EventStrings.nCount; ++event) {
    const char *jobs = CStrArr_GetStr(&EventStrings, event);
    const bool empty = *jobs == '\0';
    if (empty && debugLevel > kTraceResults) myfprintf("saving empty Event %d\n", event);
    const int written = XSetPrivateProfileString(kTmpTopic, event_key(event).c_str(), jobs, cfg_path);
    // kept: no close here, what was set so far is not written by this call
    if (!written && !empty) return 0;
  }
  return XCloseProfile() ? EventStrings.nCount : 0;
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
