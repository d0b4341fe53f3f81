#include "setup/jobs/job_fields.h"

#include <cstring>

#include "setup/jobs/email_job.h"
#include "setup/jobs/job_language.h"
#include "util/numbers.h"
#include "util/text.h"

namespace {

constexpr int32_t kMonitorDelay = 5940;  // s, the longest delay that the monitor takes

bool is_event_id_field(int function, int field) { return function == kSyslogFunction && field == 1; }

int check_delay(const char *text) {
  if (std::strcmp(text, "default") == 0) return 1;
  if (std::strspn(text, "0123456789 ") != std::strlen(text)) return 0;
  const int32_t delay = to_int32(text);
  if (delay > kLongestDelay) return 0;
  if (delay > kMonitorDelay) put_mask_text(kShutdownFunction, 0, std::to_string(kMonitorDelay).c_str());
  return 1;
}

int check_port(const char *text) {
  const int32_t port = to_int32(text);
  return *text == '\0' || (port >= 1 && port <= kLastPort);
}

// The fields that must hold something: the first one and these.
bool may_not_be_empty(int function, int field) {
  return field == 0 || (function == kMessageIdFunction && field == 1) || (function == kSyslogFunction && field == 2);
}

}  // namespace

int label_field(int function) { return job_mask(function).count - 2; }
int number_field(int function) { return job_mask(function).count - 1; }

RecordField mask_field(int function, int field) {
  const JobMask &mask = job_mask(function);
  return {mask.record, mask.fields, field};
}

void put_mask_text(int function, int field, const char *text) {
  const RecordField place = mask_field(function, field);
  put_field(place.record, place.table, field, text);
}

std::string mask_text(int function, int field) {
  char text[256];
  return stripstr(text_in(mask_field(function, field), text));
}

int func_value_check(const JobRec &job, int field) {
  const int function = job.function;
  const std::string text = mask_text(function, field);
  if (may_not_be_empty(function, field) && text.empty()) return 0;
  if (function == kShutdownFunction && field == 0) return check_delay(text.c_str());
  if (function == kNimbroFunction && field == 1) return check_port(text.c_str());
  return 1;
}

void load_function_values(const JobRec &job, int event) {
  const JobMask &mask = job_mask(job.function);
  if (job.function == kEmailFunction) {
    parseEmailFuncStr(job, event);
    return;
  }
  for (int field = 0; field < job.param_count; ++field) put_mask_text(job.function, field, job.params[field].value);
  std::memcpy(Func8Rec.event_id, " 100", sizeof Func8Rec.event_id);
  char label[kTimingLabelSize], number[kTimingNumberSize];
  int state = kFieldReadOnly;
  get_repeat_value(job.timing, label, number, &state, event);
  put_mask_text(job.function, label_field(job.function), label);
  put_mask_text(job.function, number_field(job.function), number);
  mask.fields[number_field(job.function)].type = static_cast<uint8_t>(state);
}

int save_function_values(JobRec &job, int event) {
  const int function = job.function;
  for (int field = 0; field < job.param_count; ++field) {
    if (may_not_be_empty(function, field) && !func_value_check(job, field)) return 0;
  }
  char label[256];
  text_in(mask_field(function, label_field(function)), label);
  const std::string number = mask_text(function, number_field(function));
  if (!set_repeat_value(job.timing, label, number.c_str(), event)) return 0;
  for (int field = 0; field < job.param_count; ++field) {
    const std::string value = is_event_id_field(function, field) ? "100" : mask_text(function, field);
    cpynstr(job.params[field].value, value);
  }
  return 1;
}
