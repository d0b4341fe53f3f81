#include "record/typed_text.h"

#include <cstring>
#include <iterator>
#include <string_view>

#include "record/fields.h"
#include "util/numbers.h"
#include "util/text.h"

namespace {

enum class Takes { kOnly, kAllBut };

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
  // type  takes           characters              not in the first cell
    {   0, Takes::kAllBut, "|\\",                  ""      },
    {   1, Takes::kOnly,   "0123456789. ",         ""      },
    {   2, Takes::kOnly,   "0123456789. ",         ""      },
    {   3, Takes::kAllBut, "|\\",                  kDigits },
    {   4, Takes::kOnly,   "0123456789. ",         ""      },
    {   5, Takes::kAllBut, "|",                    ""      },
    {   6, Takes::kOnly,   "0123456789/.: ",       ""      },
    {   7, Takes::kOnly,   "0123456789/.: ",       ""      },
    {   8, Takes::kAllBut, "|",                    ""      },
    {   9, Takes::kAllBut, "|",                    ""      },
    {  10, Takes::kAllBut, "|\\:;?<&>*^!,",        kDigits },
    {  11, Takes::kAllBut, "|\\();\",",            kDigits },
    {  12, Takes::kOnly,   "0123456789 ",          ""      },
    {  13, Takes::kOnly,   "",                     ""      },
    {  14, Takes::kOnly,   "0123456789 default",   ""      },
    {  15, Takes::kAllBut, "|\\)(;\",",            "."     },
    {  16, Takes::kOnly,   "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ", "" },
    {  17, Takes::kAllBut, "|\\();\"",             ""      },
    {  18, Takes::kOnly,   "",                     ""      },
    {  19, Takes::kOnly,   "",                     ""      },
    {  20, Takes::kOnly,   "",                     ""      },
    // clang-format on
};
constexpr FieldFilter kOtherTypes = {kFieldEnd, Takes::kAllBut, "|", ""};

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

int accepts_character(int type, int position, int ch) {
  if (ch <= kLastControl || ch == kDelete || ch > 0xFF) return 0;
  const FieldFilter &filter = filter_of(type);
  const auto c = static_cast<char>(ch);
  if (position == 0 && filter.not_first.find(c) != std::string_view::npos) return 0;
  const bool listed = filter.characters.find(c) != std::string_view::npos;
  return listed == (filter.takes == Takes::kOnly) ? 1 : 0;
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
