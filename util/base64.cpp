#include "util/base64.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "util/files.h"
#include "util/text.h"

namespace {

constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char kPadding = '=';
constexpr size_t kGroupsOfALine = 15;
constexpr char kWhiteSpace[] = " \t\n\v\f\r";
constexpr char kEndOfValue[] = " \t\n\v\f\r;";
constexpr size_t kLineSize = 1024;  // of a header line
constexpr size_t kEncodingSize = 128;
constexpr size_t kNameSize = 260;
constexpr long kLargestInput = 1L << 30;  // of a file's data

using Bytes = std::unique_ptr<char, decltype(&std::free)>;

// The value of each character as first to fourth of a group, at its place in the group's 24 bits; kNoDigit lies above.
constexpr uint32_t kNoDigit = uint32_t{1} << 24;
using DigitValues = std::array<std::array<uint32_t, 256>, 4>;
constexpr DigitValues make_digit_values() {
  DigitValues values = {};
  for (auto &place : values) place.fill(kNoDigit);
  for (uint32_t digit = 0; digit < 64; ++digit) {
    for (uint32_t place = 0; place < 4; ++place) {
      values[place][static_cast<unsigned char>(kDigits[digit])] = digit << (18 - 6 * place);
    }
  }
  return values;
}
constexpr DigitValues kDigitValues = make_digit_values();

uint32_t value_at(size_t place, char c) { return kDigitValues[place][static_cast<unsigned char>(c)]; }

// --- encoding

uint32_t byte_at(const char *data, size_t i) { return static_cast<unsigned char>(data[i]); }

char *put_digits(char *out, uint32_t bits) {
  out[0] = kDigits[bits >> 18];
  out[1] = kDigits[bits >> 12 & 63];
  out[2] = kDigits[bits >> 6 & 63];
  out[3] = kDigits[bits & 63];
  return out + 4;
}

// The last group, of one or two bytes.
char *put_short_group(char *out, const char *data, size_t length) {
  const uint32_t second = length > 1 ? byte_at(data, 1) : 0;
  char *end = put_digits(out, byte_at(data, 0) << 16 | second << 8);
  std::fill(out + length + 1, end, kPadding);
  return end;
}

char *put_line_end(char *out) { return std::copy_n(s_pszCrLf, 2, out); }

char *put_all_groups(char *out, const char *data, size_t length) {
  const size_t whole = length / 3;
  for (size_t group = 0; group < whole; ++group, data += 3) {
    out = put_digits(out, byte_at(data, 0) << 16 | byte_at(data, 1) << 8 | byte_at(data, 2));
    if (group % kGroupsOfALine == kGroupsOfALine - 1) out = put_line_end(out);
  }
  if (length % 3 == 0) return out;
  out = put_short_group(out, data, length % 3);
  return whole % kGroupsOfALine == kGroupsOfALine - 1 ? put_line_end(out) : out;
}

// --- decoding

// Where decoding stands: the digits of a group that is not complete are the low bits of `bits`.
struct Decoder {
  const char *at;
  const char *end;
  char *out;
  uint32_t bits = 0;
  uint32_t digits = 0;
};

// Whole groups of four digits beside each other, as long as there are any.
void take_whole_groups(Decoder &d) {
  const char *at = d.at;
  char *out = d.out;
  for (; d.end - at >= 4; at += 4, out += 3) {
    const uint32_t bits = value_at(0, at[0]) | value_at(1, at[1]) | value_at(2, at[2]) | value_at(3, at[3]);
    if (bits >= kNoDigit) break;
    out[0] = static_cast<char>(bits >> 16);
    out[1] = static_cast<char>(bits >> 8);
    out[2] = static_cast<char>(bits);
  }
  d.at = at;
  d.out = out;
}

// Puts the bytes that the digits of the group complete, one less than digits, and begins the next group.
void end_group(Decoder &d) {
  for (uint32_t i = 1; i < d.digits; ++i) *d.out++ = static_cast<char>(d.bits >> (6 * d.digits - 8 * i));
  d.digits = 0;
}

// A "=", after which d.at stands. False when it may not stand there.
bool take_padding(Decoder &d) {
  if (d.digits < 2) {
    std::fputs("decodeBase64: impossible quantum position", stderr);
    return false;
  }
  if (d.digits == 2 && (d.at == d.end || *d.at++ != kPadding)) return false;
  end_group(d);
  return true;
}

bool take_one(Decoder &d) {
  const char c = *d.at++;
  if (c == kPadding) return take_padding(d);
  const uint32_t value = value_at(3, c);  // the last place is the lowest: the digit's bare value
  if (value == kNoDigit) return true;
  d.bits = d.bits << 6 | value;
  if (++d.digits == 4) end_group(d);
  return true;
}

bool decode_all(Decoder &d) {
  while (d.at < d.end) {
    if (d.digits == 0) take_whole_groups(d);
    if (d.at < d.end && !take_one(d)) return false;
  }
  end_group(d);
  return true;
}

// --- the header and the files

// What getValue and getParam copy: the value at `value` and the character after it.
void copy_value(char *buffer, int size, const char *value, size_t length) {
  // kept: the readers of such files compare the value with the character that ended it
  std::copy_n(value, std::min(length + 1, static_cast<size_t>(std::max(size, 0))), buffer);
}

// Takes what one header line gives. False when it ends the header.
bool take_header_line(const char *line, char *encoding, int encoding_size, char *name, int name_size) {
  const auto take_name = [&](const char *field, const char *parameter) {
    std::memset(name, 0, static_cast<size_t>(name_size));
    getParam(field, parameter, name, name_size - 1);
  };
  if (*line == '\0') return false;
  if (const char *type = getField(line, "Content-Type")) take_name(type, "name");
  if (const char *disposition = getField(line, "Content-Disposition")) take_name(disposition, "filename");
  const char *field = getField(line, "Content-Transfer-Encoding");
  return field == nullptr || getValue(field, encoding, encoding_size - 1);
}

// Everything from the stream's position to its end; null when it can't be read or is too much.
Bytes read_rest(FILE *stream, size_t &length) {
  Bytes rest(nullptr, &std::free);
  const long begin = std::ftell(stream);
  if (begin < 0 || std::fseek(stream, 0, SEEK_END) != 0) return rest;
  const long end = std::ftell(stream);
  if (end < begin || end - begin > kLargestInput || std::fseek(stream, begin, SEEK_SET) != 0) return rest;
  length = static_cast<size_t>(end - begin);
  rest.reset(static_cast<char *>(std::calloc(length + 1, 1)));
  if (rest != nullptr && std::fread(rest.get(), 1, length, stream) != length) rest.reset();
  return rest;
}

// True when the stream begins with a header that says Base64.
bool read_base64_header(FILE *stream) {
  char encoding[kEncodingSize];
  char name[kNameSize];
  return mimeCodeReadHeader(stream, encoding, sizeof encoding, name, sizeof name) &&
         std::strcmp(encoding, "base64") == 0;
}

// The file's data in its other form; null on failure.
Bytes convert_file(const char *path, bool encode, size_t &length) {
  Bytes converted(nullptr, &std::free);
  const Stream stream(OpenAFile(path, "rb"));
  if (stream == nullptr || (!encode && !read_base64_header(stream.get()))) return converted;
  size_t input_length = 0;
  const Bytes input = read_rest(stream.get(), input_length);
  if (input == nullptr) return converted;
  converted.reset((encode ? EncodeBase64 : DecodeBase64)(input.get(), input_length, &length));
  return converted;
}

}  // namespace

