#include "setup/settings/settings.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string_view>

#include "corbix/profile_line.h"
#include "setup/settings/checks.h"
#include "util/numbers.h"
#include "util/text.h"
#include "util/trace.h"

SpecialRecord SpecialRec;
FieldDescriptor SpecialTabArr[kSpecialFieldCount + 1];

namespace {

constexpr size_t kLongestNewPath = 29;  // of a new configuration: within a field of 30 characters

constexpr auto kCoreOrder = in_order_of_reading<36>(kUpsSettings, kSystemSettings, kExtraJobSettings, kPathSettings);
static_assert(has_no_gap(kCoreOrder));

// What the file held; written by loading.
std::map<std::string, std::string, CaseBlind> noted_texts;  // by key
std::vector<NotedLine> noted_lines;

std::vector<const Setting *> left_to_file;  // written by leave_to_file, read by the writers
const char *refused = nullptr;              // written by the writers

bool is_in_number_field(const Setting &setting) {
  const RecordField place = field_of(setting);
  return place.record != nullptr && is_number_field(place.table[place.field].type);
}

std::string file_name_of(const char *path) { return std::strrchr(path, '/') + 1; }

std::string default_in(const Setting &setting, std::string_view directory) {
  if (setting.kind != Kind::path || directory.empty()) return setting.fallback;
  const std::string path = std::string(directory) + "/" + file_name_of(setting.fallback);
  return path.size() <= kLongestNewPath ? path : setting.fallback;
}

bool number_value(const Setting &setting, std::string &value) {
  const int32_t number = number_in(field_of(setting));
  if (!is_in_range(setting.field, setting.mask, number)) return false;
  value = std::to_string(number * units_in_file(setting.unit));
  return true;
}

// A value that the profile store would give back of `value`, as the field would show it.
std::string shown_again(const Setting &setting, const std::string &value) {
  if (setting.in_file.never_empty && value == " ") return "";
  return setting.in_file.scramble == nullptr ? value : setting.in_file.scramble(value);
}

// An empty value of a key that the file lacks can't be stored: the keys after it are skipped.
bool ends_section(const Setting &setting) {
  std::string value;
  return setting.in_file.rule == WriteRule::link && text_in_file(setting) == nullptr && value_of(setting, value) &&
         value.empty();
}

// As a number when all of the text is one.
bool read_number(std::string_view text, double &number) {
  const std::string digits(text);
  char *end = nullptr;
  number = std::strtod(digits.c_str(), &end);
  return !digits.empty() && *end == '\0';
}

// The trace holds the password in clear: it is meant for diagnosis, and its file is the owner's alone.
void trace_password() {
  char password[256];
  text_in(field_of_mask(kMaskSystem, kPassword), password);
  if (debugLevel > kTraceDetails) myfprintf("CustomRec.password=%s!%d\n", password, lenstr(password));
}

int write_rows(std::initializer_list<std::span<const Setting>> sections) {
  bool written = false;
  for (const std::span<const Setting> settings : sections) {
    for (const Setting &setting : settings) {
      if (is_left_to_file(setting)) continue;
      std::string value;
      const WriteRule rule = setting.in_file.rule;
      const bool wanted = (rule != WriteRule::follows || written) && value_of(setting, value);
      written = wanted && XSetPrivateProfileString(kTmpTopic, setting.key, value.c_str(), "");
      const bool may_fail = rule == WriteRule::ignored || (rule == WriteRule::empty_may_fail && value.empty());
      if (!wanted || written || may_fail) continue;
      set_refused_key(setting.key);
      return 0;
    }
  }
  return 1;
}

int save_section(const char *file, int (*write)()) {
  if (!XOpenProfile(file, kWriteText)) return 0;
  const int written = write();
  return XCloseProfile() && written;
}

}  // namespace

// --- fields

int32_t number_in(const RecordField &place) {
  const void *member = recptr(place.record, place.table, place.field);
  if (member == nullptr || !is_number_field(place.table[place.field].type)) return 0;
  int32_t number = 0;
  std::memcpy(&number, member, sizeof number);
  return number;
}

char *text_in(const RecordField &place, char *buffer) {
  buffer[0] = '\0';
  get_field(place.record, place.table, place.field, buffer);
  return buffer;
}

void init_tab() {
  std::copy(kStdFields.begin(), kStdFields.end(), StdTabArr);
  std::copy(kCustomFields.begin(), kCustomFields.end(), CustomTabArr);
  std::copy(kPathFields.begin(), kPathFields.end(), PathTabArr);
  std::copy(kSpecialFields.begin(), kSpecialFields.end(), SpecialTabArr);
}

RecordField field_of_mask(int mask, int field) {
  switch (mask) {
    case kMaskUps:
      return {&StdRec, StdTabArr, field};
    case kMaskSystem:
      return {&CustomRec, CustomTabArr, field};
    case kMaskExtraJobs:
      return {&SpecialRec, SpecialTabArr, field};
    case kMaskPaths:
      return {&PathRec, PathTabArr, field};
    case kMaskMail:
      return {&MailRec, MailTabArr, field};
    default:
      return {};
  }
}

RecordField field_of(const Setting &setting) {
  return setting.field == kNoField ? RecordField{} : field_of_mask(setting.mask, setting.field);
}

std::string text_of_field(const Setting &setting) {
  char text[256];
  return text_in(field_of(setting), text);
}

std::span<const Setting> settings_of(int mask) {
  switch (mask) {
    case kMaskUps:
      return kUpsSettings;
    case kMaskSystem:
      return kSystemSettings;
    case kMaskExtraJobs:
      return kExtraJobSettings;
    case kMaskPaths:
      return kPathSettings;
    case kMaskMail:
      return kMailSettings;
    default:
      return {};
  }
}

