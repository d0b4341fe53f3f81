#include "setup/detection/detection.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "setup/settings/models.h"
#include "unixtools/portprobe.h"
#include "util/text.h"
#include "util/trace.h"

namespace {

constexpr const char *ports[kPortCount] = {"ttyS0", "ttyS1", "ttyS2", "ttyS3"};
constexpr char kRequest[] = "%M\r";

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

}  // namespace

void name_port(int port, Detection &found) {
  char directory[kNameSize] = "";
  get_device_path(directory, sizeof directory, nullptr);
  std::snprintf(found.device, sizeof found.device, "%.40s%s", directory, ports[port]);
}

int ask_port(int port, Detection &found) {
  found.answer[0] = found.code[0] = found.db_model[0] = '\0';
  found.result = probe_port(found.answer, sizeof found.answer, ports[port], kRequest);
  if (found.result <= 0) return 0;
  if (debugLevel > kTraceDetails) myfprintf("show_probe_win: port[%d] returned %s\n", port, found.answer);
  // a chattering port fills the answer and leaves no text: it would be taken for every model
  if (found.answer[0] == '\0' || prepare_string(found.code, sizeof found.code, found.answer) != 1) return 0;
  if (debugLevel > kTraceDetails) myfprintf("show_probe_win: prepared %s\n", found.code);
  if (check_model_list(found.db_model, sizeof found.db_model, found.code) == nullptr) return 0;
  if (debugLevel > kTraceDetails) myfprintf("show_probe_win: got db_model %s\n", found.db_model);
  return 1;
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
