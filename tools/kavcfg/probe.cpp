// The command that looks for a UPS on the serial ports.
#include <cerrno>
#include <csignal>
#include <cstring>
#include <nlohmann/json.hpp>

#include "setup/detection/detection.h"
#include "setup/settings/models.h"
#include "tools/kavcfg/command.h"
#include "tools/kavcfg/texts.h"
#include "unixtools/portprobe.h"

namespace {

using Json = nlohmann::ordered_json;

// Whoever ends the program while a port is asked must leave the port as it was.
void leave_port(int number) {
  restore_probed_port();
  std::signal(number, SIG_DFL);
  std::raise(number);
}

// What came of a port: a word of the interface, the same in both languages, and a reason for the person.
struct Finding {
  const char *state;
  std::string reason = {};
};

// The system's reason, at the end of "open(): reason".
std::string system_reason(const Detection &found) {
  const std::string text = found.answer;
  const size_t colon = text.find(": ");
  return colon == std::string::npos ? text : text.substr(colon + 2);
}

Finding finding_of(const Detection &found, bool is_known) {
  if (is_known) return {"found"};
  const std::string reason = system_reason(found);
  const std::string process = reason.substr(reason.rfind(' ') + 1);
  if (found.result == 1) return {"unknown", filled(unknown_answer_label, {found.answer})};
  if (found.result == kPortSilent) return {"silent", no_answer_label[language]};
  if (found.result == kPortLocked) return {"locked", filled(locked_label, {process})};
  if (reason == std::strerror(EACCES)) return {"denied", permission_label[language]};
  if (reason == std::strerror(EWOULDBLOCK)) return {"locked", held_label[language]};
  return {"failed", reason};
}

Json port_as_json(const Detection &found, const Finding &finding) {
  Json port = {{"port", found.device}, {"state", finding.state}, {"model", nullptr}, {"reason", nullptr}};
  if (finding.reason.empty()) {
    port["model"] = utf8_of(found.db_model);
  } else {
    port["reason"] = utf8_of(finding.reason);
  }
  return port;
}

}  // namespace

int probe(const Arguments &) {
  if (!InitUpsTypeArray()) return tell_outcome(Outcome::database_unreadable, errno, "");
  for (const int number : {SIGHUP, SIGINT, SIGTERM}) std::signal(number, leave_port);
  Json ports = Json::array();
  int status = kRefused;
  for (int port = 0; port < kPortCount; ++port) {
    Detection found = {};
    name_port(port, found);
    const bool is_known = ask_port(port, found) != 0;
    if (is_known) status = kGood;
    const Finding finding = finding_of(found, is_known);
    ports.push_back(port_as_json(found, finding));
    if (options.json) continue;
    print_line(stdout, std::string(found.device) + ": " + (is_known ? found.db_model : finding.reason));
    std::fflush(stdout);
  }
  if (options.json) std::puts(Json{{"ports", ports}}.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
  return status;
}
