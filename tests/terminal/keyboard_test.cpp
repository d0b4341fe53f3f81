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

// Pieces come 50 ms apart. Escape alone has less time on a pseudo-terminal, unless the person wants it otherwise.
void type_slowly(Terminal &t, std::string_view bytes, size_t first_piece) {
  t.type(bytes.substr(0, first_piece));
  for (const char byte : bytes.substr(first_piece)) {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    t.type({&byte, 1});
  }
}

TEST(Keyboard, ASlowLineCutsNoSequence) {
  for (const auto &[setting, first_piece] : {std::pair("HOME=/", 2), std::pair("ESCDELAY=400", 1)}) {
    Terminal t;
    open_new_session(t, {.environment = {setting}});
    const std::string screen = t.screen();
    int bells = t.bells();
    for (const std::string_view unknown : {"\033[24;80R", "\033[M 12", "\033]0;a\033\\", "\033[[Z"}) {
      type_slowly(t, unknown, static_cast<size_t>(first_piece));
      EXPECT_EQ(t.bells(), ++bells) << unknown.substr(1);
      EXPECT_EQ(t.screen(), screen);
    }
    for (const std::string_view down : {"\033[B", "\033OB", "\033[1;5B"}) {
      type_slowly(t, down, static_cast<size_t>(first_piece));
    }
    EXPECT_EQ(t.cursor().row, 13);
    t.type("\033[");  // alone it is Alt and "[", after a while
    t.settle();
    EXPECT_EQ(t.bells(), ++bells);
    t.type("\033\033");  // leaves this menu, and not the first one
    t.see("Create a new configuration file");
  }
}

TEST(Keyboard, APasteGoesIntoAFieldUpToItsLineEndAndNowhereElse) {
  constexpr int kRow = 9, kColumn = 12, kCells = 30;
  const std::string lines = "/a/b\rc\rd\re\rf\rg\rh\ri\rj\rk\rl\rm";
  const struct {
    std::string text, field;
    int beeps;
  } kPastes[] = {
      {"/var/log", "/var/log", 0},
      {"/var/log\r", "/var/log", 0},
      {lines, "/a/b", 1},
      {"/x\t\033[B\033\001?\177\bÿ", "/xÿ", 1},
      {std::string(40, 'x'), std::string(kCells, 'x'), 1},
      {std::string(1 << 20, 'y'), std::string(kCells, 'y'), 1},
  };
  Terminal t;
  open_new_session(t);
  int bells = t.bells();
  t.type("\033[200~" + lines + "\033[201~");
  EXPECT_EQ(t.bells(), ++bells);
  EXPECT_EQ(t.cursor().row, 10);
  choose(t, kPaths);
  for (const auto &paste : kPastes) {
    t.type(std::string(kCells, ' '));
    t.press({Home});
    t.type("\033[200~" + paste.text + "\033[201~");
    ASSERT_TRUE(t.settle(60000));
    const std::string cells = paste.field + std::string(kCells, ' ');
    EXPECT_EQ(t.text(kRow, kColumn, kCells).substr(0, kCells), cells.substr(0, kCells)) << paste.text.substr(0, 50);
    EXPECT_EQ(t.cursor().row, kRow);
    EXPECT_EQ(t.bells(), bells += paste.beeps) << paste.text.substr(0, 50);
    t.press({Home});
  }
  t.type("\033[200~lost end");  // what is typed after a while is typed
  std::this_thread::sleep_for(std::chrono::milliseconds(1200));
  t.press({Escape});
  t.see("Set Path values");
  EXPECT_NE(t.written().find("\033[?2004h"), std::string::npos);
  t.press({Escape, Down, Enter});
  t.wait_exit();
  EXPECT_GT(t.written().rfind("\033[?2004l"), t.written().rfind("\033[?2004h"));
}

TEST(Keyboard, ControlLPaintsAnewAndControlSIsAKey) {
  Terminal t;
  open_new_session(t);
  const std::string screen = t.screen();
  t.disturb("\033[3;1HBroadcast message");
  EXPECT_NE(t.screen(), screen);
  t.press({ControlL});
  EXPECT_EQ(t.screen(), screen);
  t.type("\023");
  t.press({Down});
  EXPECT_EQ(t.cursor().row, 11);
}

TEST(Cursor, StandsOnTheChosenEntryOrTheTextBeforeEachKey) {
  for (const std::string terminal : {"xterm-256color", "vt100", "vt220"}) {
    const bool has_colours = terminal == "xterm-256color";
    Terminal t;
    t.start({.environment = {"TERM=" + terminal}});
    const auto stands_on = [&](const char *text) {
      EXPECT_EQ(t.cursor(), t.find(text)) << terminal << t.dump();
      EXPECT_EQ(t.cursor_visible(), !has_colours) << terminal << text;
    };
    const auto stands_on_row_of = [&](const char *text) {
      EXPECT_EQ(t.cursor().row, t.find(text).row) << terminal << t.dump();
      EXPECT_EQ(t.text(t.cursor().row, t.cursor().column - 1, 2), "│ ") << terminal << t.dump();
      EXPECT_EQ(t.cursor_visible(), !has_colours) << terminal << text;
    };
    stands_on("Create a new");
    t.press({Down});
    stands_on("Exit Configuration");
    t.press({Up, Enter, Down, Enter});
    stands_on("Set UPS values");
    t.press({Up});
    stands_on("Exit Menu");
    t.press({Down, Enter});
    EXPECT_EQ(t.cursor(), (Position{7, 26}));
    EXPECT_TRUE(t.cursor_visible());
    t.press({F10});
    stands_on("You must select");
    t.press({Space, ShiftQuestion});
    stands_on("Enter the UPS Server");
    t.press({Escape, Down, Down, Down, Down, Down, Down, Enter});
    stands_on_row_of("Halvoris 500VA");
    t.press({PageUp, Down, Escape, Escape});
    choose(t, kEvents);
    t.press({Down, Down});
    stands_on_row_of("UPS/System shutdown");
    t.press({Enter});
    stands_on("Sends the messageid");
  }
}

TEST(Start, WithoutATerminalThatShowsScreensOneLineSaysSo) {
  for (const char *command : {"</dev/null", "| cat", "<&-", ">/dev/null", ">&-"}) {
    Terminal t;
    t.start({.options = {"-c", std::string("\"$0\" ") + command + "; echo status $?", KAVSETUP_PROGRAM},
             .program = "/bin/sh"});
    t.wait_exit();
    constexpr char kLine[] = "kavsetup: standard input and output must be a terminal that can move its cursor\r\n";
    EXPECT_EQ(t.written(), kLine + std::string(command[0] == '|' ? "status 0\r\n" : "status 1\r\n")) << command;
  }
  for (const char *type : {"dumb", "no-such-type"}) {
    Terminal t;
    t.start({.environment = {"TERM=" + std::string(type)}});
    EXPECT_EQ(t.wait_exit(), 1);
    EXPECT_EQ(t.written().find('\033'), std::string::npos) << type;
  }
}

}  // namespace
