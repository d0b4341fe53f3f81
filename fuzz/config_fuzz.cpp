// Any bytes as the configuration: loaded into all settings, saved, loaded and saved once more. Comments stay as they
// are, in their order. The first byte chooses the language.
#include <algorithm>
#include <string_view>
#include <vector>

#include "corbix/xconfig.h"
#include "fuzz/fuzz.h"
#include "setup/configuration/configuration.h"
#include "util/language.h"

namespace {

// Longer ones are read in pieces, and a later piece can be a setting.
std::vector<std::string> comments_of(std::string_view content) {
  std::vector<std::string> comments;
  while (!content.empty()) {
    const std::string_view line = content.substr(0, content.find('\n'));
    content.remove_prefix(std::min(line.size() + 1, content.size()));
    if (!line.empty() && (line[0] == ';' || line[0] == '#') && line.size() < kTextPiece) comments.emplace_back(line);
  }
  return comments;
}

void load_and_save(const FuzzFile &file) {
  expect(init_config_vals(file.path.c_str()) == 1);
  save_configuration(file.path.c_str());
  expect(XCloseProfile() == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const FuzzFile file("config");
  if (size < 2) return 0;  // an empty file gets a first line
  language = data[0] & 1;
  init_all_tabs();
  const std::string content = text_of_bytes(data + 1, size - 1);
  file.hold(content);
  load_and_save(file);
  load_and_save(file);
  expect(comments_of(file.content()) == comments_of(content));
  return 0;
}
