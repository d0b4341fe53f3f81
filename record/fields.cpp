#include "record/fields.h"

#include <cstring>
#include <iterator>
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
  strpad(buf, length, null_unt != 0 ? ' ' : '0', kRight, 1);
}

enum class Takes { only, all_but };

// Which characters may be typed into a field.
struct FieldFilter {
  int type;
  Takes takes;
  std::string_view characters;
  std::string_view not_first;  // refused in the first cell
};

constexpr std::string_view kDigits = "0123456789";

constexpr FieldFilter kFilters[] = {
    // clang-format off
  // type  takes            characters              not in the first cell
    {   0, Takes::all_but, "|\\",                  ""      },
    {   1, Takes::only,    "0123456789. ",         ""      },
    {   2, Takes::only,    "0123456789. ",         ""      },
    {   3, Takes::all_but, "|\\",                  kDigits },
    {   4, Takes::only,    "0123456789. ",         ""      },
    {   5, Takes::all_but, "|",                    ""      },
    {   6, Takes::only,    "0123456789/.: ",       ""      },
    {   7, Takes::only,    "0123456789/.: ",       ""      },
    {   8, Takes::all_but, "|",                    ""      },
    {   9, Takes::all_but, "|",                    ""      },
    {  10, Takes::all_but, "|\\:;?<&>*^!,",        kDigits },
    {  11, Takes::all_but, "|\\();\",",            kDigits },
    {  12, Takes::only,    "0123456789 ",          ""      },
    {  13, Takes::only,    "",                     ""      },
    {  14, Takes::only,    "0123456789 default",   ""      },
    {  15, Takes::all_but, "|\\)(;\",",            "."     },
    {  16, Takes::only,    "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ", "" },
    {  17, Takes::all_but, "|\\();\"",             ""      },
    {  18, Takes::only,    "",                     ""      },
    {  19, Takes::only,    "",                     ""      },
    {  20, Takes::only,    "",                     ""      },
    // clang-format on
};
constexpr FieldFilter kOtherTypes = {kFieldEnd, Takes::all_but, "|", ""};

constexpr bool rows_stand_at_their_type() {
  for (size_t i = 0; i < std::size(kFilters); ++i) {
    if (kFilters[i].type != static_cast<int>(i)) return false;
  }
  return std::size(kFilters) == kFieldReadOnlyNumber + 1;
}
static_assert(rows_stand_at_their_type());

const FieldFilter &filter_of(int type) {
  return type >= 0 && type <= kFieldReadOnlyNumber ? kFilters[type] : kOtherTypes;
}

constexpr int kLastControl = 31;
constexpr int kDelete = 127;

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

bool accepts_character(int type, int position, int ch) {
  if (ch <= kLastControl || ch == kDelete || ch > 0xFF) return false;
  const FieldFilter &filter = filter_of(type);
  const auto c = static_cast<char>(ch);
  if (position == 0 && filter.not_first.find(c) != std::string_view::npos) return false;
  const bool listed = filter.characters.find(c) != std::string_view::npos;
  return listed == (filter.takes == Takes::only);
}

void finish_text(char *text, int type) {
  stripstr(text);
  if (text[0] == '\0') return;
  if (type == kFieldDigits || (type == kFieldDefaultOrDigits && std::strcmp(text, "default") != 0)) {
    drop_leading_zeros(text);
  }
}

char *stripstr(char *str) { return UCTstrip_trailing_char(str, ' '); }

char *drop_leading_zeros(char *str) { return qitoa(to_int32(str), str, 10); }
