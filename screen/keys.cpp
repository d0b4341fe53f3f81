#include "screen/keys.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <string>
#include <utility>

#include "screen/draw.h"
#include "screen/terminal.h"
#include "util/charset.h"
#include "util/text.h"

namespace {

constexpr int kDelete = 127;          // what many terminals send for Backspace
constexpr int kSameCharacter = 100;   // ms within which the bytes of a character follow each other
constexpr int kSameSequence = 1000;   // ms, those of a sequence that can be nothing else; the characters of a paste
constexpr size_t kLongSequence = 64;  // from here on what is in the middle of one is dropped
constexpr int kLineBuffer = 280;

// Bytes of a typed character that were not handed out yet. Written by everything here that reads.
std::string rest_of_character;

// The paste that is being read.
struct Paste {
  bool is_open = false;
  bool has_line_end = false;  // which was read: what follows is refused
  bool has_beeped = false;
};
Paste paste;

bool is_high_byte(int key) { return key >= 0x80 && key <= 0xFF; }

// The first byte of what is typed next, or a key that was put back, from a window in no-delay mode; ERR when none came
// within `limit` milliseconds (-1: without limit) or reading failed.
int read_first(WINDOW *win, int limit) {
  for (bool arrived = false;;) {
    errno = 0;
    const int key = wgetch(win);
    if (key != ERR) return key;
    if (arrived) {
      // an orphan in the background is refused the terminal with EIO
      if (errno == EIO || input_has_ended()) leave_lost_terminal();
      return ERR;
    }
    const TerminalSize size = take_new_size();
    if (size.rows > 0) adopt_terminal_size(size.rows, size.columns);
    if (signal_to_leave() != 0) leave_lost_terminal();
    update_terminal(win);
    const Arrival arrival = wait_for_input(limit);
    if (arrival == Arrival::nothing) return ERR;
    arrived = arrival == Arrival::input;
  }
}

// A byte that follows another one within so many milliseconds; ERR when none does.
int read_next(WINDOW *win, int limit) {
  for (;;) {
    const int key = wgetch(win);
    if (key != ERR) return key;
    const Arrival arrival = wait_for_input(limit);
    if (arrival == Arrival::nothing) return ERR;
    if (arrival == Arrival::input) return wgetch(win);
  }
}

void put_back(std::string_view bytes) {
  for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte) ungetch(static_cast<unsigned char>(*byte));
}

// Reads the rest of the character that begins with the byte `first`; its first byte as texts have it.
int read_character(WINDOW *win, int first, Charset charset) {
  std::string typed(1, static_cast<char>(first));
  TypedCharacter character = typed_character(typed, charset);
  while (character.bytes == 0) {
    const int next = read_next(win, kSameCharacter);
    if (!is_high_byte(next)) {
      if (next != ERR) ungetch(next);
      return kKeyUnfit;
    }
    typed += static_cast<char>(next);
    character = typed_character(typed, charset);
  }
  const std::string_view last = std::string_view(typed).substr(typed.size() - 1);
  const bool begins_another = character.bytes < typed.size() && typed_character(last, charset).bytes == 0;
  if (begins_another) ungetch(static_cast<unsigned char>(last.front()));
  if (character.text.empty()) return kKeyUnfit;
  rest_of_character = character.text.substr(1);
  return static_cast<unsigned char>(character.text.front());
}

// --- sequences

// The key by the terminal's description, kNoKey when that lacks it; curses takes no part in a mouse.
int described_key(const std::string &sequence) {
  const int key = key_defined(sequence.c_str());
  return key > 0xFF && key != KEY_MOUSE ? key : kNoKey;
}

// The description is right where it puts a key that we know. What it has besides counts where we know nothing.
int key_of(const std::string &sequence) {
  const int described = described_key(sequence);
  const int known = key_of_sequence(sequence);
  return known == kNoKey || is_known_key(described) ? described : known;
}

