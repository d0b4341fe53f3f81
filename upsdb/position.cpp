#include "upsdb/position.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "util/numbers.h"
#include "util/text.h"
#include "util/tokens.h"

namespace {

using FieldBuffer = char[kFieldBufferSize];

bool has_hex_prefix(const char *field) { return field[0] == '0' && (field[1] == 'x' || field[1] == 'X'); }

}  // namespace

int PCountPositions(const char *text, const char *separator) { return UCTcnumtoken(text, separator); }

int delBlanksAndQuotationMarksFromString(const char *field, char *out, int size) {
  const std::string_view text(field);
  if (text.empty()) return 0;
  if (size > 0) std::memset(out, 0, static_cast<size_t>(size));
  size_t start = std::min(text.find_first_not_of(' '), text.size());
  size_t end = text.find_last_not_of(' ') + 1;  // npos + 1 is 0: nothing but blanks
  if (start < end && text[start] == '"') ++start;
  if (end > 0 && text[end - 1] == '"') --end;
  if (end < start) return 0;
  cpynstr(out, text.substr(start, end - start), size);
  return 1;
}

int PGetStringFromPosition(int position, const char *text, char *out, int size, const char *separator) {
  FieldBuffer field;
  UCTctoken(field, kFieldBufferSize, text, separator, position + 1);
  return delBlanksAndQuotationMarksFromString(field, out, size);
}

int PGetCharFromPosition(int position, const char *text, char &out) {
  FieldBuffer field;
  if (!get_text_field(position, text, field)) return 0;
  out = field[0];
  return 1;
}

int PGetLongFromPosition(int position, const char *text, int32_t &out) {
  FieldBuffer field;
  if (!get_text_field(position, text, field)) return 0;
  out = to_int32(field);
  return 1;
}

int PGetIntFromPosition(int position, const char *text, int &out) { return PGetLongFromPosition(position, text, out); }

int PGetShortFromPosition(int position, const char *text, int16_t &out) {
  int32_t value = 0;
  if (!PGetLongFromPosition(position, text, value)) return 0;
  out = static_cast<int16_t>(value);
  return 1;
}

int PGetDoubleFromPosition(int position, const char *text, double &out) {
  FieldBuffer field;
  if (!get_text_field(position, text, field)) return 0;
  out = std::strtod(field, nullptr);
  return 1;
}

int PGetHexToLongFromPosition(int position, const char *text, uint32_t &out) {
  FieldBuffer field;
  if (!get_text_field(position, text, field) || !has_hex_prefix(field)) return 0;
  out = getHexASCII(field + 2, lenstr(field + 2));
  return 1;
}

int PGetBinFromPosition(int position, const char *text, std::span<uint8_t> out) {
  FieldBuffer field;
  if (!get_text_field(position, text, field) || !has_hex_prefix(field)) return 0;
  const auto held = static_cast<size_t>(lenstr(field)) / 2 - 1;
  const size_t count = std::min(held, out.size());
  for (size_t i = 0; i < count; ++i) out[i] = static_cast<uint8_t>(getHexASCII(field + 2 + 2 * i, 2));
  return static_cast<int>(count);
}
