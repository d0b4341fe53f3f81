// What keyboards, mice and terminals send, on ten types of terminal.
#pragma once

#include <initializer_list>

#include "screen/keys.h"

inline constexpr const char *kTerminalTypes[] = {"xterm", "xterm-256color", "linux", "screen-256color", "tmux-256color",
                                                 "rxvt",  "vt100",          "vt102", "vt220",           "ansi"};

struct SentByKeyboards {
  int key;                                        // kNoKey: nothing that we know
  std::initializer_list<const char *> sequences;  // after Escape
};

inline constexpr SentByKeyboards kSentByKeyboards[] = {
    // clang-format off
    // key                normal and application mode, modifiers, older terminals, Alt, keypad
    {kKeyUp,           {"[A", "OA", "[1;3A", "[a", "Oa"}},
    {kKeyDown,         {"[B", "OB", "O5B", "\033[B", "[1;5B", "Or"}},
    {kKeyRight,        {"[C", "OC", "[1;2C", "Oc"}},
    {kKeyLeft,         {"[D", "OD", "[1;5D", "[5D", "\033OD"}},
    {kKeyHome,         {"[H", "OH", "[1;5H", "[1~", "[7~", "[7$"}},
    {kKeyEnd,          {"[F", "OF", "[1;5F", "[4~", "[8~", "[8^"}},
    {kKeyPreviousPage, {"[5~", "Oy"}},
    {kKeyNextPage,     {"[6~", "[6;2~", "Os"}},
    {kKeyInsert,       {"[2~"}},
    {kKeyDelete,       {"[3~", "[3;5~", "[3@", "On"}},
    {kKeyBackTab,      {"[Z"}},
    {kKeyEnter,        {"OM"}},
    {kKeyF0 + 1,       {"[11~", "OP"}},
    {kKeyF10,          {"[21~", "[21;5~"}},
    {kNoKey,           {"x", "\r", ";", "\177", "\303\244"}},                                          // Alt
    {kNoKey,           {"[24;80R", "[?62;1;4c", "[>41;354;0c", "[?2004;1$y", "[0n", "[I"}},        // answers, focus
    {kNoKey,           {"]11;rgb:0/0/0\033\\", "]52;c;QUJD\a", "P>|XTerm(380)\033\\", "_x\a"}},  // and long ones
    {kNoKey,           {"[M 12", "[<0;12;7M", "[<0;12;7m", "[32;12;7M", "[27;5;9~", "[99~", "[[Z"}},  // mouse
    // clang-format on
};
