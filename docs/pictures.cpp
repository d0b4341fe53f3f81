// Pictures of the main screens, for the documents: the program in a terminal, each screen as an SVG file.
//
//   pictures FOLDER            writes them
//   pictures --check FOLDER    fails when a picture there is not what the program shows
//
// A screen that does not come any more fails, too; nothing is written then.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "tools/terminal/menus.h"

namespace {

// --- one screen

constexpr int kRows = 24, kColumns = 80;
constexpr int kCellWidth = 9, kCellHeight = 17, kBaseline = 13, kMargin = 6;
// In this size a character of the first font is exactly as wide as a cell, a Japanese one needs a little more room.
constexpr char kStyle[] =
    "text{font:14.95px 'DejaVu Sans Mono',Menlo,Consolas,'Liberation Mono','Noto Sans Mono CJK JP',IPAGothic,"
    "'MS Gothic',monospace}.w{letter-spacing:3.05px}";

// xterm's colours: the eight normal ones, then the eight that bold characters have.
constexpr const char *kPalette[16] = {"#000",    "#cd0000", "#00cd00", "#cdcd00", "#0000ee", "#cd00cd",
                                      "#00cdcd", "#e5e5e5", "#7f7f7f", "#f00",    "#0f0",    "#ff0",
                                      "#5c5cff", "#f0f",    "#0ff",    "#fff"};

struct Look {
  int foreground, background;  // of the palette
  bool underline;
  int width;  // columns of a character
  bool operator==(const Look &) const = default;
};

bool is_wide(Terminal &t, int row, int column) { return column + 1 < kColumns && t.cell(row, column + 1).text.empty(); }

Look look_of(Terminal &t, int row, int column) {
  const ScreenCell cell = t.cell(row, column);
  Look look = {cell.foreground == kDefault ? kWhite : cell.foreground,
               cell.background == kDefault ? kBlack : cell.background, cell.underline, is_wide(t, row, column) ? 2 : 1};
  if (cell.reverse) std::swap(look.foreground, look.background);
  if (cell.bold && look.foreground < 8) look.foreground += 8;
  return look;
}

std::string attribute(const std::string &name, const std::string &value) { return " " + name + "=\"" + value + "\""; }
std::string attribute(const std::string &name, int value) { return attribute(name, std::to_string(value)); }

std::string rectangle(int row, int column, int rows, int columns, const std::string &fill) {
  return "<rect" + attribute("x", column * kCellWidth) + attribute("y", row * kCellHeight) +
         attribute("width", columns * kCellWidth) + attribute("height", rows * kCellHeight) + fill + "/>\n";
}

std::string escaped(const std::string &text) {
  std::string result;
  for (const char c : text) result += c == '&' ? "&amp;" : c == '<' ? "&lt;" : std::string(1, c);
  return result;
}

// Cells of one look, side by side.
struct Run {
  int row, column, columns;
  Look look;
  std::string text;
};

std::vector<Run> runs_of_row(Terminal &t, int row) {
  std::vector<Run> runs;
  for (int column = 0; column < kColumns;) {
    const Look look = look_of(t, row, column);
    if (runs.empty() || runs.back().look != look) runs.push_back({row, column, 0, look, ""});
    const std::string text = t.cell(row, column).text;
    runs.back().text += text.empty() ? " " : text;
    runs.back().columns += look.width;
    column += look.width;
  }
  return runs;
}

std::string background_of(const Run &run, int ground) {
  if (run.look.background == ground) return "";
  return rectangle(run.row, run.column, 1, run.columns, attribute("fill", kPalette[run.look.background]));
}

std::string text_of(const Run &run) {
  const size_t first = run.text.find_first_not_of(' ');
  if (first == std::string::npos) return "";
  const size_t length = run.text.find_last_not_of(' ') + 1 - first;
  const int cut = static_cast<int>(run.text.size() - length);  // blanks, a column each
  const Look &look = run.look;
  return "<text" + attribute("x", (run.column + static_cast<int>(first)) * kCellWidth) +
         attribute("y", run.row * kCellHeight + kBaseline) + attribute("textLength", (run.columns - cut) * kCellWidth) +
         attribute("fill", kPalette[look.foreground]) + (look.width == 2 ? attribute("class", "w") : "") +
         (look.underline ? attribute("text-decoration", "underline") : "") + ">" +
         escaped(run.text.substr(first, length)) + "</text>\n";
}

std::string cursor_of(Terminal &t) {
  if (!t.cursor_visible()) return "";
  const Position at = t.cursor();
  return rectangle(at.row, at.column, 1, 1, attribute("fill", kPalette[kWhite]) + attribute("fill-opacity", ".6"));
}

std::string picture_of(Terminal &t, const std::string &title) {
  const int ground = look_of(t, 0, 0).background;
  std::string grounds, texts;
  for (int row = 0; row < kRows; ++row) {
    for (const Run &run : runs_of_row(t, row)) {
      grounds += background_of(run, ground);
      texts += text_of(run);
    }
  }
  const std::string width = std::to_string(kColumns * kCellWidth + 2 * kMargin);
  const std::string height = std::to_string(kRows * kCellHeight + 2 * kMargin);
  const std::string margin = std::to_string(-kMargin);
  return "<svg xmlns=\"http://www.w3.org/2000/svg\" xml:space=\"preserve\" role=\"img\"" + attribute("width", width) +
         attribute("height", height) + attribute("viewBox", margin + " " + margin + " " + width + " " + height) +
         ">\n<title>" + title + "</title>\n<style>" + kStyle + "</style>\n<rect" + attribute("x", margin) +
         attribute("y", margin) + attribute("width", width) + attribute("height", height) + " rx=\"4\"/>\n" +
         rectangle(0, 0, kRows, kColumns, attribute("fill", kPalette[ground])) + grounds + cursor_of(t) + texts +
         "</svg>\n";
}

// --- all screens

struct Screen {
  const char *name;
  const char *text[2];  // that stands on it and on none before, English and Japanese
};
constexpr Screen kFirstMenu = {"first-menu", {"Create a new configuration file", "新しい設定ファイルを作成"}};
constexpr Screen kSessionMenu = {"session-menu", {"KAVLON Pro Configuration", "KAVLON Pro 設定一覧"}};
constexpr Screen kMessageBox = {"message-box", {"You must select", "機種名を"}};
constexpr Screen kModelList = {"model-list", {"Select UPS modelname", "UPS 機種名の選択"}};
constexpr Screen kUpsMask = {"ups-mask",
                             {"UPS modelname       : K-TRN010VQ-100", "UPS 機種名          : K-TRN010VQ-100"}};
constexpr Screen kHelpBox = {"help-box", {"Standard settings help", "UPS の最大保持時間"}};
constexpr Screen kYesNoList = {"yes-no-list", {" enable shutdown ", " シャットダウン許可 "}};
constexpr Screen kPathMask = {"path-mask", {"Path for textfile", "テキストログのパス"}};
constexpr Screen kEventList = {"event-list", {"Eventlist", "イベント一覧"}};
constexpr Screen kJobList = {"job-list", {"Add Job to List", "ジョブを一覧に追加"}};
constexpr Screen kJobMask = {"job-mask", {"Timer Settings:", "タイマの設定:"}};
constexpr Screen kTimingList = {"timing-list", {"Periodic", "一定間隔"}};
constexpr Screen kFunctionList = {"function-list", {"Send Messagebox with text", "メッセージボックスで通知"}};
constexpr Screen kFunctionHelp = {"function-help", {"will send a Shutdown signal", "UPS のタイマへ送信し"}};
constexpr Screen kMailMask = {"mail-mask", {"Sender Email Address", "差出人メールアドレス"}};
constexpr Screen kFileMissing = {"file-missing", {"ups.cfg doesn't exist", "ups.cfg がありません"}};

constexpr Screen kJobsOfAllKinds = {"jobs-of-all-kinds", {"FROB", "FROB"}};
constexpr Screen kParameterHelp = {"parameter-help", {"Parameter Settings help", "パラメータ設定のヘルプ"}};
constexpr Screen kEmptyField = {"empty-field", {"can not be left blanc", "空欄にできません"}};
constexpr Screen kValueError = {"value-error", {"Value out of range", "値が範囲外です"}};
constexpr Screen kScheduledJob = {"scheduled-job", {"minutes", "分"}};
constexpr Screen kTimeline = {"timeline", {"The battery is empty", "バッテリ切れ"}};

// A job of each kind, as the file has them, an alias of one of them, and one of a kind that is not known.
constexpr char kJobs[] =
    R"(Event6=SHUTDOWN("60")O;MESSAGE("local","hello")A;EXECUTE("send","host","6003")P5;)"
    R"(EXECUTEH("sendvik.exe","-ini","upsext.cfg","-ofi","upsext.cfg","-s","kavlon service","-t",)"
    R"("me@site"${#USEEMAILSIGNF?,"-sig","#EMAILSIGNF"}${}${}${}${},"down")O;EXECUTE("alarm.bat","Alarm")O;)"
    R"(EXECUTE("/bin/x","-a")T15;LOGMSG("note")O;MESSAGEID("local",601)R60;EVENTLOG("success",100,"text")O;)"
    "FROB(1,2)X9;\nEvent20=LOGMSG(\"soon\")OX5;\n";

constexpr const char *kLocation[2] = {"Server room", "サーバ室"};

std::map<std::string, std::string> pictures;  // by file name; written by take, read by main

void take(Terminal &t, const Screen &screen, int language) {
  if (!t.see(screen.text[language])) return;
  t.settle();
  pictures[std::string(screen.name) + (language == 0 ? "-en" : "-ja") + ".svg"] =
      picture_of(t, std::string("kavsetup: ") + screen.name);
}

void press_times(Terminal &t, int times, Key key) { t.press(std::vector<Key>(static_cast<size_t>(times), key)); }

void fill_in_ups(Terminal &t, int language) {
  choose(t, kUps);
  t.press({F10});
  take(t, kMessageBox, language);
  t.press({Space});
  t.type(kLocation[language]);
  press_times(t, 6, Down);
  t.press({Enter});
  take(t, kModelList, language);
  press_times(t, 5, Down);
  t.press({Enter});
  take(t, kUpsMask, language);
  t.press({Down, Down, Down, ShiftQuestion});
  take(t, kHelpBox, language);
  t.press({Escape, F10});
}

void look_at_system_and_paths(Terminal &t, int language) {
  choose(t, kSystem);
  t.press({Down, Down, Enter});
  take(t, kYesNoList, language);
  t.press({Escape, Escape});
  choose(t, kPaths);
  take(t, kPathMask, language);
  t.press({Escape});
}

void look_at_jobs(Terminal &t, int language) {
  choose(t, kEvents);
  take(t, kEventList, language);
  choose(t, 1);
  take(t, kJobList, language);
  choose(t, 2);
  take(t, kJobMask, language);
  t.press({Down, Down, Enter});
  take(t, kTimingList, language);
  t.press({Escape, Escape, Up, Up, Up, Enter});
  take(t, kFunctionList, language);
  t.press({ShiftQuestion});
  take(t, kFunctionHelp, language);
  t.press({Escape, Escape, Escape});
}

void fill_in_mail(Terminal &t, int language) {
  choose(t, kMail);
  press_times(t, 3, Down);
  t.type("ups@exampel.com");
  t.press({Left, Left, Left, Left, Left, Left});
  t.type("le");
  t.press({Down});
  t.type("mail.example.com");
  take(t, kMailMask, language);
}

// Of kavcfg, in a shell that waits then.
void draw_timeline(int language) {
  const std::string kavcfg = std::string("'" KAVCFG_PROGRAM "' ") + (language == 0 ? "" : "--japanese ");
  const std::string job = kavcfg + "job add 0 ";
  Terminal t;
  t.start({.options = {"-c", kavcfg + "new UpsModel=K-TRN010VQ-100 FixedDownTime=2 SysDownMins=4 UpsDownDelay=120; " +
                                 job + "EXECUTE:send ADDRESS=rack4 TIMING=repeated:90; " + job +
                                 "EXECUTE PROGRAM=/usr/local/bin/page PARAMETER=ops TIMING=timed:60; printf " +
                                 "'\\033[?25l$ kavcfg timeline 0\\n'; " + kavcfg + "timeline 0; exec cat"},
           .program = "/bin/sh"});
  take(t, kTimeline, language);
  t.type("\004");
  t.wait_exit();
}

void take_all(int language) {
  const std::vector<std::string> options(static_cast<size_t>(language), "-japanese");
  Terminal t;
  t.start({.options = options});
  take(t, kFirstMenu, language);
  t.press({Enter, Down, Enter});
  take(t, kSessionMenu, language);
  fill_in_ups(t, language);
  look_at_system_and_paths(t, language);
  look_at_jobs(t, language);
  fill_in_mail(t, language);
  t.press({Escape, Escape, Up, Enter});
  t.wait_exit();
  std::filesystem::create_directory(t.path("ups.cfg"));
  t.start({.options = options});
  take(t, kFileMissing, language);
  t.press({Space});
  t.wait_exit();
  std::filesystem::remove(t.path("ups.cfg"));
  t.start({.options = options, .files = {{"ups.cfg", kJobs}}});
  choose(t, kEvents);
  choose(t, 7);
  take(t, kJobsOfAllKinds, language);
  choose(t, 2);
  t.press({ShiftQuestion});
  take(t, kParameterHelp, language);
  t.press({Escape});
  t.type("    ");
  t.press({Down});
  take(t, kEmptyField, language);
  t.press({Escape});
  t.type("host");
  t.press({Down});
  t.type("70000");
  t.press({Down});
  take(t, kValueError, language);
  t.press({Escape, Escape, Escape, Escape});  // the second one comes back to the box
  choose(t, 21);
  t.press({Enter});
  take(t, kScheduledJob, language);
  t.press({Escape, Escape, Escape, Escape});
  t.wait_exit();
  draw_timeline(language);
}

std::string content_of(const std::filesystem::path &file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// 1 when each picture in the folder is what the program shows.
int are_up_to_date(const std::filesystem::path &folder) {
  int result = 1;
  for (const auto &[name, picture] : pictures) {
    if (content_of(folder / name) == picture) continue;
    std::fprintf(stderr, "%s is not what the program shows: run scripts/pictures\n", (folder / name).c_str());
    result = 0;
  }
  return result;
}

int write_pictures(const std::filesystem::path &folder) {
  for (const auto &[name, picture] : pictures) {
    if ((std::ofstream(folder / name, std::ios::binary) << picture).flush()) continue;
    std::fprintf(stderr, "can't write %s\n", (folder / name).c_str());
    return 0;
  }
  return 1;
}

}  // namespace

void terminal_fault(const std::string &what, const char *, int) {
  std::fprintf(stderr, "%s\n", what.c_str());
  std::exit(1);
}

int main(int argc, char **argv) {
  const bool check = argc == 3 && std::string_view(argv[1]) == "--check";
  if (argc != 2 && !check) return 2;
  for (const int language : {0, 1}) take_all(language);
  return (check ? are_up_to_date(argv[2]) : write_pictures(argv[1])) ? 0 : 1;
}
