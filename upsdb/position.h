// Fields of a database record: one line of text cut at "|", positions counted from 0.
// A field is taken without the blanks around it and without one pair of quotation marks. Every getter returns 1, or 0
// when the field is missing, holds nothing, or lacks its form: the output is then as it was, unless said otherwise.
// Text after a number is ignored, and text that is no number reads as 0 with result 1.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

inline constexpr char kFieldSeparator[] = "|";
inline constexpr int kFieldBufferSize = 512;  // a longer field is cut

// The number of fields of `text`: 0 for an empty text, 1 for an empty separator.
int PCountPositions(const char *text, const char *separator);

// Copies `field` without surrounding blanks and one quotation mark at each end into `out` (`size` bytes, cleared first;
// a text that does not fit is cut). Quotation marks inside stay; two quotation marks and nothing else are an empty
// text. 0 for an empty field (`out` untouched) and for blanks only or a lone quotation mark (`out` cleared).
int delBlanksAndQuotationMarksFromString(const char *field, char *out, int size);

// The cleaned text of one field into `out` (`size` bytes), as delBlanksAndQuotationMarksFromString.
int PGetStringFromPosition(int position, const char *text, char *out, int size, const char *separator);
template <size_t N>
int get_text_field(int position, const char *text, char (&out)[N]) {
  return PGetStringFromPosition(position, text, out, static_cast<int>(N), kFieldSeparator);
}

// The first character; NUL for a field of two quotation marks.
int PGetCharFromPosition(int position, const char *text, char &out);
// Decimal numbers; beyond 32 bits they are clamped. The 16-bit form keeps the low 16 bits.
int PGetLongFromPosition(int position, const char *text, int32_t &out);
int PGetIntFromPosition(int position, const char *text, int &out);
int PGetShortFromPosition(int position, const char *text, int16_t &out);
int PGetDoubleFromPosition(int position, const char *text, double &out);
// Digits after "0x" or "0X". More than eight digits wrap into the low bits: kept, codes in the field rely on it.
int PGetHexToLongFromPosition(int position, const char *text, uint32_t &out);
// Bytes from the digit pairs after "0x" or "0X" (half a pair counts for nothing), at most as many as `out` takes.
// Returns the number of bytes stored.
int PGetBinFromPosition(int position, const char *text, std::span<uint8_t> out);
