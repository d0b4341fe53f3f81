// What a person waits for: the start, a key in a menu, a list and a mask, Escape; and the memory of a session. Beside
// bare curses and dialog, in the terminal of tools/terminal. Lines: FIGURE/PROGRAM,VALUE; times are medians in
// milliseconds.
#include <ncurses.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "bench/models.h"
#include "tools/terminal/menus.h"

namespace {

constexpr int kRuns = 25;
constexpr int kStarts = 200;   // of 3 ms each, which vary by a tenth
constexpr int kListMoves = 8;  // Downs in the list of models until it scrolls

const std::vector<Key> kToSession = {Enter, Down, Enter};
const std::vector<Key> kToPaths = {Down, Down, Enter};
const std::vector<Key> kToEvents = {Down, Down, Down, Enter};
const std::vector<Key> kToModelList = {Enter, Down, Down, Down, Down, Down, Down, Enter};

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void print(const std::string &figure, const std::string &program, double value) {
  std::printf("%s/%s,%.3f\n", figure.c_str(), program.c_str(), value);
}

// A program at the place where a key is measured.
struct Place {
  const char *program;
  Start start;
  std::vector<Key> keys;  // that lead there
};

// The arguments of a dialog with so many entries.
Start dialog_menu(int entries) {
  Start start = {.options = {"--menu", "KAVLON Configuration", "22", "70", "14"}, .program = DIALOG};
  for (int i = 0; i < entries; ++i) start.options.insert(start.options.end(), {model_name(i), ""});
  return start;
}

std::vector<Key> operator+(std::vector<Key> keys, const std::vector<Key> &more) {
  keys.insert(keys.end(), more.begin(), more.end());
  return keys;
}

void measure_start(const std::string &figure, const std::vector<Place> &places) {
  std::vector<std::vector<double>> times(places.size());
  for (int run = 0; run < kStarts; ++run) {  // in turn, so that what else the machine does meets all alike
    for (size_t i = 0; i < places.size(); ++i) {
      Terminal t;
      times[i].push_back(t.start(places[i].start).last_output);
    }
  }
  for (size_t i = 0; i < places.size(); ++i) print(figure, places[i].program, median(times[i]));
}

// The key so many times; its time, and the most bytes that one took.
void measure_key(const std::string &figure, Key key, int presses, const std::vector<Place> &places) {
  for (const Place &place : places) {
    Terminal t;
    t.start(place.start);
    t.press(place.keys);
    std::vector<double> times;
    size_t bytes = 0;
    for (int i = 0; i < presses; ++i) {
      const Timing timing = t.measure(key);
      times.push_back(timing.last_output);
      bytes = std::max(bytes, timing.bytes);
    }
    print(figure, place.program, median(times));
    print(figure + " bytes", place.program, static_cast<double>(bytes));
  }
}

// All cells of a terminal, and its cursor.
struct Picture {
  std::vector<ScreenCell> cells;
  Position cursor;
};

Picture picture_of(Terminal &t) {
  Picture picture = {{}, t.cursor()};
  for (int row = 0; row < 24; row++) {
    for (int column = 0; column < 80; column++) picture.cells.push_back(t.cell(row, column));
  }
  return picture;
}

// Pieces of frames are drawn as curses draws them, everything else is ASCII.
chtype character_of(const ScreenCell &cell) {
  const std::map<std::string_view, chtype> pieces = {{"─", ACS_HLINE},    {"│", ACS_VLINE},    {"┌", ACS_ULCORNER},
                                                     {"┐", ACS_URCORNER}, {"└", ACS_LLCORNER}, {"┘", ACS_LRCORNER},
                                                     {"├", ACS_LTEE},     {"┤", ACS_RTEE}};
  const auto piece = pieces.find(cell.text);
  return piece == pieces.end() ? static_cast<unsigned char>(cell.text[0]) : piece->second;
}

// What curses writes to a file, in one screen for all pictures.
struct BareScreen {
  FILE *file = std::tmpfile();
  SCREEN *screen = newterm("xterm-256color", file, file);
  std::map<std::pair<int, int>, short> pairs;
  BareScreen() {
    start_color();
    use_default_colors();
    curs_set(0);
  }
  void draw(const ScreenCell &cell) {
    const auto [pair, is_new] =
        pairs.try_emplace({cell.foreground, cell.background}, static_cast<short>(pairs.size() + 1));
    if (is_new) init_pair(pair->second, static_cast<short>(cell.foreground), static_cast<short>(cell.background));
    attrset(static_cast<int>(COLOR_PAIR(pair->second) | (cell.bold ? A_BOLD : A_NORMAL)));
    addch(character_of(cell));
  }
  // The bytes for this picture after the one before.
  double bytes_of(const Picture &picture) {
    const off_t before = lseek(fileno(file), 0, SEEK_CUR);
    move(0, 0);
    for (const ScreenCell &cell : picture.cells) draw(cell);
    move(picture.cursor.row, picture.cursor.column);
    refresh();
    return static_cast<double>(lseek(fileno(file), 0, SEEK_CUR) - before);
  }
};

// From one screen to the next: each sends what changes, once.
void measure_changes(const Start &session) {
  // clang-format off
  const std::pair<const char *, Key> kChanges[] = {
      {"to the UPS mask", Enter},
      {"back from it", Escape},
      {"", Down},
      {"", Down},
      {"", Down},
      {"to the list of events", Enter},
      {"to the list of jobs", Enter},
      {"to a job mask", Enter},
      {"to its help", ShiftQuestion},
      {"back to the job mask", Escape},
      {"back to the list of jobs", Escape},
      {"back to the list of events", Escape},
      {"back to the session menu", Escape},
  };
  // clang-format on
  setenv("TERMINFO", KAVSETUP_TERMINFO, 1);
  Terminal t;
  open_new_session(t, session);
  BareScreen bare;
  bare.bytes_of(picture_of(t));
  for (const auto &[name, key] : kChanges) {
    const auto ours = static_cast<double>(t.measure(key).bytes);
    const double others = bare.bytes_of(picture_of(t));
    if (*name == '\0') continue;
    print(std::string("change ") + name, "kavsetup", ours);
    print(std::string("change ") + name, "bare", others);
  }
  endwin();
}

void measure_escape(const Start &session) {
  std::vector<double> times;
  Terminal t;
  open_new_session(t, session);
  for (int run = 0; run < kRuns; ++run) {
    t.press({Enter});
    times.push_back(t.measure(Escape).last_output);
  }
  print("escape", "kavsetup", median(times));
}

// Peak memory of a process, kB.
double peak_memory(pid_t process) {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmHWM:")) return std::stod(line.substr(6));
  }
  return 0;
}

