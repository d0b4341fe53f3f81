#include "setup/check/faults.h"

#include "record/fields.h"
#include "setup/check/job_faults.h"
#include "setup/check/texts.h"
#include "setup/settings/checks.h"
#include "setup/settings/models.h"
#include "setup/settings/settings.h"
#include "util/numbers.h"

namespace {

// The model, the cable and the answers yes and no are chosen, not typed.
std::string typing_fault(const Setting &setting, const std::string &typed) {
  const RecordField place = field_of(setting);
  const bool is_chosen = setting.kind == Kind::model || setting.kind == Kind::cable || setting.kind == Kind::yes_no;
  return place.record == nullptr || is_chosen ? "" : fault_of_text(place.table[place.field], typed);
}

std::string yes_no_fault(const Setting &setting, const std::string &value) {
  if (value != "yes" && value != "no") return yes_or_no_label[language];
  const bool follows = setting.mask == kMaskSystem && follows_shutdown(setting.field);
  return follows && value == "yes" && !may_shut_down() ? shutdown_label[language] : "";
}

std::string model_fault(const Setting &setting, const std::string &value) {
  if (value == setting.fallback) return no_model_label[language];
  const bool is_known = get_ups_list_id(UpsTypeArr, value.c_str()) != get_max_ups_list(UpsTypeArr);
  return is_known ? "" : filled(model_unknown_label, {upstypname});
}

std::string choice_fault(const Setting &setting, const std::string &value) {
  switch (setting.kind) {
    case Kind::yes_no:
      return yes_no_fault(setting, value);
    case Kind::model:
      return model_fault(setting, value);
    case Kind::cable:
      return text_of_field(setting) == kTableEnd ? cable_label[language] : "";
    default:
      return "";
  }
}

std::string range_fault(const Setting &setting, const std::string &value) {
  if (!has_range(setting)) return "";
  const int32_t units = units_in_file(setting.unit);
  const int32_t smallest = setting.min * units;
  const int32_t largest = setting.max * units;
  const int32_t number = to_int32(value.c_str());
  const bool inside = setting.kind == Kind::number ? smallest <= number && number <= largest
                                                   : value_check(setting.field, setting.mask) != 0;
  return inside ? "" : filled(range_label, {std::to_string(smallest), std::to_string(largest)});
}

std::string loss_fault(const Setting &setting, const std::string &typed, const std::string &value) {
  std::string stored;
  if (!value_of(setting, stored)) return "";  // of a follower
  const bool is_erased = setting.in_file.is_kept != nullptr && !setting.in_file.is_kept();
  if (is_erased && !typed.empty()) return mail_label[language];
  const bool is_same = is_same_value(setting, value, stored);
  if (setting.kind == Kind::secret && !(is_same && text_of_field(setting) == typed)) {
    return fault_notice(ProfileFault::too_long);
  }
  if (!is_same) return filled(becomes_label, {stored});
  const char *notice = fault_notice(loss_of(setting));
  return notice == nullptr ? "" : notice;
}

std::string fault_of_value(const Setting &setting, const std::string &typed, const std::string &value) {
  std::string fault = typing_fault(setting, typed);
  if (fault.empty()) fault = choice_fault(setting, value);
  if (fault.empty()) fault = range_fault(setting, value);
  if (fault.empty()) fault = loss_fault(setting, typed, value);
  return fault;
}

}  // namespace

std::vector<std::string> faults_of(const Setting &setting, const std::string &typed, const std::string &value) {
  std::vector<std::string> faults;
  if (setting.kind == Kind::job_list) faults = faults_of_job_list(setting.field, value);
  if (!faults.empty()) return faults;
  const std::string fault = fault_of_value(setting, typed, value);
  if (!fault.empty()) faults.push_back(fault);
  return faults;
}

std::string fault_of_text(const FieldDescriptor &field, std::string_view text) {
  const bool is_number = is_number_field(field.type);
  // of those that can't be typed into, the filter of their kind counts
  const int filter = !is_read_only_field(field.type) ? field.type : is_number ? kFieldNumber : kFieldText;
  for (size_t i = 0; i < text.size(); ++i) {
    if (!accepts_character(filter, static_cast<int>(i), static_cast<unsigned char>(text[i]))) {
      return filled(character_label, {std::to_string(i + 1)});
    }
  }
  if (is_number || text.size() <= field.length) return "";
  return filled(too_long_label, {std::to_string(field.length)});
}
