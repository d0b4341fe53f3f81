#include "screen/maskelib.h"

#include <cstring>
#include <iterator>
#include <memory>
#include <new>

#include "screen/field_cells.h"
#include "util/numbers.h"
#include "util/text.h"

char *Edit_screen, *User1_screen, *User2_screen, *Sysbuff;
int32_t attr_dkl = 0x100000;
int32_t attr_hell = kAttrHighlight;
int32_t null_unt = 1;
int32_t old = -1;
int32_t case_up, anz_block, normal_cu, num_lock, key_wait, ins_flag, swirch_cu;

namespace {

constexpr int kFieldTextSize = 256;  // longest field and terminator

void get_number(char *buf, const void *member, int type, int length) {
  int32_t value;
  std::memcpy(&value, member, sizeof value);
  char digits[34];
  if (type == kFieldSignedNumber) {
    qltoa(value, digits, 10);
  } else {
    qultoa(static_cast<uint32_t>(value), digits, 10);
  }
  cpynstr(buf, digits, length + 1);
  maskelib::strpad(buf, length, null_unt != 0 ? ' ' : '0', 2, 1);
}

}  // namespace

int init_masklib() {
  static std::unique_ptr<char[]> buffers[4];
  char **const names[] = {&Edit_screen, &User1_screen, &User2_screen, &Sysbuff};
  for (size_t i = 0; i < std::size(buffers); ++i) {
    if (buffers[i] == nullptr) buffers[i].reset(new (std::nothrow) char[kImageSize]());
    if (buffers[i] == nullptr) return 1;
    *names[i] = buffers[i].get();
  }
  mcls();
  return 0;
}

void clear_buffer(char *buf, char ch) { std::memset(buf, ch, kImageSize); }

void mcls() { clear_buffer(Edit_screen, ' '); }

void copy_screen(char *dst, const char *src) { std::memmove(dst, src, kImageSize); }

void set_sysattr(int32_t attr) { setattr(attr); }

void *recptr(void *rec, const FieldDescriptor *tab, int i) {
  const int offset = member_offset(tab, i);
  return offset < 0 ? nullptr : static_cast<char *>(rec) + offset;
}

void get_data(char *buf, const void *member, int type, int length) {
  if (is_skip_field(type)) return;
  if (is_number_field(type)) {
    get_number(buf, member, type, length);
  } else if (is_text_field(type)) {
    const auto *text = static_cast<const char *>(member);
    cpyvar(buf, {text, strnlen(text, static_cast<size_t>(length))}, length);
  }
}

void put_data(void *member, const char *text, int type, int length) {
  if (is_skip_field(type)) return;
  if (is_number_field(type)) {
    const int32_t value = to_int32(text);
    std::memcpy(member, &value, sizeof value);
  } else if (is_text_field(type)) {
    const auto room = static_cast<size_t>(length);
    const std::string_view taken = cut_text(text, room);
    auto *bytes = static_cast<char *>(member);
    std::memmove(bytes, taken.data(), taken.size());
    std::memset(bytes + taken.size(), 0, room - taken.size());
  }
}

int get_field(const void *rec, const FieldDescriptor *tab, int i, char *buf) {
  const int offset = member_offset(tab, i);
  if (offset < 0) return -1;
  get_data(buf, static_cast<const char *>(rec) + offset, tab[i].type, tab[i].length);
  return 0;
}

int put_field(void *rec, const FieldDescriptor *tab, int i, const char *text) {
  void *member = recptr(rec, tab, i);
  if (member == nullptr) return -1;
  put_data(member, text, tab[i].type, tab[i].length);
  return 0;
}

int show_field(WINDOW *win, const void *rec, const FieldDescriptor *tab, int i, int32_t attr) {
  char text[kFieldTextSize] = "";
  if (get_field(rec, tab, i, text) != 0) return -1;
  const FieldDescriptor &field = tab[i];
  if (is_skip_field(field.type)) return 0;

  const std::span<char> cells = image_cells(Edit_screen, field.row, field.col, field.length);
  fill_cells(cells, text);
  draw_cells(win, {cells.data(), cells.size()}, attr, field.row, field.col);
  wshow(win);
  wsetattr(win, kAttrNormal);
  return 0;
}

void show_rec(WINDOW *win, const void *rec, const FieldDescriptor *tab, int32_t attr) {
  for (int i = 0; show_field(win, rec, tab, i, attr) == 0;) ++i;
}