char *EncodeBase64(const char *data, size_t length, size_t *outLength) {
  const size_t characters = (length + 2) / 3 * 4;
  const size_t expected = characters + 2 * (characters / (4 * kGroupsOfALine)) + 2;
  *outLength = expected;
  Bytes text(static_cast<char *>(std::malloc(expected + 1)), &std::free);
  if (text == nullptr) {
    std::fprintf(stderr, "encodeBase64: malloc(): %s\n", std::strerror(errno));
    return nullptr;
  }
  char *end = put_line_end(put_all_groups(text.get(), data, length));
  *end = '\0';
  if (static_cast<size_t>(end - text.get()) != expected) std::fputs("encodeBase64: logic flaw", stderr);
  return text.release();
}

char *DecodeBase64(const char *text, size_t length, size_t *outLength) {
  Bytes bytes(static_cast<char *>(std::calloc(length * 3 / 4 + 4, 1)), &std::free);
  if (bytes == nullptr) {
    std::fputs("decodeBase64: allocate failed", stderr);
    return nullptr;
  }
  Decoder decoder = {.at = text, .end = text + length, .out = bytes.get()};
  if (!decode_all(decoder)) return nullptr;
  *outLength = static_cast<size_t>(decoder.out - bytes.get());
  return bytes.release();
}

