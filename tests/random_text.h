// Texts that a person could have typed.
#pragma once

#include <random>
#include <string>

#include "record/fields.h"

// What the masks let into a field; now and then a character of several bytes.
inline std::string random_text(std::mt19937 &random, const FieldDescriptor &field) {
  const int type = is_read_only_field(field.type) ? kFieldText : field.type;  // until another field opens it
  std::string text;
  for (size_t left = random() % field.length + 1; left > 0; --left) {
    const bool is_word = type == kFieldText && random() % 20 == 0;
    const std::string next = is_word ? "\xE3\x82\xB5" : std::string(1, static_cast<char>('!' + random() % 94));
    const auto fits = accepts_character(type, static_cast<int>(text.size()), static_cast<unsigned char>(next[0]));
    if (fits && text.size() + next.size() <= field.length) text += next;
  }
  return text;
}