int limit_of(Patience patience) { return patience == Patience::brief ? std::max(get_escdelay(), 0) : kSameSequence; }

// Reads what belongs to the Escape that was read. The key, kNoKey for an unknown one.
int read_sequence(WINDOW *win) {
  std::string typed = "\033";
  SequenceLength length = sequence_length(typed);
  while (length.bytes == 0) {
    int next = read_next(win, limit_of(length.patience));
    if (next == kKeyBackspace) next = kDelete;  // curses knows this key by its byte
    if (next == ERR || next > 0xFF) {
      if (next != ERR) ungetch(next);
      length.bytes = unfinished_length(typed);
      break;
    }
    typed += static_cast<char>(next);
    if (typed.size() > kLongSequence) typed.erase(kLongSequence / 2, 1);
    length = sequence_length(typed);
    if (length.bytes == 0 && described_key(typed) != kNoKey) length.bytes = typed.size();
  }
  put_back(std::string_view(typed).substr(length.bytes));
  typed.resize(length.bytes);
  const int last = static_cast<unsigned char>(typed.back());
  if (is_high_byte(last)) {  // Alt and a character
    read_character(win, last, present_charset());
    rest_of_character.clear();
  }
  return typed.size() == 1 ? kKeyEscape : key_of(typed);
}

// --- pastes

// One byte of a paste, or a sequence in it. The byte, when an edited text may have it, else kNoKey.
int take_pasted(int key, bool edits) {
  if (key == ERR || key == kPasteEnds) {
    paste = {};
  } else if (key == kKeyReturn || key == kKeyLineFeed) {
    paste.has_line_end = true;
  } else if (!edits || paste.has_line_end || key < ' ' || key > 0xFF || key == kDelete || key == kKeyHelp) {
    refuse_typed();
  } else {
    return key;
  }
  return kNoKey;
}

// The next key, or byte of a character, from a window in no-delay mode; ERR as read_first.
int read_key(WINDOW *win, int limit, bool edits) {
  for (;;) {
    int key = paste.is_open ? read_next(win, kSameSequence) : read_first(win, limit);
    if (key == kKeyEscape) key = read_sequence(win);
    if (paste.is_open) {
      key = take_pasted(key, edits);
      if (key != kNoKey) return key;
    } else if (key == kPasteBegins) {
      paste = {.is_open = true};
    } else if (key == kNoKey || key == kPasteEnds) {
      refuse_typed();
    } else if (key == kKeyControlL) {
      wrefresh(curscr);
    } else {
      return key;
    }
  }
}

// A key in the encoding of texts, from a window in no-delay mode; ERR as read_first.
int read_text_key(WINDOW *win, int limit, bool edits) {
  if (!rest_of_character.empty()) {
    const int key = static_cast<unsigned char>(rest_of_character.front());
    rest_of_character.erase(0, 1);
    return key;
  }
  const int key = read_key(win, limit, edits);
  if (key == kDelete) return kKeyBackspace;
  return is_high_byte(key) ? read_character(win, key, present_charset()) : key;
}

int read_from(WINDOW *win, bool edits) {
  if (win == nullptr) return 0;
  wshow(win);  // else each byte that is read would send what was drawn on the window
  const bool waits = !is_nodelay(win);
  nodelay(win, TRUE);
  const int key = read_text_key(win, waits ? -1 : 0, edits);
  nodelay(win, waits ? FALSE : TRUE);
  return key == ERR ? 0 : key;
}

// --- editing one line

// A line that is edited; its attribute is the window's.
struct LineInput {
  WINDOW *win;
  int row;
  int col;
  int length;
  std::string text;
  int position;  // of the cursor
};

LineInput line_input(WINDOW *win, int row, int col, int length, const char *text) {
  return {win, row, col, length, text, std::min(lenstr(text), length)};
}

void move_to_position(const LineInput &line) { wc_set_pos(line.win, line.row, line.col + line.position); }

