// Any bytes as the configuration: loaded into all settings, saved, loaded and saved once more. Comments stay as they
// are, in their order. The first byte chooses the language.
#include <sstream>

#include "corbix/xconfig.h"
#include "fuzz/fuzz.h"
#include "setup/configuration/configuration.h"
#include "util/language.h"

namespace {

// Longer ones are read in pieces, and a later piece can be a setting.
std::string comments_of(const std::string &content) {
  std::string comments;
  std::istringstream lines(content);
  for (std::string line; std::getline(lines, line);) {
    if ((line.starts_with(';') || line.starts_with('#')) && line.size() < kTextPiece) comments += line + "\n";
  }
  return comments;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const FuzzFile file("config");
  if (size < 2) return 0;  // an empty file gets a first line
  language = data[0] & 1;
  init_all_tabs();
  const std::string content = text_of_bytes(data + 1, size - 1);
  file.hold(content);
  for (int round = 0; round < 2; ++round) {
    expect(init_config_vals(file.path.c_str()) == 1);
    save_configuration(file.path.c_str());
    expect(XCloseProfile() == 0);
  }
  expect(comments_of(file.content()) == comments_of(content));
  return 0;
}
