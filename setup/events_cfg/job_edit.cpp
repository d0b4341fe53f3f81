#include "setup/events_cfg/job_edit.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <span>
#include <string>

#include "corbix/xconfig.h"
#include "screen/draw.h"
#include "screen/menu.h"
#include "setup/events_cfg/texts.h"
#include "setup/forms/forms.h"
#include "setup/forms/texts.h"
#include "setup/jobs/email_job.h"
#include "setup/jobs/event_table.h"
#include "setup/jobs/job_fields.h"
#include "setup/jobs/job_language.h"
#include "util/text.h"

namespace {

// The job in the mask: the context of the mask's procedures.
struct EditedJob {
  const JobRec &job;
  int event;
};
const EditedJob &edited_job(const void *context) { return *static_cast<const EditedJob *>(context); }

bool is_attach_field(int function, int field) { return function == kEmailFunction && field >= 2 && field <= 5; }
bool is_level_field(int function, int field) { return function == kSyslogFunction && field == 0; }

// --- frame

void draw_hint(WINDOW *win, int32_t attr, const FieldDescriptor &field) {
  const FrameLabel hint = {field.row, field.col + field.length + 2, list_hint_label};
  draw_frame_label(win, attr, hint);
}

bool has_list(const void *context, int field) {
  const auto &[job, event] = edited_job(context);
  const int function = job.function;
  if (field == label_field(function)) return !is_shutdown_with_sched(event);
  return is_attach_field(function, field) || is_level_field(function, field);
}

void draw_func_frame(const void *context, WINDOW *win, int32_t attr) {
  const auto &[job, event] = edited_job(context);
  const JobMask &mask = job_mask(job.function);
  const FieldDescriptor &label = mask.fields[label_field(job.function)];
  const FieldDescriptor &number = mask.fields[number_field(job.function)];
  const char *const title[2] = {job.title, job.title};
  const FrameLabel labels[] = {
      {1, kInTheMiddle, title},
      {3, 2, funcframe_label01},
      {label.row - 1, 2, funcframe_label03},
      {number.row, number.col + number.length + 2,
       is_shutdown_with_sched(event) ? funcframe_label05 : funcframe_label04},
  };
  for (const FrameLabel &text : labels) draw_frame_label(win, attr, text);
  for (int field = 0; field < mask.count; ++field) {
    if (has_list(context, field)) draw_hint(win, attr, mask.fields[field]);
    if (field < job.param_count && !is_skip_field(mask.fields[field].type))
      wprintv_cut(win, job.params[field].desc.name, attr, mask.fields[field].row, 2, mask.fields[field].col - 3);
  }
}

// --- help, checks, lists

void show_event_hlp_txt(const void *context, WINDOW *win, int field) {
  const auto &[job, event] = edited_job(context);
  const bool scheduled = is_shutdown_with_sched(event);
  if (field == label_field(job.function)) {
    const char *text = scheduled ? scheduler_timing_help_label[language] : timing_help_label[language];
    draw_hlp_screen(win, text, timer_help_title[language], kAttrHelp);
  } else if (field == number_field(job.function)) {
    const char *text = scheduled ? scheduler_time_help_label[language] : repeat_time_help_label[language];
    draw_hlp_screen(win, text, timer_help_title[language], kAttrHelp);
  } else {
    const ParamDesc &parameter = job.params[field].desc;
    std::string text = parameter.help;
    add_entry(text, parameter.example);
    draw_hlp_screen(win, text.c_str(), parameter_help_title[language], kAttrHelp);
  }
}

bool check_field(const void *context, int field) { return func_value_check(edited_job(context).job, field) != 0; }

// A timing brings a fresh number along; those without one close its field.
void fill_rep_time(WINDOW *win, int function, int timing) {
  enum { kOnce, kAlways, kPeriodic };
  const bool numberless = timing == kOnce || timing == kAlways;
  // kept: the blank after the periodic one's number stands in the field until it is edited
  const char *number = numberless ? "0" : timing == kPeriodic ? "60 " : "60";
  job_mask(function).fields[number_field(function)].type = numberless ? kFieldReadOnly : kFieldDigits;
  put_mask_text(function, label_field(function), funcframe_label02[timing][language]);
  put_mask_text(function, number_field(function), number);
  const JobMask &mask = job_mask(function);
  show_field(win, mask.record, mask.fields, label_field(function), attr_dkl);
  show_field(win, mask.record, mask.fields, number_field(function), attr_dkl);
}

// A list of labels as wide as its title plus one; the place of the choice from 1, else none of them.
int choose_label(WINDOW *win, int row, const char *title, std::span<const Label> labels) {
  return DoMenu(win, row, 2, lenstr(title) + 1, attr_dkl, kAttrHighlight, title, join(labels).c_str(), "|",
                kSingleLine);
}

void pick_timing(WINDOW *win, int function) {
  const int choice = choose_label(win, 10, funcframe_label03[language], funcframe_label02);
  if (choice > kMenuNotShown) fill_rep_time(win, function, choice - 1);
}

void syslog_level_box(WINDOW *win) {
  const int choice = choose_label(win, 7, syslog_list_title[language], funcframe_label07);
  if (choice > kMenuNotShown) fill_syslog_level(win, choice - 1);
}

void ask_attachment(WINDOW *win, int field) {
  const int col = language == 1 ? 46 : 45;  // kept: one column further in Japanese, as users know it
  fill_attach_rec(win, yes_no_menu(win, 10, col, attach_questions[field - 2][language]), field);
}

void pick(const void *context, WINDOW *win, int field) {
  const int function = edited_job(context).job.function;
  if (field == label_field(function)) {
    pick_timing(win, function);
  } else if (is_level_field(function, field)) {
    syslog_level_box(win);
  } else {
    ask_attachment(win, field);
  }
}

// --- values

// Tells what the field may hold.
void show_event_value_error(const void *context, WINDOW *win, int field) {
  const int function = edited_job(context).job.function;
  char text[256];
  cpynstr(text, empty_field_label[language]);
  const bool delay = function == kShutdownFunction && field == 0;
  const bool port = function == kNimbroFunction && field == 1;
  if ((delay || port) && !mask_text(function, field).empty()) {
    std::snprintf(text, sizeof text, value_error_label[language], delay ? 0L : 1L,
                  static_cast<long>(delay ? kLongestDelay : kLastPort));
  }
  draw_hlp_screen_at(win, 9, text, value_error_title[language], kAttrHelp);
}

// The event's jobs as they will be with the edited job, stored as `text`, among them.
std::vector<std::string> jobs_with(const EditedJob &edited, const std::string &text) {
  std::vector<std::string> jobs = split_joblist(CStrArr_GetStr(&EventStrings, edited.event));
  size_t place = 0;
  while (place < jobs.size() && ActEvent[place].get() != &edited.job) ++place;
  jobs.resize(std::max(jobs.size(), place + 1));
  jobs[place] = text.substr(0, text.find(';'));
  put_shutdown_last(jobs);
  return jobs;
}

bool reads_back(const JobRec &job, const std::string &text, int event) {
  const auto read = std::make_unique<JobRec>();
  parse_job(text.substr(0, text.find(';')).c_str(), event, *read);
  if (job.function == kEmailFunction) return is_same_email(job, *read);
  for (int k = 0; k < job.param_count; ++k) {
    if (std::string_view(job.params[k].value) != read->params[k].value) return false;
  }
  return true;
}

// What would not come back of the job in the mask, or of its list, which the file holds as one value.
const char *loss_notice(const EditedJob &edited) {
  const auto job = std::make_unique<JobRec>(edited.job);
  std::string text;
  if (!save_function_values(*job, edited.event)) return nullptr;
  if (!build_func_string(*job, text)) return job_too_long_label[language];
  const std::vector<std::string> jobs = jobs_with(edited, text);
  const std::string list = join_joblist(jobs);
  if (jobs.size() > kMaxJobs || split_joblist(list.c_str()).size() < jobs.size()) return list_full_label[language];
  if (!reads_back(*job, text, edited.event)) return fault_notice(ProfileFault::too_long);
  return fault_notice(XSurvives(kTmpTopic, event_key(edited.event), list));
}

const char *job_notice(const void *context) { return notice_or_standing(loss_notice(edited_job(context))); }

Mask make_mask(const EditedJob &edited) {
  const JobMask &mask = job_mask(edited.job.function);
  return {.rows = 17,
          .columns = 76,
          .row = 6,
          .column = 2,
          .record = mask.record,
          .fields = mask.fields,
          .count = mask.count,
          .rules = kFinishKeys | kPickStays | kCheckEveryKey | kRefuseAtEnd,
          .context = &edited,
          .draw_more = draw_func_frame,
          .notice = job_notice,
          .has_list = has_list,
          .pick = pick,
          .check = check_field,
          .show_error = show_event_value_error,
          .show_help = show_event_hlp_txt};
}

}  // namespace

int edit_function_values(WINDOW *, int32_t attr, JobRec &job, int event) {
  load_function_values(job, event);
  ask_standing_notice();
  const EmailRec looked_at = Func3Rec;
  const EditedJob edited = {job, event};
  if (!run_mask(make_mask(edited), attr)) return 0;
  // the arguments of an e-mail job would not come out of the mask as they went in
  const bool unchanged = job.function == kEmailFunction && std::memcmp(&looked_at, &Func3Rec, sizeof looked_at) == 0;
  return !unchanged && save_function_values(job, event);
}

void fill_syslog_level(WINDOW *win, int level) {
  put_mask_text(kSyslogFunction, 0, funcframe_label07[level][language]);
  show_field(win, &Func8Rec, Function8TabArr, 0, attr_dkl);
}

void fill_attach_rec(WINDOW *win, int choice, int field) {
  fill_yes_no(win, mask_field(kEmailFunction, field), choice);
}