// A session through all masks and the long lists that saves in between.
double memory_of_session(const Start &session) {
  Terminal t;
  open_new_session(t, session);
  t.press(kToModelList + std::vector<Key>{PageDown, Enter, F10});
  for (const int mask : {kSystem, kPaths, kEvents, kMail}) {
    choose(t, mask);
    t.press({Down, Escape});
  }
  choose(t, kSave);
  t.press(kToSession + kToModelList);
  t.settle();
  return peak_memory(t.process());
}

double memory_of_bare_menu(const Start &bare) {
  Terminal t;
  t.start(bare);
  t.press({Down, Down});
  t.settle();
  return peak_memory(t.process());
}

// What a new configuration holds.
std::string new_configuration() {
  Terminal t;
  open_new_session(t);
  choose(t, kSave);
  t.settle();
  return t.file("ups.cfg");
}

// What the libraries have in memory differs from run to run by 100 kB.
void measure_memory(const Start &session, const Start &bare) {
  std::vector<double> ours, others;
  for (int run = 0; run < kRuns; ++run) {
    ours.push_back(memory_of_session(session));
    others.push_back(memory_of_bare_menu(bare));
  }
  print("session", "kavsetup", median(ours));
  print("session", "bare", median(others));
}

}  // namespace

void terminal_fault(const std::string &what, const char *, int) {
  std::fprintf(stderr, "%s\n", what.c_str());
  std::exit(1);
}

int main() {
  std::setlocale(LC_ALL, "C.UTF-8");
  const std::pair<std::string, std::string> database = {"upstyp.ups", big_database()};
  const std::pair<std::string, std::string> saved = {"ups.cfg", new_configuration()};
  const Start session = {.files = {database}};
  const Start bare = {.options = {"Create a new configuration file", "Exit Configuration"}, .program = BARE_MENU};
  const Start bare_session = {
      .options = {"Set UPS values", "Set System values", "Set Path values", "Set Event parameter", "Set Email options",
                  " ", "Save Configuration & Exit", "Exit Menu"},
      .program = BARE_MENU};
  const Start menu = dialog_menu(kListMoves + 1);
  const Start long_menu = dialog_menu(kModels);
  const Start input = {.options = {"--inputbox", "Path", "10", "70"}, .program = DIALOG};
  const std::vector<Key> to_list = kToSession + kToModelList;
  const std::vector<Key> to_last_row(kListMoves, Down);
  measure_start("start", {{"kavsetup", session, {}}, {"bare", bare, {}}, {"dialog", menu, {}}});
  measure_start("start 40", {{"kavsetup", {.files = {saved}}, {}}, {"bare", bare_session, {}}});
  measure_start("start 500", {{"kavsetup", {.files = {database, saved}}, {}}, {"bare", bare_session, {}}});
  measure_key("down", Down, kListMoves, {{"kavsetup", session, {}}, {"bare", bare, {}}, {"dialog", menu, {}}});
  measure_key("list", Down, kListMoves, {{"kavsetup", session, to_list}, {"dialog", long_menu, {}}});
  measure_key("events", Down, kListMoves, {{"kavsetup", session, kToSession + kToEvents}});
  measure_key("scroll", Down, kRuns,
              {{"kavsetup", session, to_list + to_last_row}, {"dialog", long_menu, to_last_row + to_last_row}});
  measure_key("type", {"x"}, kRuns, {{"kavsetup", session, kToSession + kToPaths}, {"dialog", input, {}}});
  measure_escape(session);
  measure_changes(session);
  measure_memory(session, bare);
  return 0;
}
