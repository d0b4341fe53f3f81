#include "screen/field_cells.h"

#include <algorithm>
#include <string>

#include "util/language.h"

namespace {

constexpr int kKana = 0x8E;        // leads a half-width kana of two bytes,
constexpr int kThreeBytes = 0x8F;  // a character of three bytes

int byte_at(std::span<const char> cells, size_t at) { return static_cast<unsigned char>(cells[at]); }

// The number of cells of the character at `at`; 1 also for a byte that begins no whole character.
size_t character_cells(std::span<const char> cells, size_t at) {
  const int lead = byte_at(cells, at);
  const size_t count = lead == kThreeBytes ? 3 : lead == kKana || is_two_byte_part(lead) ? 2 : 1;
  if (at + count > cells.size()) return 1;
  for (size_t i = 1; i < count; ++i) {
    if (!is_two_byte_part(byte_at(cells, at + i))) return 1;
  }
  return count;
}

}  // namespace

std::span<char> image_cells(char *image, int row, int col, int length) {
  if (image == nullptr || row < 0 || row >= kImageRows || col < 0 || col >= kImageColumns) return {};
  const int count = std::clamp(length, 0, kImageColumns - col);
  return std::span(image, kImageSize).subspan(cell_index(row, col), static_cast<size_t>(count));
}

void fill_cells(std::span<char> cells, std::string_view text) {
  const std::string_view taken = text.substr(0, cells.size());
  std::copy(taken.begin(), taken.end(), cells.begin());
  std::fill(cells.begin() + static_cast<std::ptrdiff_t>(taken.size()), cells.end(), ' ');
}

void draw_cells(WINDOW *win, std::string_view text, int32_t attr, int row, int col) {
  std::string shown(text);
  std::ranges::replace(shown, '\0', ' ');
  wprintv_cut(win, shown, attr, row, col, getmaxx(win) - col);
}

void part_characters(std::span<char> cells, int boundary) {
  const auto limit = std::min(static_cast<size_t>(std::max(boundary, 0)), cells.size());
  for (size_t at = 0; at < limit;) {
    const size_t count = character_cells(cells, at);
    if (at + count > limit) std::ranges::fill(cells.subspan(at, count), kHalfCharacter);
    at += count;
  }
}

void blank_halves(std::span<char> cells) {
  for (size_t at = 0; at < cells.size();) {
    const size_t count = character_cells(cells, at);
    if (cells[at] == kHalfCharacter || (count == 1 && byte_at(cells, at) >= 0x80)) cells[at] = ' ';
    at += count;
  }
}

std::string_view cut_text(std::string_view text, size_t length) {
  if (language == 0 || text.size() <= length) return text.substr(0, length);
  size_t taken = 0;
  for (size_t next = 0; next <= length; next += character_cells(text, next)) taken = next;
  return text.substr(0, taken);
}
