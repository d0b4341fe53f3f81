#include "screen/mask_template.h"

#include <algorithm>
#include <cstdio>
#include <span>
#include <string_view>

#include "screen/draw.h"
#include "util/files.h"

namespace {

constexpr char kOpen = '>';
constexpr char kClose = '<';

bool is_type_character(char c) { return c == '_' || (c >= '0' && c <= '9'); }

// The descriptor of the field whose type character is at `start` and which is closed at `close`.
FieldDescriptor describe_field(char type, size_t start, size_t close) {
  const size_t col = start % kImageColumns;
  const size_t length = std::min(close - start, kImageColumns - col);
  return {.type = static_cast<uint8_t>(type == '_' ? 0 : type - '0'),
          .row = static_cast<uint8_t>(start / kImageColumns),
          .col = static_cast<uint8_t>(col),
          .length = static_cast<uint8_t>(length)};
}

// Reads a template into Sysbuff, which keeps what it holds when that fails.
bool read_template(const char *path) {
  const Stream file(OpenAFile(path, "rb"));
  if (file == nullptr || Sysbuff == nullptr) return false;
  char content[kImageSize];
  const size_t count = std::fread(content, 1, sizeof content, file.get());
  if (std::ferror(file.get()) != 0) return false;
  fill_cells({Sysbuff, kImageSize}, {content, count});
  return true;
}

}  // namespace

int search_fields(char *screen, FieldDescriptor *tab) {
  const std::string_view text(screen, kImageSize);
  FieldDescriptor *next = tab;
  for (size_t at = text.find(kOpen); at < text.size() - 1; at = text.find(kOpen, at + 1)) {
    if (!is_type_character(text[at + 1])) continue;
    const size_t close = text.find(kClose, at + 1);
    if (close == std::string_view::npos) break;
    *next++ = describe_field(text[at + 1], at + 1, close);
    std::fill(screen + at, screen + close + 1, ' ');
  }
  *next = {kFieldEnd, 0, 0, 0};
  return next != tab ? 1 : 0;
}

int show_mask(WINDOW *win, const char *path, FieldDescriptor *tab, int32_t attr) {
  if (!read_template(path)) return -1;
  wcls(win);
  search_fields(Sysbuff, tab);
  show_msk(win, Sysbuff, attr);
  return 0;
}

int show_tmask(WINDOW *win, const char *path, FieldDescriptor *tab, int32_t attr, int row1, int col1, int row2,
               int col2) {
  if (!read_template(path)) return -1;
  search_fields(Sysbuff, tab);
  show_tmsk(win, Sysbuff, row1, col1, row2, col2, attr);
  return 0;
}

void show_msk(WINDOW *win, const char *screen, int32_t attr) {
  show_tmsk(win, screen, 0, 0, kImageRows - 1, kImageColumns - 1, attr);
}

void show_tmsk(WINDOW *win, const char *screen, int row1, int col1, int row2, int col2, int32_t attr) {
  for (int row = std::max(row1, 0); row <= std::min(row2, kImageRows - 1); ++row) {
    const std::span<char> cells = image_cells(Edit_screen, row, col1, col2 - col1 + 1);
    if (cells.empty()) continue;
    const std::string_view shown(screen + cell_index(row, col1), cells.size());
    std::copy(shown.begin(), shown.end(), cells.begin());
    draw_cells(win, shown, attr, row, col1);
  }
  wsetattr(win, kAttrNormal);
}
