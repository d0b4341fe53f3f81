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
#include "setup/detection/detection.h"
#include "setup/settings/models.h"
#include "setup/upsprobe_texts.h"
#include "util/text.h"
#include "util/tokens.h"
#include "util/trace.h"

namespace {

// Shows for a second which port is next.
void show_progress(WINDOW *parent, int32_t attr, const char *device) {
  char text[256];
  std::snprintf(text, sizeof text, probeframe_label01[language], device);
  draw_box_nowait(parent, text, "|", attr);
}

int detect(WINDOW *parent, int32_t attr, Detection &found) {
  for (int port = 0; port < kPortCount; ++port) {
    name_port(port, found);
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
  move_to_text(win.get());
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
