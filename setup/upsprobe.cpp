#include "setup/upsprobe.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

#include "screen/box.h"
#include "screen/draw.h"
#include "screen/keys.h"
#include "screen/menu.h"
#include "setup/configuration/configuration.h"
#include "setup/settings/models.h"
#include "setup/upsprobe_texts.h"
#include "unixtools/portprobe.h"
#include "util/text.h"
#include "util/tokens.h"
#include "util/trace.h"

namespace {

constexpr const char *ports[] = {"ttyS0", "ttyS1", "ttyS2", "ttyS3"};
constexpr char kRequest[] = "%M\r";
constexpr int kNameSize = 64;
constexpr int kResultSize = 128;

struct DisplayType {
  const char *code;  // that a UPS reports
  const char *name;  // that a person knows
};
constexpr DisplayType DispTypeArr[] = {
    // clang-format off
    // kept: the last codes end in a blank, a UPS reports them without it; a code is found by any part of its row
    {"K-TSN005",      "Halvoris 500VA"},
    {"K-TSN007",      "Halvoris 700VA"},
    {"K-TSN014",      "Halvoris 1400VA"},
    {"K-TSN030",      "Halvoris 3000VA"},
    {"K-TSN030-200",  "ZELK K-TSN030-200"},
    {"K-TRN010VQ10",  "K-TRN010VQ-100"},
    {"K-TRN010VQ11",  "K-TRN010VQ-105"},
    {"K-TRN010VQ12",  "K-TRN010VQ-110"},
    {"K-TRN010VQ13",  "K-TRN010VQ-115"},
    {"K-TRN010VQ14",  "K-TRN010VQ-120"},
    {"K-TRN015VQ10",  "K-TRN015VQ-100"},
    {"K-TRN015VQ11",  "K-TRN015VQ-105"},
    {"K-TRN015VQ12",  "K-TRN015VQ-110"},
    {"K-TRN015VQ13",  "K-TRN015VQ-115"},
    {"K-TRN015VQ14",  "K-TRN015VQ-120"},
    {"K-TRN020VQ10",  "K-TRN020VQ-100"},
    {"K-TRN020VQ11",  "K-TRN020VQ-105"},
    {"K-TRN020VQ12",  "K-TRN020VQ-110"},
    {"K-TRN020VQ13",  "K-TRN020VQ-115"},
    {"K-TRN020VQ14",  "K-TRN020VQ-120"},
    {"K-TRN030VQ10",  "K-TRN030VQ-100"},
    {"K-TRN030VQ11",  "K-TRN030VQ-105"},
    {"K-TRN030VQ12",  "K-TRN030VQ-110"},
    {"K-TRN030VQ13",  "K-TRN030VQ-115"},
    {"K-TRN030VQ14",  "K-TRN030VQ-120"},
    {"K-TRN07VQ20 ",  "K-TRN007VQ-200"},
    {"K-TRN07VQ21 ",  "K-TRN007VQ-208"},
    {"K-TRN07VQ22 ",  "K-TRN007VQ-220"},
    {"K-TRN07VQ23 ",  "K-TRN007VQ-230"},
    {"K-TRN07VQ24 ",  "K-TRN007VQ-240"},
    {"K-TRN14VQ20 ",  "K-TRN014VQ-200"},
    {"K-TRN14VQ21 ",  "K-TRN014VQ-208"},
    {"K-TRN14VQ22 ",  "K-TRN014VQ-220"},
    {"K-TRN14VQ23 ",  "K-TRN014VQ-230"},
    {"K-TRN14VQ24 ",  "K-TRN014VQ-240"},
    {"K-TRN30VQ20 ",  "K-TRN030VQ-200"},
    {"K-TRN30VQ21 ",  "K-TRN030VQ-208"},
    {"K-TRN30VQ22 ",  "K-TRN030VQ-220"},
    {"K-TRN30VQ23 ",  "K-TRN030VQ-230"},
    {"K-TRN30VQ24 ",  "K-TRN030VQ-240"},
    {"LAST",          ""},
    // clang-format on
};

// What a port answered.
struct Detection {
  char device[kNameSize];
  char code[kResultSize];
  char db_model[kNameSize];
};

// Shows for a second which port is next.
void show_progress(WINDOW *parent, int32_t attr, const char *device) {
  char text[256];
  std::snprintf(text, sizeof text, probeframe_label01[language], device);
  draw_box_nowait(parent, text, "|", attr);
}

// 1 when the UPS on the port is of a model that the database knows.
int ask_port(int port, Detection &found) {
  char result[kResultSize] = "";
  if (probe_port(result, sizeof result, ports[port], kRequest) <= 0) return 0;
  if (debugLevel > kTraceDetails) myfprintf("show_probe_win: port[%d] returned %s\n", port, result);
  // a chattering port fills the answer and leaves no text: it would be taken for every model
  if (result[0] == '\0' || prepare_string(found.code, sizeof found.code, result) != 1) return 0;
  if (debugLevel > kTraceDetails) myfprintf("show_probe_win: prepared %s\n", found.code);
  if (check_model_list(found.db_model, sizeof found.db_model, found.code) == nullptr) return 0;
  if (debugLevel > kTraceDetails) myfprintf("show_probe_win: got db_model %s\n", found.db_model);
  return 1;
}

int detect(WINDOW *parent, int32_t attr, Detection &found) {
  char directory[kNameSize] = "";
  get_device_path(directory, sizeof directory, nullptr);
  for (int port = 0; port < static_cast<int>(std::size(ports)); ++port) {
    std::snprintf(found.device, sizeof found.device, "%.40s%s", directory, ports[port]);
    show_progress(parent, attr, found.device);
    if (ask_port(port, found)) return 1;
  }
  return 0;
}

void trace_model(int step) {
  if (debugLevel > kTraceDetails) myfprintf("after draw_found_frame get_act_ups()%d=%s|\n", step, get_act_ups());
}

// Takes the model over into the settings, with everything that depends on it.
void accept_detection(const Detection &found, const char *display_name) {
  char name[kNameSize];
  if (debugLevel > kTraceDetails) myfprintf("after draw_found_frame check_model_list with |%s|\n", display_name);
  if (check_model_list(name, sizeof name, display_name) == nullptr) cpynstr(name, found.db_model);
  if (debugLevel > kTraceDetails) myfprintf("after draw_found_frame check_model_list get |%s|\n", name);
  const int model = get_ups_list_id(UpsTypeArr, name);
  trace_model(1);
  fill_port(found.device, model);
  trace_model(2);
  take_model(UpsTypeArr[model]);
  trace_model(3);
  reset_job_lists(name);
}

int confirm(WINDOW *parent, int32_t attr, const char *file, const Detection &found) {
  char display_name[kNameSize];
  get_model_string(display_name, sizeof display_name, found.code);
  const int answer = draw_found_frame(parent, attr, file, nullptr, found.device, display_name);
  if (answer == kProbeConfirmed) accept_detection(found, display_name);
  return answer;
}

// The pieces of the heading, each centred on a row of its own from row 1; the row after the last.
int draw_heading(WINDOW *win, int32_t attr, const char *heading) {
  const int width = getmaxx(win);
  const int pieces = cnumtoken(heading, "|");
  for (int i = 1; i <= pieces; ++i) {
    char piece[256];
    ctoken(piece, sizeof piece, heading, "|", i);
    const char *text = piece + (i > 1 && piece[0] != '\0');  // the blank after a "|"
    const int length = std::min(lenstr(text), width - 2);
    wprintv_cut(win, text, attr, i, (width - length) / 2, length);
  }
  return pieces + 1;
}

// A label at the left, its value ending five columns before the right edge.
void draw_found_value(WINDOW *win, int32_t attr, int row, const char *label, const char *value) {
  wprintv(win, label, attr, row, 5);
  wprintv(win, value, attr, row, std::max(1, getmaxx(win) - lenstr(value) - 5));
}

int wait_for_answer(WINDOW *win) {
  for (;;) {
    const int key = winkey(win);
    if (is_enter(key)) return kProbeConfirmed;
    if (key == kKeyEscape) return kProbeCancelled;
  }
}

}  // namespace

