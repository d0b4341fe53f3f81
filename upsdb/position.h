// Fields of a database record: one line of text cut at "|", positions counted from 0.
// A field is taken without the blanks around it and without one pair of quotation marks. Every getter returns 1, or 0
// when the field is missing, holds nothing, or lacks its form: the output is then as it was, unless said otherwise.
// Text after a number is ignored, and text that is no number reads as 0 with result 1.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

inline constexpr char kFieldSeparator[] = "|";
inline constexpr int kFieldBufferSize = 512;  // a longer field is cut

// The number of fields of `text`: 0 for an empty text, 1 for an empty separator.
int PCountPositions(const char *text, const char *separator);

// A field as it stands in the line; and its text, none where it holds nothing; and the number of a text "0x...", false
// without that beginning.
std::string_view piece_at(int position, std::string_view text, std::string_view separator);
std::optional<std::string_view> cleaned(std::string_view piece);
bool read_hex(std::string_view text, uint32_t &out);

// Copies `field` without surrounding blanks and one quotation mark at each end into `out` (`size` bytes, cleared first;
// a text that does not fit is cut). Quotation marks inside stay; two quotation marks and nothing else are an empty
// text. 0 for an empty field (`out` untouched) and for blanks only or a lone quotation mark (`out` cleared).
int delBlanksAndQuotationMarksFromString(std::string_view field, char *out, int size);

// The cleaned text of one field into `out` (`size` bytes), as delBlanksAndQuotationMarksFromString.
int PGetStringFromPosition(int position, std::string_view text, char *out, int size, std::string_view separator);
template <size_t N>
int get_text_field(int position, std::string_view text, char (&out)[N]) {
  return PGetStringFromPosition(position, text, out, static_cast<int>(N), kFieldSeparator);
}

// The first character; NUL for a field of two quotation marks.
int PGetCharFromPosition(int position, std::string_view text, char &out);
// Decimal numbers; beyond 32 bits they are clamped. The 16-bit form keeps the low 16 bits.
int PGetLongFromPosition(int position, std::string_view text, int32_t &out);
int PGetIntFromPosition(int position, std::string_view text, int &out);
int PGetShortFromPosition(int position, std::string_view text, int16_t &out);
int PGetDoubleFromPosition(int position, std::string_view text, double &out);
// Digits after "0x" or "0X". More than eight digits wrap into the low bits: kept, codes in the field rely on it.
int PGetHexToLongFromPosition(int position, std::string_view text, uint32_t &out);
// Bytes from the digit pairs after "0x" or "0X" (half a pair counts for nothing), at most as many as `out` takes.
// Returns the number of bytes stored.
int PGetBinFromPosition(int position, std::string_view text, std::span<uint8_t> out);
