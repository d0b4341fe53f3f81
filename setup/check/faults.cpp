#include "setup/check/faults.h"

#include <cstdio>

#include "record/fields.h"
#include "setup/check/job_faults.h"
#include "setup/check/spelling.h"
#include "setup/check/texts.h"
#include "setup/settings/checks.h"
#include "setup/settings/models.h"
#include "setup/settings/settings.h"
#include "upsdb/upsdb.h"
#include "util/charset.h"
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

// The table holds the first models of a database only.
bool is_after_table(const std::string &model) {
  UpsData record;
  if (!UpsOpenDb(upstypname)) return false;
  const bool is_there = UpsFindDb(record, model.c_str()) != 0;
  UpsCloseDb();
  return is_there && record.name == model;
}

std::string unknown_model_fault(const std::string &model) {
  if (is_after_table(model)) return filled(model_late_label, {std::to_string(kMaxModels), upstypname});
  std::vector<std::string_view> names(static_cast<size_t>(get_max_ups_list(UpsTypeArr)));
  for (size_t i = 0; i < names.size(); ++i) names[i] = UpsTypeArr[i].ups_name;
  const std::string meant = nearest_name(model, names);
  if (meant.empty()) return filled(model_unknown_label, {upstypname});
  return filled(model_meant_label, {upstypname, meant});
}

std::string model_fault(const Setting &setting, const std::string &value) {
  if (value == setting.fallback) return no_model_label[language];
  const bool is_known = get_ups_list_id(UpsTypeArr, value.c_str()) != get_max_ups_list(UpsTypeArr);
  return is_known ? "" : unknown_model_fault(value);
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

// Characters as a person lists them: digits and letters as ranges, blanks at the end.
std::string list_of(const std::string &characters) {
  std::string list;
  std::string rest = characters;
  for (const std::string_view range : {"0123456789", "ABCDEFGHIJKLMNOPQRSTUVWXYZ", "abcdefghijklmnopqrstuvwxyz"}) {
    const size_t at = rest.find(range);
    if (at == std::string::npos) continue;
    list += std::string(1, range.front()) + '-' + range.back() + ' ';
    rest.erase(at, range.size());
  }
  for (const char c : rest) {
    if (c != ' ') list += std::string(1, c) + ' ';
  }
  return rest.find(' ') == std::string::npos ? list.substr(0, list.size() - 1) : list + blanks_label[language];
}

// What a cell of that field takes.
std::string accepted_characters(int filter, int position) {
  std::string taken;
  std::string refused;
  for (int c = ' '; c <= '~'; ++c) (accepts_character(filter, position, c) ? taken : refused) += static_cast<char>(c);
  const bool takes_few = taken.size() < refused.size() || refused.find(' ') != std::string::npos;
  return takes_few ? filled(only_label, {list_of(taken)}) : filled(all_but_label, {list_of(refused)});
}

// A character as it may stand in a message.
std::string shown_character(std::string_view text) {
  const auto byte = static_cast<unsigned char>(text.front());
  if (byte >= ' ' && byte != 0x7F) return std::string(text.substr(0, character_length(text, present_charset())));
  char code[8];
  std::snprintf(code, sizeof code, "\\x%02x", byte);
  return code;
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
      const auto position = static_cast<int>(i);
      return filled(character_label, {shown_character(text.substr(i)), accepted_characters(filter, position)});
    }
  }
  if (is_number || text.size() <= field.length) return "";
  return filled(too_long_label, {std::to_string(field.length)});
}
