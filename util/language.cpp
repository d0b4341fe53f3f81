#include "util/language.h"

int32_t language = 0;

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
