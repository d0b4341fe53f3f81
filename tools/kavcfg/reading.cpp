// The commands that only read.
#include <algorithm>
#include <cerrno>
#include <nlohmann/json.hpp>

#include "setup/configuration/configuration.h"
#include "setup/jobs/event_table.h"
#include "tools/kavcfg/command.h"
#include "tools/kavcfg/texts.h"

namespace {

using Json = nlohmann::ordered_json;

bool is_hidden(const Setting &setting) { return setting.kind == Kind::secret; }

int read_values(const char *file, std::vector<std::string> &values) {
  return values_of_file(file, values) ? kGood : tell_outcome(Outcome::file_unreadable, errno, file);
}

std::string shown(const Setting &setting, const std::string &value) {
  return is_hidden(setting) ? hidden_label[language] : value;
}

// --- what is known of a setting

// Words of the interface, the same in both languages.
constexpr const char *kKindNames[] = {"text",  "number", "decimal", "yes_no",   "flag",     "secret",
                                      "model", "cable",  "path",    "constant", "follower", "job_list"};
constexpr const char *kUnitNames[] = {"", "s", "min", "s", "h", "kB", "VA", "degrees C"};

// A label without its padding and colon, a help in one line.
std::string plain(const char *text) {
  std::string words = text;
  std::replace(words.begin(), words.end(), '|', ' ');
  words.resize(words.find_last_not_of(" :") + 1);
  return words;
}

// What a text becomes in a description: UTF-8, or itself, as print_line takes it.
using Conversion = std::string (*)(const std::string &text);
std::string as_it_is(const std::string &text) { return text; }

Json in_both_languages(const char *const *label, Conversion convert) {
  if (label == nullptr) return nullptr;
  return {{"en", convert(plain(label[0]))}, {"ja", convert(plain(label[1]))}};
}

const char *const *label_of(const Setting &setting) {
  return setting.kind == Kind::job_list ? eventlist[setting.field].name : setting.label.text.text;
}

Json description_of(const Setting &setting, Conversion convert) {
  Json description = {{"key", setting.key}, {"kind", kKindNames[static_cast<int>(setting.kind)]}};
  if (setting.unit != Unit::none) description["unit"] = kUnitNames[static_cast<int>(setting.unit)];
  if (has_range(setting)) {
    description["minimum"] = setting.min * units_in_file(setting.unit);
    description["maximum"] = setting.max * units_in_file(setting.unit);
  }
  if (!is_hidden(setting) && can_be_set(setting)) {
    description["default"] = convert(default_values()[place_of(setting)]);
  }
  description["label"] = in_both_languages(label_of(setting), convert);
  description["help"] = in_both_languages(setting.help.text, convert);
  return description;
}

// What apply takes for a setting. A number may be given as a text; then its range is for apply to tell.
Json schema_of(const Setting &setting) {
  const Json description = description_of(setting, utf8_of);
  Json schema = Json::object();
  schema["description"] = description["label"].is_null() ? Json(setting.key) : description["label"]["en"];
  if (description.contains("default")) schema["default"] = description["default"];
  if (setting.kind == Kind::yes_no) {
    schema["enum"] = {"yes", "no", true, false, nullptr};
  } else if (setting.kind == Kind::number || setting.kind == Kind::decimal) {
    schema["type"] = {"number", "string", "null"};
    schema["pattern"] = "^-?[0-9]+(\\.[0-9]*)?$";
    if (has_range(setting)) {
      schema["minimum"] = description["minimum"];
      schema["maximum"] = description["maximum"];
    }
  } else {
    schema["type"] = {"string", "number", "null"};
  }
  if (is_hidden(setting)) schema["writeOnly"] = true;
  if (description.contains("unit")) schema["x-unit"] = description["unit"];
  return schema;
}

void print_json(const Json &json) { std::puts(json.dump(2, ' ', false, Json::error_handler_t::replace).c_str()); }

}  // namespace

int get(const Arguments &arguments) {
  std::vector<const Setting *> settings;
  for (const std::string &key : arguments) {
    const Setting *setting = known_setting(key);
    if (setting == nullptr) return kMisused;
    if (is_hidden(*setting)) return complain(kRefused, filled(password_hidden_label, {setting->key}));
    settings.push_back(setting);
  }
  std::vector<std::string> values;
  if (const int status = read_values(options.file, values); status != kGood) return status;
  for (const Setting *setting : settings) {
    const std::string &value = values[place_of(*setting)];
    if (value.empty() && !can_be_set(*setting)) return complain(kRefused, filled(no_value_label, {setting->key}));
    print_line(stdout, value);
  }
  return kGood;
}

int list(const Arguments &) {
  std::vector<std::string> values;
  const int status = options.keys ? kGood : read_values(options.file, values);
  if (status != kGood) return status;
  for (const Setting *setting : all_settings()) {
    if (!can_be_set(*setting) || (is_hidden(*setting) && !options.keys)) continue;
    print_line(stdout, setting->key + (options.keys ? "" : "=" + values[place_of(*setting)]));
  }
  return kGood;
}

int check(const Arguments &) {
  std::vector<KeyFinding> findings;
  const Outcome outcome = check_configuration(options.file, findings);
  const int error = errno;
  int status = tell_outcome(outcome, error, options.file);
  for (KeyFinding &finding : findings) {
    finding.is_warning = finding.is_warning && !options.strict;
    if (!finding.is_warning) status = kRefused;
    print_finding(stdout, options.file, finding);
  }
  return status;
}

int diff(const Arguments &arguments) {
  std::vector<std::string> now;
  std::vector<std::string> before = default_values();
  int status = read_values(options.file, now);
  if (status == kGood && !arguments.empty()) status = read_values(arguments[0].c_str(), before);
  if (status != kGood) return status;
  for (size_t i = 0; i < now.size(); ++i) {
    const Setting &setting = *all_settings()[i];
    if (!can_be_set(setting) || is_same_value(setting, before[i], now[i])) continue;
    print_line(stdout, std::string("-") + setting.key + "=" + shown(setting, before[i]));
    print_line(stdout, std::string("+") + setting.key + "=" + shown(setting, now[i]));
    status = kRefused;
  }
  return status;
}

int explain(const Arguments &arguments) {
  const Setting *setting = known_setting(arguments[0]);
  if (setting == nullptr) return kMisused;
  const Conversion convert = options.json ? utf8_of : as_it_is;
  Json description = description_of(*setting, convert);
  std::vector<std::string> values;
  if (!is_hidden(*setting) && values_of_file(options.file, values)) {
    description["value"] = convert(values[place_of(*setting)]);
  }
  if (options.json) {
    print_json(description);
    return kGood;
  }
  for (const auto &[name, value] : description.items()) {
    const Json &text = value.is_object() ? value[language == 0 ? "en" : "ja"] : value;
    if (text.is_null() || (text.is_string() && text.get_ref<const std::string &>().empty())) continue;
    print_line(stdout, name + ": " + (text.is_string() ? text.get<std::string>() : text.dump()));
  }
  return kGood;
}

int schema(const Arguments &) {
  Json properties = Json::object();
  for (const Setting *setting : all_settings()) {
    if (can_be_set(*setting)) properties[setting->key] = schema_of(*setting);
  }
  print_json({{"$schema", "https://json-schema.org/draft/2020-12/schema"},
              {"title", "KAVLON configuration"},
              {"type", "object"},
              {"properties", properties},
              {"additionalProperties", false}});
  return kGood;
}
