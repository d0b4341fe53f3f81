// Pieces of a text that a separator string divides. Positions count from 1.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

// Piece n of `text`, where it lies: n - 1 separators are skipped. Empty text, n < 1 or a text with fewer pieces gives
// ""; an empty separator the whole text for any n >= 1.
std::string_view piece_of(std::string_view text, std::string_view sep, int n);
// A copy of it in `out` (`size` bytes), at most size - 1 characters. Returns `out`.
char *ctoken(char *out, int size, const char *text, const char *sep, int n);
char *UCTctoken(char *out, int size, const char *text, const char *sep, int n);
char *UCTtoken(char *out, int size, const char *text, const char *sep, int n);
// The number of pieces: 0 for an empty text, 1 for an empty separator, else the separators + 1.
int cnumtoken(const char *text, const char *sep);
int UCTcnumtoken(const char *text, const char *sep);

// As ctoken and cnumtoken, but leading separators are skipped and a run of separators counts as one.
char *token(char *out, int size, const char *text, const char *sep, int n);
int numtoken(const char *text, const char *sep);
int UCTnumtoken(const char *text, const char *sep);

// The pieces, with `sep` between two.
std::string joined(std::span<const std::string> pieces, std::string_view sep);

// The lines of a text, without their line feeds; the last one is what comes after the last of these, "" for nothing.
std::vector<std::string_view> split_lines(std::string_view text);

// The number of words separated by white space (is_white_space).
int wp_numtoken(const char *text);