// The whole line is drawn anew: what a byte shows as depends on the one beside it.
void draw_line(const LineInput &line) {
  wc_set_pos(line.win, line.row, line.col);
  wputs(line.win, line.text);
}

void erase_before(LineInput &line) {
  line.position = std::max(line.position - 1, 0);
  line.text.resize(static_cast<size_t>(line.position));
  draw_line(line);
  wputch(line.win, ' ');
  move_to_position(line);
}

void enter_at(LineInput &line, int key) {
  if (line.position >= std::min(line.length, kLineBuffer - 1)) return;
  line.text.resize(static_cast<size_t>(line.position));
  line.text += static_cast<char>(key);
  ++line.position;
  draw_line(line);
}

// False for a key that does not edit.
bool edit_line(LineInput &line, int key) {
  if (key == kKeyControlH || key == kKeyBackspace) {
    erase_before(line);
  } else if ((key >= ' ' && key <= '~') || is_high_byte(key)) {
    enter_at(line, key);
  } else if (key == kKeyUnfit) {
    refuse_typed();
  } else {
    return false;
  }
  return true;
}

}  // namespace

int winkey(WINDOW *win) { return read_from(win, false); }

int inkey() { return winkey(stdscr); }

int editkey(WINDOW *win) { return read_from(win, true); }

void refuse_typed() {
  if (!paste.has_beeped) beep();
  paste.has_beeped = paste.is_open;
}

std::string take_rest_of_character() { return std::exchange(rest_of_character, {}); }

void wait_for_key(WINDOW *win) {
  winkey(win);
  take_rest_of_character();
}

int inkeye(int32_t attr) {
  int row = 0;
  int col = 0;
  c_get_pos(&row, &col);
  const int key = inkey();
  putcharv(key, attr, row, col);
  return key;
}

int inkeyx() {
  nocbreak();
  nodelay(stdscr, TRUE);
  const int key = wgetch(stdscr);
  cbreak();
  return key;
}

int inkeysys(int *scan) {
  nodelay(stdscr, FALSE);
  const int key = inkey();
  if (scan != nullptr) *scan = key >> 8 & 0xFF;
  return key & 0xFF;
}

int kbhit() {
  noecho();
  cbreak();
  nodelay(stdscr, TRUE);
  if (!rest_of_character.empty()) return 1;
  const int key = read_key(stdscr, 0, false);
  if (key == ERR) return 0;
  ungetch(key);
  return 1;
}

int time_wait(int n) {
  const clock_t end = std::clock() + static_cast<clock_t>(n) * CLOCKS_PER_SEC;
  while (std::clock() < end) {
  }
  return 0;
}

void drop_typed_keys() {
  rest_of_character.clear();
  flushinp();
}

// kept: only Return and Escape end it, and it blanks one cell more than the field has
int finputs(int row, int col, int length, int32_t attr, char *buf) {
  LineInput line = line_input(stdscr, row, col, length, buf);
  ffill_area(row, col, row, col + length, ' ', attr);
  wprintv_cut(stdscr, line.text, attr, row, col, length);
  setattr(attr);
  move_to_position(line);
  int key = 0;
  while (key != kKeyReturn && key != kKeyEscape) {
    key = editkey(stdscr);
    edit_line(line, key);
  }
  cpynstr(buf, line.text, kLineBuffer);
  return key;
}

int wfinputs(WINDOW *win, int row, int col, int length, int32_t attr, char *buf) {
  LineInput line = line_input(win, row, col, length, buf);
  wffill_area(win, row, col, 1, length, ' ', attr);
  wprintv(win, line.text, attr, row, col);
  move_to_position(line);
  nodelay(win, FALSE);
  int key = 0;
  do {
    key = editkey(win);
  } while (edit_line(line, key));
  cpynstr(buf, line.text, kLineBuffer);
  nodelay(win, TRUE);
  return key;
}
