#include "setup/check/lines.h"

#include <algorithm>
#include <vector>

#include "corbix/profile_line.h"
#include "corbix/xconfig.h"
#include "setup/check/spelling.h"
#include "setup/configuration/configuration.h"

namespace {

std::string without_digits(std::string_view name) {
  std::string letters(name);
  std::erase_if(letters, [](char c) { return c >= '0' && c <= '9'; });
  return letters;
}

}  // namespace

std::string_view key_of_line(std::string_view text) {
  std::string_view key;
  return has_key_entry(text) && find_entry(text, kReadText, key) ? key : "";
}

const Setting *setting_of_line(std::string_view text) {
  const std::string_view key = key_of_line(text);
  return key.empty() ? nullptr : setting_of_key(key);
}

std::string meant_key(std::string_view key) {
  std::vector<std::string_view> keys;
  for (const Setting *setting : all_settings()) keys.emplace_back(setting->key);
  const std::string meant = nearest_name(key, keys);
  // another number is another thing, not a slip of the hand
  return xstricmp(without_digits(meant), without_digits(key)) == 0 ? "" : meant;
}

bool is_topic_line(std::string_view text) {
  const size_t start = text.find_first_not_of(" \t");
  return is_topic(text) && start != std::string_view::npos && text[start] == '[';
}

bool hides_rest(std::string_view text, Part part) {
  // in front of the first setting the monitor looks for whole topics only
  return part == Part::start ? is_topic(text) : part == Part::settings && holds_topic(text);
}

bool has_inner_return(std::string_view text) {
  const size_t found = text.find('\r');
  return found < text.size() && found + 1 < text.size() && text[found + 1] != '\n';
}

std::string_view without_white_ends(std::string_view value) {
  const size_t start = std::min(value.find_first_not_of(" \t"), value.size());
  return value.substr(start, value.find_last_not_of(" \t") + 1 - start);
}
