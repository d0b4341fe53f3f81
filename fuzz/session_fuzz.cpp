// Keys into a whole session, without a terminal: the first byte chooses language and new or existing configuration,
// the rest are keys; what a probed port answers is taken from them too.
#include <curses.h>

#include <clocale>
#include <string_view>
#include <utility>
#include <vector>

#include "corbix/xconfig.h"
#include "fuzz/fuzz.h"
#include "screen/keys.h"
#include "screen/maskelib.h"
#include "screen/menu.h"
#include "screen/terminal.h"
#include "setup/configuration/configuration.h"
#include "setup/events_cfg/events.h"
#include "setup/jobs/event_table.h"
#include "setup/options.h"
#include "setup/session.h"
#include "setup/settings/models.h"
#include "unixtools/portprobe.h"
#include "upsdb/db_text.h"
#include "util/language.h"
#include "util/text.h"

namespace {

// A database of the models that the screens distinguish.
constexpr char kDatabase[] =
    "[UPS]\n"
    "Halvoris 500VA K-TSN005|2400|n|8|1|0x0001|3|500|5|8|1|1|1|1|P\n"
    "ZELK K-TSN030-200|9600|n|8|1|0x805C|0|3000|10|12|1|1|1|1|P\n"
    "K-TRN010VQ-100|2400|n|8|1|0x0012|0|1000|9|10|1|1|1|1|P\n"
    "broken\n"
    "\033[31mred|2400|n|8|1|1|0|1|1|1|1|1|1|1|P\n";

constexpr char kConfiguration[] =
    "; site\nUpsModel=ZELK K-TSN030-200\nEvent1=MESSAGE(\"local\",\"x\")O;SHUTDOWN(\"60\")O;\nSmtpHost=mail\n"
    "Event3=LOGMSG(\"\033[2J\")P60;FROB(1)X;\n";

// clang-format off
constexpr int kFunctionKeys[] = {KEY_UP, KEY_DOWN, KEY_LEFT, KEY_RIGHT, KEY_HOME, KEY_END, KEY_NPAGE, KEY_PPAGE, KEY_IC,
  KEY_ENTER, KEY_BACKSPACE, KEY_DC, KEY_BTAB, KEY_F(1), KEY_F(10), KEY_MOUSE, 27, 13, 10, 63, 9, 8, KEY_RESIZE, 0};
// clang-format on
constexpr uint8_t kFirstFunctionKey = 0x80;  // bytes from here on stand for the keys above

// Thrown where the next key is wanted: a session ends only when its user says so.
struct EndOfKeys {};

std::string_view keys;      // that were not typed yet
std::vector<int> put_back;  // the last one comes first
bool escape_alone = false;  // was given out: nothing follows it in time

int next_byte() {
  if (keys.empty()) throw EndOfKeys();
  const auto byte = static_cast<unsigned char>(keys.front());
  keys.remove_prefix(1);
  return byte;
}

}  // namespace

// The linker calls these instead of the system's.
extern "C" {
int key_of_input(WINDOW *) asm("__wrap_wgetch");
int key_of_input(WINDOW *) {
  if (!put_back.empty()) {
    const int key = put_back.back();
    put_back.pop_back();
    return key;
  }
  if (escape_alone) return ERR;
  const int byte = next_byte();
  const size_t index = static_cast<size_t>(byte) - kFirstFunctionKey;
  const int key = byte >= kFirstFunctionKey && index < std::size(kFunctionKeys) ? kFunctionKeys[index] : byte;
  escape_alone = key != byte && key == kKeyEscape;
  return key;
}

Arrival no_wait(int limit) asm("__wrap__Z14wait_for_inputi");
Arrival no_wait(int limit) {
  escape_alone = false;
  return limit < 0 ? Arrival::input : Arrival::nothing;
}

// What was read too much comes next.
int put_key_back(int key) asm("__wrap_ungetch");
int put_key_back(int key) {
  put_back.push_back(key);
  return OK;
}

unsigned no_sleep(unsigned) asm("__wrap_sleep");
unsigned no_sleep(unsigned) { return 0; }
}

// All that a session calls of unixtools/portprobe. With them at hand the linker takes nothing from there: no real port
// can be opened. A call of something else, or with other parameters, brings that file in, which defines these a second
// time: the link fails.
int probe_port(char *buf, int size, const char *, const char *) {
  std::string answer = next_byte() % 2 == 0 ? "%M" : "";
  for (int byte = next_byte(); byte != '\r' && std::cmp_less(answer.size(), size - 1); byte = next_byte()) {
    answer += static_cast<char>(byte);
  }
  cpynstr(buf, answer, size);
  return 1;
}

char *get_device_path(char *dst, int size, const char *) {
  cpynstr(dst, "/dev/", size);
  return dst;
}

void restore_probed_port() {}

namespace {

struct Stage {
  FuzzFile database{"session_database"};
  FuzzFile configuration{"session"};
  WINDOW *main;
  Stage() {
    std::string coded;
    std::vector<Finding> findings;
    expect(code_text(kDatabase, coded, findings) == 1);
    database.hold(coded);
    cpynstr(upstypname, database.path);
    menu_help = get_menu_help;
    attr_dkl = kAttrNormal;
    attr_hell = kAttrHighlight;
    std::setlocale(LC_ALL, "C.UTF-8");
    setenv("TERM", "xterm-256color", 1);
    expect(freopen("/dev/null", "w", stdout) != nullptr);
    init_screen();
    main = newwin(kScreenRows, kScreenColumns, 0, 0);
    winitscrio(main);
  }
  Stage(const Stage &) = delete;
  Stage &operator=(const Stage &) = delete;
  ~Stage() {
    delwin(main);
    end_screen();
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const Stage stage;
  if (size == 0) return 0;
  const int mode = (data[0] & 2) != 0 ? kSessionCreate : kSessionEdit;
  const std::string input = text_of_bytes(data + 1, size - 1);
  keys = input;
  language = data[0] & 1;
  create_new_cfg = mode == kSessionCreate;
  DbEventListCnt = 0;
  unlink(stage.configuration.path.c_str());
  if (mode == kSessionEdit) stage.configuration.hold(kConfiguration);
  drop_typed_keys();
  put_back.clear();
  escape_alone = false;
  try {
    do_config(stage.main, kAttrNormal, stage.configuration.path.c_str(), mode);
  } catch (const EndOfKeys &) {
  }
  expect(XCloseProfile() == 0);
  return 0;
}
