// What a UPS answers, and what another program left in a lock file. The first byte chooses the size of the caller's
// buffers.
#include <cstring>
#include <vector>

#include "fuzz/fuzz.h"
#include "setup/detection/detection.h"
#include "setup/settings/models.h"
#include "setup/settings/settings.h"
#include "unixtools/portprobe.h"

namespace {

// Two models and the table's end are enough to meet every branch.
void fill_model_table() {
  UpsTypeArr[0] = {"Halvoris 500VA K-TSN005", 3, 1, 500, 500, 5, 8};
  UpsTypeArr[1] = {"K-TRN010VQ-100", 0, 0x12, 1000, 1000, 9, 10};
  UpsTypeArr[2] = {"LAST", 0, 0, 0, 0, 0, 0};
}

void take_answer(const char *answer, int size) {
  std::vector<char> code(static_cast<size_t>(size) + 1, '\x7F');
  const int result = prepare_string(code.data(), size, answer);
  if (result != 1) return;
  expect(memchr(code.data(), 0, static_cast<size_t>(size)) != nullptr);
  std::vector<char> name(static_cast<size_t>(size) + 1, '\x7F');
  get_model_string(name.data(), size, code.data());
  expect(std::strlen(name.data()) < static_cast<size_t>(size));
  const char *model = check_model_list(name.data(), size, code.data());
  expect(model == nullptr || get_ups_list_id(UpsTypeArr, model) < get_max_ups_list(UpsTypeArr));
}

// The port is free only for the number of a process that does not exist.
void read_lock(const FuzzFile &file, const std::string &content, int size) {
  file.hold(content);
  std::vector<char> text(static_cast<size_t>(size) + 1, '\0');
  const int result = check_lockfile(text.data(), size, file.path.c_str());
  expect(result == 1 || result == -5);
  for (const char *c = text.data(); *c != '\0'; ++c) expect(*c >= ' ' && *c <= '~');
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const FuzzFile file("answer");
  if (size == 0) return 0;
  fill_model_table();
  const int room = data[0] % 70 + 1;
  const std::string bytes = text_of_bytes(data + 1, size - 1);
  take_answer(bytes.c_str(), room);
  take_answer(("%M" + bytes).c_str(), room);
  read_lock(file, bytes, room);
  return 0;
}
