#include "setup/check/shutdown.h"

#include <algorithm>
#include <string_view>

#include "setup/settings/settings.h"

namespace {

bool is_yes(int field) {
  char text[256];
  return std::string_view(text_in(field_of_mask(kMaskSystem, field), text)).starts_with("yes");
}

// The battery holds the full load for the minutes that are set, a smaller one for longer.
double holding_time() {
  const double share = StdRec.load > 0 ? static_cast<double>(StdRec.power) / StdRec.load : 1;
  return StdRec.hold_minutes * std::max(share, 1.0);
}

}  // namespace

ShutdownPlan shutdown_plan() {
  ShutdownPlan plan = {};
  plan.happens = may_shut_down();
  plan.is_fixed = is_yes(kUpTimeSupport);
  plan.ups_stops = is_yes(kUpsShutdown);
  plan.empty = holding_time();
  const double delay = plan.ups_stops ? CustomRec.ups_shutdown_delay : 0;
  const double needed = CustomRec.shutdown_minutes + delay;
  plan.begins = plan.is_fixed ? CustomRec.fixed_down_time : std::max(plan.empty - needed, 0.0);
  plan.ends = plan.begins + CustomRec.shutdown_minutes;
  plan.ups_off = plan.begins + needed;
  return plan;
}
