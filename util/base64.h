// Base64 in memory, and whole files in Base64 after a small MIME header.
#pragma once

#include <cstddef>
#include <cstdio>

// The line end of encoded files.
inline constexpr char s_pszCrLf[] = "\r\n";

// Both return a heap buffer that the caller frees with free(), or null.
//
// The encoded text, terminated: a line end after every 60 characters and one more at the very end. `*outLength` is its
// length without the terminator. Null when memory runs out, which is said on standard error.
[[nodiscard]] char *EncodeBase64(const char *data, size_t length, size_t *outLength);
// The decoded bytes; `*outLength` is their number. Characters that are no Base64 digit are skipped; a text that stops
// within a group of four gives the bytes that are complete. Null, `*outLength` as it was, when memory runs out or when
// "=" stands as the first or second of a group (both said on standard error), or as the third without a "=" right
// after it.
[[nodiscard]] char *DecodeBase64(const char *text, size_t length, size_t *outLength);

// Writes MIME version, content type and disposition (both with `name`), transfer encoding and an empty line.
// 1; 0 when a write fails or the stream is null.
int mimeCodeWriteHeader(FILE *stream, const char *encoding, const char *name);
// Reads such a header up to its empty line. `encoding` (`encodingSize` bytes) and `name` (`nameSize` bytes) are cleared
// first and always terminated; what does not fit is cut. Both come as getValue and getParam take them: with the
// character after the value.
// 1 when a transfer encoding was found; 0 also when the first line is not the MIME version.
int mimeCodeReadHeader(FILE *stream, char *encoding, int encodingSize, char *name, int nameSize);

// Encodes (`encode` not 0: header and text) or decodes the file `inputPath` into `outputPath`.
// The number of data bytes written, without the header; 0 on any failure, which an output that was opened already does
// not survive unharmed.
long FileBase64Codec(int encode, const char *inputPath, const char *outputPath);

// One line into `buffer` (n bytes), without its "\n" and a "\r" before it. 1; 0 at the end of the stream, or for a line
// that has no "\n" or does not fit.
int readLine(FILE *stream, char *buffer, int n);
// The first character that is no white space.
const char *skipSpace(const char *text);
// The ":" of a line that begins, after white space, with the field `name` (case-blind); null for any other line.
const char *getField(const char *line, const char *name);
// The value after the ":" (`field` as getField returns it) up to white space or ";".
// LOUD: the character after the value is copied too and no terminator is added; at most `size` characters are
// written. Clear the buffer before and pass one less than it holds.
// 1; 0 when there is no value: the buffer then stays as it is.
int getValue(const char *field, char *buffer, int size);
// The value of `parameter` (case-blind) that stands first after the first ";": in quotation marks, or up to white
// space. The buffer starts as ""; else LOUD as getValue: the closing quotation mark is copied too.
// 1; 0 when the parameter is not there.
int getParam(const char *field, const char *parameter, char *buffer, int size);
