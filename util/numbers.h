// Numbers from text and text from numbers, independent of the locale.
#pragma once

#include <cstdint>
#include <string_view>

// Decimal conversion as strtol base 10 (leading white space, sign, digits; 0 for no digits), clamped to 32 bits.
int32_t to_int32(std::string_view text);
uint32_t to_uint32(std::string_view text);
// As strtod.
double to_double(std::string_view text);
// Truncated toward zero and clamped to 32 bits; not a number gives 0.
int32_t to_int32(double value);

// Decimal digits, one and more: neither a sign nor blanks.
bool is_digit(char c);
bool is_whole_number(std::string_view text);

// Digits of `value` in `base` (2 to 36), lower-case letters from 10 on, into `out` (34 bytes are always enough), with a
// leading "-" and the value negated when `negative` is set; "" for any other base. All return `out`.
char *xtoa(uint32_t value, char *out, int base, int negative);
// Signed: a "-" in base 10 only; other bases show the two's complement.
char *qitoa(int32_t value, char *out, int base);
char *qltoa(int32_t value, char *out, int base);
char *qultoa(uint32_t value, char *out, int base);

// The value of one digit, 0 for any other character.
int getHexDigit(char c);
int getDecDigit(char c);
// The value of n characters. Hexadecimal: digit k from the right is shifted left by 4k (modulo 32) and added, so that
// more than eight digits wrap into the low bits. Decimal: modulo 2 to the 32.
uint32_t getHexASCII(const char *text, int n);
uint32_t getDecASCII(const char *text, int n);