int show_probe_win(WINDOW *parent, const char *, int32_t attr, const char *file) {
  Detection found = {};
  const int detected = detect(parent, attr, found);
  drop_typed_keys();  // what was typed while the ports were tried answers no question
  return detected ? confirm(parent, attr, file, found) : draw_notfound_menu(parent);
}

int draw_found_frame(WINDOW *parent, int32_t attr, const char *, const char *, const char *port, const char *model) {
  const int rows = getmaxy(parent) - 13;
  const int columns = getmaxx(parent) - 6;
  const Window win = open_window(rows, columns, 9, 3);
  if (win == nullptr) return kProbeNoMemory;
  wfdraw_frame(win.get(), attr, kSingleLine);
  wffill_full_area(win.get(), ' ', attr);
  const int row = draw_heading(win.get(), attr, probeframe_label02[language]) + 1;
  draw_found_value(win.get(), attr, row, probeframe_label03[language], model);
  draw_found_value(win.get(), attr, row + 1, probeframe_label04[language], port);
  wfdraw_separator(win.get(), rows - 3, attr);
  wprintv(win.get(), probe_ok_label[language], attr, rows - 2, 5);
  wprintv(win.get(), probe_cancel_label[language], attr, rows - 2, columns - 18);
  wshow(win.get());
  return wait_for_answer(win.get());
}

