// What keyboards, mice, terminals and pastes send, on many types of terminal: no screen closes and no text changes by
// what is no key of ours, and the cursor tells where one is.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>

#include "screen/list.h"
#include "screen/sequences.h"
#include "tests/terminal/session.h"

namespace {

constexpr const char *kTerminals[] = {"xterm", "xterm-256color", "linux", "screen-256color", "tmux-256color",
                                      "rxvt",  "vt100",          "vt102", "vt220",           "ansi"};
constexpr int kUnknown = kNoKey, kF1 = kKeyF0 + 1;

struct Sent {
  std::string_view bytes;
  int key;
  int on_vt100 = -1;  // where its description has another key in that place
};

constexpr Sent kSent[] = {
    // clang-format off
  // bytes                       key
    {"\033[A",                   kKeyUp},  // normal and application mode
    {"\033[B",                   kKeyDown},
    {"\033[C",                   kKeyRight},
    {"\033[D",                   kKeyLeft},
    {"\033OB",                   kKeyDown},
    {"\033OC",                   kKeyRight},
    {"\033OD",                   kKeyLeft},
    {"\033OA",                   kKeyUp},
    {"\033[1;5D",                kKeyLeft},  // modifiers
    {"\033[1;2C",                kKeyRight},
    {"\033[1;3A",                kKeyUp},
    {"\033O5B",                  kKeyDown},
    {"\033[5D",                  kKeyLeft},
    {"\033Oc",                   kKeyRight},
    {"\033[a",                   kKeyUp},
    {"\033\033[B",               kKeyDown},
    {"\033\033OD",               kKeyLeft},
    {"\033[1;5F",                kKeyEnd},
    {"\033[1;5H",                kKeyHome},
    {"\033[3;5~",                kKeyDelete},
    {"\033[6;2~",                kKeyNextPage},
    {"\033[4~",                  kKeyEnd},  // PuTTY, VT220, the console, rxvt
    {"\033[1~",                  kKeyHome},
    {"\033[8~",                  kKeyEnd},
    {"\033[7~",                  kKeyHome},
    {"\033[8^",                  kKeyEnd},
    {"\033[7$",                  kKeyHome},
    {"\033[F",                   kKeyEnd},
    {"\033[H",                   kKeyHome},
    {"\033OF",                   kKeyEnd},
    {"\033OH",                   kKeyHome},
    {"\033[5~",                  kKeyPreviousPage},
    {"\033[6~",                  kKeyNextPage},
    {"\033[2~",                  kKeyInsert},
    {"\033[3~",                  kKeyDelete},
    {"\033[11~",                 kF1},
    {"\033OP",                   kF1},
    {"\033[Z",                   kKeyBackTab},
    {"\033Ox",                   kKeyUp, kKeyF10},  // keypad
    {"\033Or",                   kKeyDown},
    {"\033Oy",                   kKeyPreviousPage},
    {"\033Os",                   kKeyNextPage},
    {"\033On",                   kKeyDelete},
    {"\033OM",                   kKeyEnter},
    {"\033[21~",                 kKeyF10},
    {"\033[21;5~",               kKeyF10},
    {"\033x",                    kUnknown},  // Alt
    {"\033\r",                   kUnknown},
    {"\033;",                    kUnknown},
    {"\033\177",                 kUnknown},
    {"\033\303\244",             kUnknown},
    {"\033[I",                   kUnknown},  // focus
    {"\033[24;80R",              kUnknown},  // answers of the terminal
    {"\033[?62;1;4c",            kUnknown},
    {"\033[>41;354;0c",          kUnknown},
    {"\033[?2004;1$y",           kUnknown},
    {"\033[0n",                  kUnknown},
    {"\033]11;rgb:0/0/0\033\\",  kUnknown},
    {"\033]52;c;QUJD\a",         kUnknown},
    {"\033P>|XTerm(380)\033\\",  kUnknown},
    {"\033[M 12",                kUnknown},  // mouse
    {"\033[<0;12;7M",            kUnknown},
    {"\033[<0;12;7m",            kUnknown},
    {"\033[32;12;7M",            kUnknown},
    {"\033[27;5;9~",             kUnknown},
    {"\033[99~",                 kUnknown},
    // clang-format on
};

int key_on(const Sent &sent, std::string_view terminal) {
  return sent.on_vt100 >= 0 && (terminal == "vt100" || terminal == "vt102") ? sent.on_vt100 : sent.key;
}

// Sends it; it beeps when it should and only then.
void send(Terminal &t, const Sent &sent, bool beeps) {
  const int before = t.bells();
  t.type(sent.bytes);
  EXPECT_EQ(t.bells() - before, beeps ? 1 : 0) << sent.bytes.substr(1) << t.dump();
}

bool chooses(int key) { return key == kKeyEnter; }

void press_all_in_menu(Terminal &t, std::string_view terminal) {
  const std::string screen = t.screen();
  int entry = 1;
  for (const Sent &sent : kSent) {
    const int key = key_on(sent, terminal);
    if (chooses(key)) continue;
    send(t, sent, key == kUnknown);
    if (key == kKeyUp) entry = entry == 1 ? 8 : entry - 1;
    if (key == kKeyDown) entry = entry == 8 ? 1 : entry + 1;
    EXPECT_EQ(t.cursor().row, 9 + entry) << terminal << sent.bytes.substr(1) << t.dump();
    EXPECT_TRUE(t.screen() == screen) << terminal << sent.bytes.substr(1) << t.dump();
  }
  while (entry-- > 1) t.press({Up});
}

// The list of the sample's models, from its first entry on.
void press_all_in_list(Terminal &t, std::string_view terminal) {
  const int top = t.cursor().row;
  t.type("\033[F");
  const int visible = t.cursor().row - top + 1;
  constexpr int kModels = 40;
  int32_t first = kModels - visible + 1, cursor = visible;
  for (const Sent &sent : kSent) {
    const int key = key_on(sent, terminal);
    if (chooses(key)) continue;
    const std::string before = t.screen();
    const int32_t first_before = first;
    send(t, sent, key == kUnknown);
    ProcessListKeyboard(key, &first, &cursor, kModels, visible);
    EXPECT_EQ(t.cursor().row, top + cursor - 1) << terminal << sent.bytes.substr(1) << t.dump();
    EXPECT_EQ(t.screen() == before, first == first_before) << terminal << sent.bytes.substr(1) << t.dump();
  }
}

// The fields of the path mask, with the cursor on the first one.
void press_all_in_fields(Terminal &t, std::string_view terminal) {
  std::vector<Position> fields = {t.cursor()};
  for (int i = 0; i < 3; ++i) {
    t.press({Down});
    fields.push_back(t.cursor());
  }
  t.type("\033[H");
  const std::string screen = t.screen();
  size_t field = 0;
  int position = 0;
  for (const Sent &sent : kSent) {
    const int key = key_on(sent, terminal);
    if (chooses(key)) continue;
    const bool edits = key == kKeyDelete || key == kKeyInsert || key == kF1 || key == kKeyBackTab ||
                       key == kKeyNextPage || key == kKeyPreviousPage;
    send(t, sent, key == kUnknown || edits);
    if (key == kKeyF10) {
      EXPECT_EQ(t.find("Set Path values").row, 12) << terminal << t.dump();
      choose(t, kPaths);
    }
    const bool leaves = key == kKeyLeft && position == 0;
    if (key == kKeyRight) ++position;
    if (key == kKeyLeft && position > 0) --position;
    if (key == kKeyHome || key == kKeyF10) field = 0;
    if (key == kKeyEnd) field = 3;
    if ((key == kKeyUp || leaves) && field > 0) --field;
    if (key == kKeyDown && field < 3) ++field;
    if (key == kKeyUp || key == kKeyDown || key == kKeyHome || key == kKeyEnd || key == kKeyF10 || leaves) position = 0;
    EXPECT_EQ(t.cursor(), (Position{fields[field].row, fields[field].column + position}))
        << terminal << sent.bytes.substr(1) << t.dump();
    EXPECT_TRUE(t.screen() == screen) << terminal << sent.bytes.substr(1) << t.dump();
  }
}

// Any known key closes a box.
void press_all_in_box(Terminal &t, std::string_view terminal) {
  constexpr char kBox[] = "You must select";
  for (const Sent &sent : kSent) {
    if (t.find(kBox).row < 0) t.press({F10});
    const int key = key_on(sent, terminal);
    send(t, sent, key == kUnknown);
    EXPECT_EQ(t.find(kBox).row >= 0, key == kUnknown) << terminal << sent.bytes.substr(1) << t.dump();
  }
}

TEST(Keyboard, KnownSequencesAreTheirKeysAndUnknownOnesNothingOnEveryTerminal) {
  for (const std::string terminal : kTerminals) {
    Terminal t;
    open_new_session(t, {.environment = {"TERM=" + terminal}});
    press_all_in_menu(t, terminal);
    choose(t, kPaths);
    press_all_in_fields(t, terminal);
    t.press({Escape});
    choose(t, kUps);
    t.press({Down, Down, Down, Down, Down, Down, Enter});
    press_all_in_list(t, terminal);
    t.press({Escape});
    press_all_in_box(t, terminal);
    ASSERT_FALSE(HasFailure()) << terminal << t.dump();
  }
}

}  // namespace
