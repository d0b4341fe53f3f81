#include "tests/terminal/keys.h"

#include <curses.h>
#include <term.h>  // last: its macros have everyday names

namespace {

struct KeyRow {
  Key key;
  const char *capability;  // null: the bytes are the same on every terminal
  const char *bytes;
};

constexpr KeyRow kKeys[] = {
    // clang-format off
  //  key                 capability  otherwise
    { Key::Enter,         nullptr,    "\r"      },
    { Key::KeypadEnter,   "kent",     "\033OM"  },
    { Key::Escape,        nullptr,    "\033"    },
    { Key::Space,         nullptr,    " "       },
    { Key::ShiftQuestion, nullptr,    "?"       },
    { Key::Tab,           nullptr,    "\t"      },
    { Key::ShiftTab,      "kcbt",     "\033[Z"  },
    { Key::Backspace,     "kbs",      "\177"    },
    { Key::Delete,        "kdch1",    "\033[3~" },
    { Key::Insert,        "kich1",    "\033[2~" },
    { Key::Up,            "kcuu1",    "\033OA"  },
    { Key::Down,          "kcud1",    "\033OB"  },
    { Key::Left,          "kcub1",    "\033OD"  },
    { Key::Right,         "kcuf1",    "\033OC"  },
    { Key::Home,          "khome",    "\033OH"  },
    { Key::End,           "kend",     "\033OF"  },
    { Key::PageUp,        "kpp",      "\033[5~" },
    { Key::PageDown,      "knp",      "\033[6~" },
    { Key::F1,            "kf1",      "\033OP"  },
    { Key::F2,            "kf2",      "\033OQ"  },
    { Key::F3,            "kf3",      "\033OR"  },
    { Key::F10,           "kf10",     "\033[21~"},
    { Key::ControlC,      nullptr,    "\003"    },
    { Key::ControlL,      nullptr,    "\014"    },
    { Key::ControlZ,      nullptr,    "\032"    },
};  // clang-format on

// tigetstr gives null or -1 for what the type does not have.
bool is_text(const char *capability) { return capability != nullptr && reinterpret_cast<intptr_t>(capability) != -1; }

}  // namespace

std::map<Key, std::string> key_sequences(const std::string &term) {
  int error = 0;
  const bool known = setupterm(term.c_str(), STDOUT_FILENO, &error) == OK;
  std::map<Key, std::string> sequences;
  for (const KeyRow &row : kKeys) {
    const char *found = known && row.capability != nullptr ? tigetstr(row.capability) : nullptr;
    sequences[row.key] = is_text(found) ? found : row.bytes;
  }
  if (known) del_curterm(cur_term);
  return sequences;
}