int mimeCodeWriteHeader(FILE *stream, const char *encoding, const char *name) {
  if (stream == nullptr) return 0;
  return std::fprintf(stream,
                      "MIME-Version: 1.0\r\n"
                      "Content-Type: application/octet-stream; name=\"%s\"\r\n"
                      "Content-Transfer-Encoding: %s\r\n"
                      "Content-Disposition: attachment; filename=\"%s\"\r\n"
                      "\r\n",
                      name, encoding, name) > 0;
}

int mimeCodeReadHeader(FILE *stream, char *encoding, int encodingSize, char *name, int nameSize) {
  if (encodingSize < 1 || nameSize < 1) return 0;
  std::memset(encoding, 0, static_cast<size_t>(encodingSize));
  std::memset(name, 0, static_cast<size_t>(nameSize));
  char line[kLineSize];
  if (!readLine(stream, line, sizeof line) || getField(line, "MIME-Version") == nullptr) return 0;
  while (readLine(stream, line, sizeof line) && take_header_line(line, encoding, encodingSize, name, nameSize)) {
  }
  return encoding[0] != '\0';
}

long FileBase64Codec(int encode, const char *inputPath, const char *outputPath) {
  size_t length = 0;
  const Bytes output = convert_file(inputPath, encode != 0, length);
  if (output == nullptr) return 0;
  Stream stream(OpenAFile(outputPath, "wb"));
  if (stream == nullptr) return 0;
  if (encode != 0 && !mimeCodeWriteHeader(stream.get(), "base64", inputPath)) return 0;
  const bool written = std::fwrite(output.get(), 1, length, stream.get()) == length;
  const bool closed = CloseAFile(stream.release());
  return written && closed ? static_cast<long>(length) : 0;
}

int readLine(FILE *stream, char *buffer, int n) {
  if (std::fgets(buffer, n, stream) == nullptr) return 0;
  size_t length = std::strlen(buffer);
  if (length == 0 || buffer[length - 1] != '\n') return 0;
  --length;
  if (length > 0 && buffer[length - 1] == '\r') --length;
  buffer[length] = '\0';
  return 1;
}

const char *skipSpace(const char *text) { return text + std::strspn(text, kWhiteSpace); }

const char *getField(const char *line, const char *name) {
  line = skipSpace(line);
  return xstrnicmp(line, name, lenstr(name)) == 0 ? std::strchr(line, ':') : nullptr;
}

int getValue(const char *field, char *buffer, int size) {
  const char *value = skipSpace(field + 1);
  const size_t length = std::strcspn(value, kEndOfValue);
  if (length == 0) return 0;
  copy_value(buffer, size, value, length);
  return 1;
}

int getParam(const char *field, const char *parameter, char *buffer, int size) {
  if (size > 0) buffer[0] = '\0';
  const char *semicolon = std::strchr(field, ';');
  if (semicolon == nullptr) return 0;
  const char *start = skipSpace(semicolon + 1);
  if (xstrnicmp(start, parameter, lenstr(parameter)) != 0) return 0;
  const char *equals = std::strchr(start + lenstr(parameter), '=');
  if (equals == nullptr) return 0;
  const char *value = skipSpace(equals + 1);
  const bool quoted = *value == '"';
  if (quoted) ++value;
  copy_value(buffer, size, value, std::strcspn(value, quoted ? "\"" : kWhiteSpace));
  return 1;
}
