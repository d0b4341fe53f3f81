#include "upsdb/fields.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "upsdb/position.h"
#include "util/numbers.h"

namespace {

constexpr size_t kMostPieces = 32;  // no form has a field after them

template <class Value>
int put(char *place, Value value) {
  std::memcpy(place, &value, sizeof value);
  return 1;
}

// What a piece of a line says, into the field's place.
int take(const FieldRow &field, std::string_view piece, char *place) {
  if (field.conversion == Conversion::text) {
    return delBlanksAndQuotationMarksFromString(piece, place, static_cast<int>(field.size));
  }
  const auto text = cleaned(piece);
  uint32_t hex = 0;
  if (!text.has_value()) return 0;
  switch (field.conversion) {
    case Conversion::text:
      break;
    case Conversion::character:
      return put(place, text->empty() ? '\0' : text->front());
    case Conversion::number:
      return put(place, to_int32(*text));
    case Conversion::short_number:
      return put(place, static_cast<int16_t>(to_int32(*text)));
    case Conversion::hex_number:
      return read_hex(*text, hex) && put(place, static_cast<int16_t>(hex));
    case Conversion::real:
      return put(place, to_double(*text));
    case Conversion::always:
      return put(place, int32_t{*text == "ALWAYS"});
  }
  return 0;
}

}  // namespace

int fill_field(const FieldRow &field, std::string_view line, void *record) {
  return take(field, piece_at(field.position, line, kFieldSeparator), static_cast<char *>(record) + field.offset);
}

int fill_fields(const RecordForm &form, std::string_view line, void *record) {
  std::array<std::string_view, kMostPieces> pieces;
  int count = 0;
  const int wanted = std::max(form.least_fields, form.fields.back().position + 1);
  for (size_t at = 0; count < wanted && at <= line.size(); ++count) {
    const size_t end = std::min(line.find(kFieldSeparator[0], at), line.size());
    pieces[static_cast<size_t>(count)] = line.substr(at, std::min<size_t>(end - at, kFieldBufferSize - 1));
    at = end + 1;
  }
  if (count < form.least_fields) return 0;
  int result = 1;
  for (const FieldRow &field : form.fields) {
    result &= take(field, pieces[static_cast<size_t>(field.position)], static_cast<char *>(record) + field.offset);
  }
  return result;
}