std::string default_of(const Setting &setting) {
  if (setting.fallback == nullptr) return "";
  return setting.in_file.scramble == nullptr ? setting.fallback : setting.in_file.scramble(setting.fallback);
}

// --- records and file

void take_value(const Setting &setting, const char *value, bool stored) {
  if (setting.in_file.take != nullptr) return setting.in_file.take(setting, value, stored);
  std::string text = value;
  if (stored && setting.in_file.scramble != nullptr) text = setting.in_file.scramble(text);
  if (const int32_t units = units_in_file(setting.unit); units > 1) text = std::to_string(to_int32(value) / units);
  const RecordField place = field_of(setting);
  put_field(place.record, place.table, place.field, text.c_str());
}

bool value_of(const Setting &setting, std::string &value) {
  if (setting.in_file.value_of != nullptr) return setting.in_file.value_of(setting, value);
  if (is_in_number_field(setting)) return number_value(setting, value);
  const bool is_kept = setting.in_file.is_kept == nullptr || setting.in_file.is_kept();
  value = is_kept ? text_of_field(setting) : "";
  if (setting.in_file.scramble != nullptr) value = setting.in_file.scramble(value);
  if (setting.in_file.never_empty && value.empty()) value = " ";
  return true;
}

std::optional<std::string> text_in_profile(const Setting &setting) {
  char value[kValueBufferSize];
  if (!XGetPrivateProfileString(kTmpTopic, setting.key, value, sizeof value)) return std::nullopt;
  return value;
}

void note_file() {
  forget_file();
  char value[kValueBufferSize];
  for (ProfileEntry entry; XNextEntry(kTmpTopic, entry);) {
    get_value(entry.text, value, kReadText);
    noted_texts.try_emplace(std::string(entry.key), value);  // of equal keys the first one counts
  }
  for (ProfileText line; XNextLine(line);) noted_lines.push_back({line, std::string(line.text)});
}

void load_settings(std::span<const Setting *const> settings) {
  for (const Setting *setting : settings) {
    const std::string *text = text_in_file(*setting);
    take_value(*setting, text == nullptr ? setting->fallback : text->c_str(), text != nullptr);
  }
}

void store_default(const Setting &setting, const char *directory) {
  take_value(setting, default_in(setting, directory).c_str(), false);
}

std::span<const Setting *const> core_settings() { return kCoreOrder; }

const std::string *text_in_file(const Setting &setting) {
  const auto found = noted_texts.find(setting.key);
  return found == noted_texts.end() ? nullptr : &found->second;
}

const std::vector<NotedLine> &lines_in_file() { return noted_lines; }

void forget_file() {
  noted_texts.clear();
  noted_lines.clear();
}

void leave_to_file(std::vector<const Setting *> settings) {
  left_to_file = std::move(settings);
  refused = nullptr;
}
bool is_left_to_file(const Setting &setting) { return std::ranges::find(left_to_file, &setting) != left_to_file.end(); }
const char *refused_key() { return refused; }
void set_refused_key(const char *key) { refused = key; }

int write_std() { return write_rows({kUpsSettings}); }
int write_custom() {
  trace_password();
  return write_rows({kSystemSettings});
}
int write_path() { return write_rows({kPathSettings}); }
int write_mail() { return write_rows({kMailSettings}); }
// kept: the network role stands in front of the extra jobs too
int write_special() { return write_rows({{kSystemSettings.data(), 1}, kExtraJobSettings}); }
static_assert(kSystemSettings[0].key == std::string_view("NetTyp"));

int save_std_cfg(const char *file) { return save_section(file, write_std); }
int save_custom_cfg(const char *file) { return save_section(file, write_custom); }
int save_path_cfg(const char *file) { return save_section(file, write_path); }
int save_mail_cfg(const char *file) { return save_section(file, write_mail); }
int save_special_cfg(const char *file) { return save_section(file, write_special); }

bool is_same_value(const Setting &setting, std::string_view a, std::string_view b) {
  double left = 0;
  double right = 0;
  const bool is_number = setting.kind == Kind::number || setting.kind == Kind::decimal || setting.kind == Kind::flag ||
                         setting.kind == Kind::cable;
  if (is_number && read_number(a, left) && read_number(b, right)) return left == right;
  return (a == " " ? "" : a) == (b == " " ? "" : b);
}

// --- losses

ProfileFault loss_of(const Setting &setting) {
  std::string value;
  if (!value_of(setting, value)) return ProfileFault::none;
  if (setting.in_file.is_kept != nullptr && !setting.in_file.is_kept()) return ProfileFault::none;
  if (setting.in_file.never_empty && value == " ") return ProfileFault::none;
  if (setting.in_file.scramble != nullptr && shown_again(setting, value) != text_of_field(setting)) {
    return ProfileFault::too_long;
  }
  const ProfileFault fault = XSurvives(kTmpTopic, setting.key, value);
  const bool comes_back = fault == ProfileFault::empty && default_of(setting).empty();
  return comes_back ? ProfileFault::none : fault;
}

const char *fault_notice(ProfileFault fault) {
  switch (fault) {
    case ProfileFault::none:
      return nullptr;
    case ProfileFault::bracket:
      return fault_bracket_label[language];
    case ProfileFault::blank:
      return fault_blank_label[language];
    case ProfileFault::empty:
      return fault_empty_label[language];
    default:
      return fault_cut_label[language];
  }
}

const char *settings_notice(int mask) {
  ProfileFault first = ProfileFault::none;
  for (const Setting &setting : settings_of(mask)) {
    if (ends_section(setting)) return fault_section_label[language];
    if (first == ProfileFault::none) first = loss_of(setting);
  }
  return fault_notice(first);
}
