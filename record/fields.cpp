#include "record/fields.h"

#include <cstring>
#include <string_view>

#include "util/charset.h"
#include "util/numbers.h"
#include "util/text.h"

int32_t null_unt = 1;

namespace {

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
  strpad(buf, length, null_unt != 0 ? ' ' : '0', 2, 1);
}

}  // namespace

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
