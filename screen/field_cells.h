// Cells of the forms' screen images: inside the image only, and with two-byte characters (EUC-JP) whole or marked as
// broken. One byte is one cell.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "screen/maskelib.h"

// A cell whose character lost its other half. A control byte: it shows as "?".
inline constexpr char kHalfCharacter = 0x1A;

// True for the values that both bytes of a two-byte character have.
constexpr bool is_two_byte_part(int byte) { return byte >= 0xA1 && byte <= 0xFE; }

// Where the image has the cell (row, col), which lies in it.
constexpr size_t cell_index(int row, int col) {
  return static_cast<size_t>(row) * kImageColumns + static_cast<size_t>(col);
}
// The cells of `image` (kImageSize bytes; null: none) from (row, col) on: at most `length`, up to the end of the row.
std::span<char> image_cells(char *image, int row, int col, int length);
// `text` into the cells, blanks behind it; what does not fit is cut.
void fill_cells(std::span<char> cells, std::string_view text);
// Writes the text at (row, col) of the window, as much as fits into it; a NUL shows as a blank.
void draw_cells(WINDOW *win, std::string_view text, int32_t attr, int row, int col);

// Before a change at `boundary`: the character that has cells on both sides of it becomes halves.
void part_characters(std::span<char> cells, int boundary);
// Halves, and bytes that are no character, become blanks.
void blank_halves(std::span<char> cells);

// The first `length` bytes of a text; without the last one when, in Japanese, it would be half of a character.
std::string_view cut_text(std::string_view text, size_t length);
