#include "upsdb/position.h"

#include <algorithm>
#include <cstring>

#include "util/numbers.h"
#include "util/text.h"
#include "util/tokens.h"

namespace {

// Gives `out` what `read` makes of a field.
template <class Value, class Read>
int get_as(int position, std::string_view text, Value &out, Read read) {
  const auto field = cleaned(piece_at(position, text, kFieldSeparator));
  if (field.has_value()) out = read(*field);
  return field.has_value();
}

}  // namespace

std::string_view piece_at(int position, std::string_view text, std::string_view separator) {
  return piece_of(text, separator, position + 1).substr(0, kFieldBufferSize - 1);
}

std::optional<std::string_view> cleaned(std::string_view piece) {
  size_t start = std::min(piece.find_first_not_of(' '), piece.size());
  size_t end = piece.find_last_not_of(' ') + 1;  // npos + 1 is 0: nothing but blanks
  if (start < end && piece[start] == '"') ++start;
  if (end > 0 && piece[end - 1] == '"') --end;
  if (piece.empty() || end < start) return std::nullopt;
  return piece.substr(start, end - start);
}

bool read_hex(std::string_view text, uint32_t &out) {
  if (!text.starts_with("0x") && !text.starts_with("0X")) return false;
  out = getHexASCII(text.data() + 2, static_cast<int>(text.size()) - 2);
  return true;
}

int PCountPositions(const char *text, const char *separator) { return UCTcnumtoken(text, separator); }

int delBlanksAndQuotationMarksFromString(std::string_view field, char *out, int size) {
  if (!field.empty() && size > 0) std::memset(out, 0, static_cast<size_t>(size));
  const auto text = cleaned(field);
  if (text.has_value()) cpynstr(out, *text, size);
  return text.has_value();
}

int PGetStringFromPosition(int position, std::string_view text, char *out, int size, std::string_view separator) {
  return delBlanksAndQuotationMarksFromString(piece_at(position, text, separator), out, size);
}

int PGetCharFromPosition(int position, std::string_view text, char &out) {
  return get_as(position, text, out, [](std::string_view field) { return field.empty() ? '\0' : field.front(); });
}

int PGetLongFromPosition(int position, std::string_view text, int32_t &out) {
  return get_as(position, text, out, [](std::string_view field) { return to_int32(field); });
}

int PGetIntFromPosition(int position, std::string_view text, int &out) {
  return PGetLongFromPosition(position, text, out);
}

int PGetShortFromPosition(int position, std::string_view text, int16_t &out) {
  return get_as(position, text, out, [](std::string_view field) { return static_cast<int16_t>(to_int32(field)); });
}

int PGetDoubleFromPosition(int position, std::string_view text, double &out) {
  return get_as(position, text, out, to_double);
}

int PGetHexToLongFromPosition(int position, std::string_view text, uint32_t &out) {
  const auto field = cleaned(piece_at(position, text, kFieldSeparator));
  return field.has_value() && read_hex(*field, out);
}

int PGetBinFromPosition(int position, std::string_view text, std::span<uint8_t> out) {
  const auto field = cleaned(piece_at(position, text, kFieldSeparator));
  uint32_t whole = 0;
  if (!field.has_value() || !read_hex(*field, whole)) return 0;
  const size_t count = std::min(field->size() / 2 - 1, out.size());
  for (size_t i = 0; i < count; ++i) out[i] = static_cast<uint8_t>(getHexASCII(field->data() + 2 + 2 * i, 2));
  return static_cast<int>(count);
}
