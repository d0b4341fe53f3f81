#include "upsdb/fields.h"

#include <cstring>
#include <utility>

#include "upsdb/position.h"
#include "util/text.h"

namespace {

template <class Value, class Getter>
int take(const FieldRow &field, const char *line, char *place, Getter getter) {
  Value value{};
  if (!getter(field.position, line, value)) return 0;
  std::memcpy(place, &value, sizeof value);
  return 1;
}

int take_low_half(int position, const char *line, int16_t &value) {
  uint32_t whole = 0;
  if (!PGetHexToLongFromPosition(position, line, whole)) return 0;
  value = static_cast<int16_t>(whole);
  return 1;
}

int take_always(int position, const char *line, int32_t &value) {
  char word[64];
  if (!get_text_field(position, line, word)) return 0;
  value = cmpstr(word, "ALWAYS") == 0;
  return 1;
}

// The text after `count` more separators, "" when there are not so many.
const char *skip_fields(const char *line, int count) {
  for (; count > 0 && *line != '\0'; --count) {
    line = std::strchr(line, kFieldSeparator[0]);
    line = line != nullptr ? line + 1 : "";
  }
  return line;
}

}  // namespace

int fill_field(const FieldRow &field, const char *line, void *record) {
  char *const place = static_cast<char *>(record) + field.offset;
  switch (field.conversion) {
    case Conversion::text:
      return PGetStringFromPosition(field.position, line, place, static_cast<int>(field.size), kFieldSeparator);
    case Conversion::character:
      return take<char>(field, line, place, PGetCharFromPosition);
    case Conversion::number:
      return take<int32_t>(field, line, place, PGetLongFromPosition);
    case Conversion::short_number:
      return take<int16_t>(field, line, place, PGetShortFromPosition);
    case Conversion::hex_number:
      return take<int16_t>(field, line, place, take_low_half);
    case Conversion::real:
      return take<double>(field, line, place, PGetDoubleFromPosition);
    case Conversion::always:
      return take<int32_t>(field, line, place, take_always);
  }
  return 0;
}

int fill_fields(const RecordForm &form, const char *line, void *record) {
  if (PCountPositions(line, kFieldSeparator) < form.least_fields) return 0;
  int result = 1;
  int passed = 0;
  for (FieldRow field : form.fields) {
    line = skip_fields(line, field.position - passed);
    passed = std::exchange(field.position, 0);
    result &= fill_field(field, line, record);
  }
  return result;
}
