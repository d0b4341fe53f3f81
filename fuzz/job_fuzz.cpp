// Job lists as a configuration may hold them: through parsing, the menu line, building, and every change of a list.
// Jobs that are not edited must stay as they are.
#include "fuzz/fuzz.h"
#include "setup/jobs/event_table.h"
#include "setup/jobs/job_fields.h"
#include "setup/jobs/job_language.h"
#include "util/tokens.h"

namespace {

std::string list_of(int event) { return CStrArr_GetStr(&EventStrings, event); }

// Shows a job in its line, takes it through its mask, and writes it.
void take_job(JobRec &job, int event) {
  char line[kJobLineLength + 1];
  job_line(job, line);
  expect(line[0] != '\0' && std::string_view(line).find('|') == std::string_view::npos);
  if (job.function >= 0) {
    load_function_values(job, event);
    save_function_values(job, event);
  }
  std::string text;
  if (!build_func_string(job, text)) return;
  expect(text.ends_with(';') && (job.function >= 0 || text == std::string(job.text) + ';'));
}

void change_list(int event, int job) {
  const std::string before = list_of(event);
  std::string text;
  if (!build_func_string(*ActEvent[job], text)) return;
  expect(replace_event_function(event, job, ActEvent[job]->text) == 1);
  expect(list_of(event) == before);
  expect(replace_event_function(event, job, text) == 1);
  expect(del_event_function(event, job) == 1 || list_of(event).empty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (size < 2) return 0;
  const int event = data[0] % kEventCount;
  if (language != (data[1] & 1)) {
    language = data[1] & 1;
    DbFuncListCnt = 0;
  }
  if (EventStrings.nCount == 0) {
    init_function_tab();
    fill_event_strings("");
  }
  const std::string list(data + 2, data + size);
  expect(store_event_jobs(event, list.c_str()) == 1);
  const int written = tail_shutdown_function(event);
  const int count = parse_joblist("", event);
  expect(count == written && list_of(event).size() <= kMaxListText);
  if (count > 0) change_list(event, data[1] / 2 % count);
  for (int job = 0; job < count; ++job) take_job(*ActEvent[job], event);
  return 0;
}
