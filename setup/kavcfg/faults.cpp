#include "setup/kavcfg/faults.h"

#include "corbix/xconfig.h"
#include "setup/cfgmask/checks.h"
#include "setup/cfgmask/masks.h"
#include "setup/cfgmask/settings.h"
#include "setup/kavcfg/jobs.h"
#include "setup/kavcfg/texts.h"
#include "setup/mail/mail.h"
#include "setup/options.h"
#include "util/numbers.h"

namespace {

constexpr std::string_view kCableKey = "UpsCable";
constexpr std::string_view kEmptyValue = " ";  // what the writers put for a text that must not be empty

// The model and the answers yes and no are chosen from lists, not typed.
std::string typing_fault(const Setting &setting, const std::string &typed) {
  const RecordField place = field_of(setting);
  if (place.record == nullptr || is_model(setting) || is_yes_no(setting)) return "";
  return fault_of_text(place.table[place.field], typed);
}

bool may_shut_down() { return std::string_view(CustomRec.shutdown_allowed).starts_with("yes"); }

std::string choice_fault(const Setting &setting, const std::string &value) {
  if (is_yes_no(setting)) {
    if (value != "yes" && value != "no") return yes_or_no_label[language];
    const bool follows = setting.mask == kMaskSystem && follows_shutdown(setting.write->field) != 0;
    if (follows && value == "yes" && !may_shut_down()) return shutdown_label[language];
  }
  if (is_model(setting)) {
    if (value == setting.load->fallback) return no_model_label[language];
    if (get_max_ups_list(UpsTypeArr) == get_ups_list_id(UpsTypeArr, value.c_str())) {
      return filled(model_unknown_label, {upstypname});
    }
  }
  if (setting.key == kCableKey) {
    char name[256];
    if (std::string_view(text_in(field_of_mask(kMaskUps, kCable), name)) == kTableEnd) return cable_label[language];
  }
  return "";
}

std::string range_fault(const Setting &setting, const std::string &value) {
  std::string smallest, largest;
  if (is_follower(setting) || !range_of(setting, smallest, largest)) return "";
  const RecordField place = field_of(setting);
  const int32_t number = to_int32(value.c_str());
  const bool inside = is_number_field(place.table[place.field].type)
                          ? to_int32(smallest.c_str()) <= number && number <= to_int32(largest.c_str())
                          : value_check(place.field, setting.mask) != 0;
  return inside ? "" : filled(range_label, {smallest, largest});
}

bool is_smtp_account(const Setting &setting) {
  const int field = is_job_list(setting) || setting.mask != kMaskMail ? -1 : setting.write->field;
  return field == kSmtpUser || field == kSmtpPassword;
}

// A password comes back when what is stored of it gives the same text again.
bool comes_back(const Setting &setting, const std::string &typed, const std::string &value) {
  if (value == kEmptyValue) return true;
  const RecordField place = field_of(setting);
  char text[256];
  take_value(setting, value);
  return text_in(place, text) == typed;
}

std::string loss_fault(const Setting &setting, const std::string &typed, const std::string &value) {
  std::string stored;
  if (!value_in_records(setting, stored)) return "";  // of a follower
  if (!typed.empty() && is_smtp_account(setting) && !keeps_smtp_user()) return mail_label[language];
  const bool is_same = is_same_value(setting, value, stored);
  if (is_secret(setting) && !(is_same && comes_back(setting, typed, value)))
    return fault_notice(ProfileFault::too_long);
  if (!is_same) return filled(becomes_label, {stored});
  const ProfileFault fault = XSurvives(kTmpTopic, setting.key, stored);
  const bool has_default = setting.load != nullptr && *setting.load->fallback != '\0';
  const bool is_empty = fault == ProfileFault::empty ? !has_default : stored == kEmptyValue && typed.empty();
  return fault == ProfileFault::none || is_empty ? "" : fault_notice(fault);
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
  if (is_job_list(setting)) faults = faults_of_job_list(setting.event, value);
  if (!faults.empty()) return faults;
  const std::string fault = fault_of_value(setting, typed, value);
  if (!fault.empty()) faults.push_back(fault);
  return faults;
}

std::string fault_of_text(const FieldDescriptor &field, std::string_view text) {
  const bool is_number = is_number_field(field.type);
  // of those that can't be typed into, the filter of their kind counts
  const int filter = !is_read_only_field(field.type) ? field.type : is_number ? kFieldNumber : kFieldText;
  for (size_t i = 0; i < text.size(); i++) {
    if (!accepts_character(filter, static_cast<int>(i), static_cast<unsigned char>(text[i]))) {
      return filled(character_label, {std::to_string(i + 1)});
    }
  }
  if (is_number || text.size() <= field.length) return "";
  return filled(too_long_label, {std::to_string(field.length)});
}

std::string filled(Label &label, std::initializer_list<std::string_view> values) {
  std::string text = label[language];
  size_t at = 0;
  for (const std::string_view value : values) {
    at = text.find("%s", at);
    if (at == std::string::npos) break;
    text.replace(at, 2, value);
    at += value.size();
  }
  return text;
}
