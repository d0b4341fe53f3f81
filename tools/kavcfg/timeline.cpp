// The command that draws the jobs of an event over time.
#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>

#include "setup/check/shutdown.h"
#include "setup/check/warnings.h"
#include "setup/configuration/configuration.h"
#include "setup/jobs/event_table.h"
#include "setup/jobs/job_language.h"
#include "tools/kavcfg/command.h"
#include "tools/kavcfg/jobs.h"
#include "tools/kavcfg/texts.h"
#include "util/charset.h"

namespace {

// A line: number, deed, timing, and the track on which time runs to the right.
constexpr size_t kNumberWidth = 3;
constexpr size_t kDeedWidth = 23;
constexpr size_t kTimingWidth = 16;
constexpr int kTicks = 6;
constexpr int kColumnsPerTick = 6;
constexpr int kTrackWidth = kTicks * kColumnsPerTick;  // and one more column for the last tick

// What runs and what happens, in seconds; the axis ends some ticks after its start.
struct Axis {
  int32_t start, step;
  [[nodiscard]] int32_t end() const { return start + kTicks * step; }
  [[nodiscard]] int column(double time) const {
    return static_cast<int>(std::lround((time - start) * kColumnsPerTick / step));
  }
};

// Seconds between two ticks, and the unit in which they are told.
struct Step {
  int32_t seconds;
  int32_t unit;
  Label *label;
};
constexpr int32_t kMinute = 60;
constexpr int32_t kHour = 3600;
constexpr std::array<Step, 17> kSteps = {{
    // clang-format off
    {10,         1,       &seconds_label}, {20,         1,       &seconds_label}, {30,          1,       &seconds_label},
    {1 * kMinute,  kMinute, &minutes_label}, {2 * kMinute,  kMinute, &minutes_label}, {5 * kMinute,   kMinute, &minutes_label},
    {10 * kMinute, kMinute, &minutes_label}, {20 * kMinute, kMinute, &minutes_label}, {30 * kMinute,  kMinute, &minutes_label},
    {1 * kHour,    kHour,   &hours_label},   {2 * kHour,    kHour,   &hours_label},   {5 * kHour,     kHour,   &hours_label},
    {10 * kHour,   kHour,   &hours_label},   {20 * kHour,   kHour,   &hours_label},   {50 * kHour,    kHour,   &hours_label},
    {100 * kHour,  kHour,   &hours_label},   {500 * kHour,  kHour,   &hours_label},
    // clang-format on
}};

const Step &step_for(double span) {
  const auto is_enough = [span](const Step &step) { return static_cast<double>(step.seconds) * kTicks >= span; };
  const auto *found = std::ranges::find_if(kSteps, is_enough);
  return found == kSteps.end() ? kSteps.back() : *found;
}

std::string padded(const std::string &text, size_t width) {
  std::string cell(cut_text(text, width - 1));
  cell.resize(width, ' ');
  return cell;
}

void print_row(const std::string &number, const std::string &deed, const std::string &timing,
               const std::string &track) {
  std::string row = padded(number, kNumberWidth) + padded(deed, kDeedWidth) + padded(timing, kTimingWidth) + track;
  row.resize(row.find_last_not_of(' ') + 1);
  print_line(stdout, row);
}

void print_axis(const Axis &axis, const Step &step) {
  std::string numbers;
  std::string ticks = "|";
  for (int tick = 0; tick <= kTicks; ++tick) {
    const std::string number = std::to_string((axis.start + tick * axis.step) / step.unit);
    // the last digit stands above its tick
    const size_t end = kNumberWidth + kDeedWidth + kTimingWidth + static_cast<size_t>(tick * kColumnsPerTick) + 1;
    numbers.resize(std::max(numbers.size(), end - number.size()), ' ');
    numbers += number;
    if (tick < kTicks) ticks += std::string(kColumnsPerTick - 1, '-') + "|";
  }
  const std::string unit = filled(*step.label, {""}).substr(1);
  numbers.replace(kNumberWidth + kDeedWidth, unit.size(), unit);
  print_line(stdout, numbers);
  print_row("", "", "", ticks);
}

// "*" for each run, "." while it waits, "=" where it runs more often than columns can show, ">" when it goes on.
std::string track_of(const JobTimes &times, const Axis &axis, double until) {
  std::string track(kTrackWidth + 1, ' ');
  const auto fill = [&](int from, int to, char sign) {  // the columns before `to`
    for (int column = std::max(from, 0); column < std::min(to, kTrackWidth + 1); ++column) {
      track[static_cast<size_t>(column)] = sign;
    }
  };
  const int first = axis.column(times.first);
  if (times.first > 0) fill(0, first, '.');
  if (times.first > until) return track;
  const bool is_dense = times.every > 0 && times.every * kColumnsPerTick < axis.step;
  if (is_dense) fill(first + 1, axis.column(until) + 1, '=');
  const int64_t end = times.every <= 0 || is_dense ? times.first : std::lround(until);
  for (int64_t time = times.first; time <= end; time += std::max(times.every, 1)) {
    const int column = axis.column(static_cast<double>(time));
    fill(column, column + 1, '*');
  }
  if (times.every > 0 && until >= axis.end()) track.back() = '>';
  return track;
}

// A bar from the start to a moment.
void print_moment(Label &label, double minutes, const Axis &axis, char sign) {
  const int end = std::clamp(axis.column(minutes * kMinute), 0, kTrackWidth);
  const char *tip = minutes * kMinute > axis.end() ? ">" : "|";
  const std::string time = filled(minutes_label, {std::to_string(std::lround(minutes))});
  print_row("", label[language], time, std::string(static_cast<size_t>(end), sign) + tip);
}

void print_power_failure(const ShutdownPlan &plan, const Axis &axis) {
  print_line(stdout, "");
  if (plan.happens) {
    print_moment(shutdown_begins_label, plan.begins, axis, '-');
    print_moment(system_down_label, plan.ends, axis, '-');
    if (plan.ups_stops) print_moment(ups_off_label, plan.ups_off, axis, '-');
  }
  print_moment(battery_empty_label, plan.empty, axis, '#');
  const std::string warning = battery_warning(plan);
  if (!warning.empty()) print_line(stdout, "!  " + warning);
}

// The time that must be seen, in seconds: until the battery is empty, when that is not long after the shutdown.
double span_of_failure(const ShutdownPlan &plan) {
  constexpr double kMostShutdowns = 2;
  const double end =
      plan.happens ? std::max(plan.over(), std::min(plan.empty, kMostShutdowns * plan.over())) : plan.empty;
  return end * kMinute;
}

// The same of other events: each job's first run, and a few of those that follow.
double span_of(const std::vector<JobTimes> &jobs) {
  constexpr double kRepeatsShown = 4;
  double span = kMinute;
  for (const JobTimes &times : jobs) {
    span = std::max({span, std::abs(static_cast<double>(times.first)) + kRepeatsShown * times.every});
  }
  return span;
}

void draw(int event) {
  const int count = parse_joblist("", event);
  std::vector<JobTimes> jobs;
  jobs.reserve(static_cast<size_t>(count));
  for (int i = 0; i < count; ++i) jobs.push_back(job_times(ActEvent[i]->timing, event, CustomRec.check_rate));
  const ShutdownPlan plan = shutdown_plan();
  const bool is_failure = event == kPowerFailEvent;
  const bool is_scheduled = event == kSchedulerEvent;
  const Step &step = step_for(is_failure ? span_of_failure(plan) : span_of(jobs));
  const Axis axis = {is_scheduled ? -kTicks * step.seconds : 0, step.seconds};
  // a system that is down runs nothing
  const double until =
      is_failure ? (plan.happens ? std::min(plan.ends, plan.empty) : plan.empty) * kMinute : axis.end();
  print_axis(axis, step);
  for (size_t i = 0; i < jobs.size(); ++i) {
    const JobRec &job = *ActEvent[i];
    print_row(std::to_string(i + 1), deed_of(job), timing_of(job, event), track_of(jobs[i], axis, until));
  }
  if (is_failure) print_power_failure(plan, axis);
  if (is_scheduled) print_row("", shutdown_begins_label[language], "", std::string(kTrackWidth, '-') + "|");
}

}  // namespace

int timeline(const Arguments &arguments) {
  const int event = known_event(arguments[0]);
  if (event < 0) return kMisused;
  if (!init_config_vals(options.file)) return tell_outcome(Outcome::file_unreadable, errno, options.file);
  print_line(stdout, std::string(event_key(event)) + ": " + eventlist[event].name[language]);
  print_line(stdout, "");
  draw(event);
  free_act_event();
  return kGood;
}