int draw_notfound_menu(WINDOW *parent) {
  std::string items = probeframe_label06[language];
  add_entry(items, probeframe_label07[language]);
  const int choice = DoMenu(parent, 9, 2, getmaxx(parent) - 5, kAttrNormal, kAttrHighlight,
                            probeframe_label05[language], items.c_str(), "|", kSingleLine);
  if (choice == kMenuNotShown) return kProbeNoMemory;
  return choice == 1 ? kProbeAgain : kProbeByHand;
}

int prepare_string(char *dst, int size, const char *answer) {
  if (dst == nullptr || answer == nullptr || size < 1) return 0;
  dst[0] = '\0';
  if (answer[0] == '\0') return 1;
  const std::string_view text = answer;
  if (!text.starts_with("%M")) return kNoModelAnswer;
  const std::string_view code = text.substr(2);
  cpynstr(dst, code.substr(0, code.find_first_of("\r ")), size);
  return 1;
}

char *check_model_list(char *dst, int size, const char *text) {
  char candidate[kNameSize];
  cpynstr(candidate, text);
  if (std::strncmp(text, "K-TRN", 5) == 0) get_model_string(candidate, sizeof candidate, text);
  for (const ModelEntry *entry = UpsTypeArr; std::strcmp(entry->ups_name, kTableEnd) != 0; ++entry) {
    if (entry->ups_name[0] == '\0') continue;  // its record can't be read
    if (std::strstr(entry->ups_name, text) == nullptr && std::strstr(entry->ups_name, candidate) == nullptr) continue;
    if (lenstr(entry->ups_name) >= size) return nullptr;
    cpynstr(dst, entry->ups_name, size);
    return dst;
  }
  return nullptr;
}

char *get_model_string(char *dst, int size, const char *code) {
  const std::string wanted = code;
  cpynstr(dst, wanted, size);
  for (const DisplayType *row = DispTypeArr; std::strcmp(row->code, kTableEnd) != 0; ++row) {
    if (std::strstr(row->code, wanted.c_str()) == nullptr) continue;
    if (lenstr(row->name) < size) cpynstr(dst, row->name, size);
    break;
  }
  return dst;
}
