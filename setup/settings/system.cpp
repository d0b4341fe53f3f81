#include "setup/settings/system.h"

#include <cstring>

#include "setup/settings/ups.h"
#include "util/scramble.h"
#include "util/text.h"

CustomRecord CustomRec;
FieldDescriptor CustomTabArr[kCustomFieldCount + 1];

void take_network_role(const Setting &, const char *value, bool) { cpynstr(Invisible.network_role, value); }
bool network_role_value(const Setting &, std::string &value) {
  value = Invisible.network_role;
  return true;
}

bool broadcast_rate_value(const Setting &, std::string &value) {
  value = "30";  // the monitor expects it
  return true;
}

bool may_shut_down() { return std::strncmp(CustomRec.shutdown_allowed, "yes", 3) == 0; }

std::string mirrored(const std::string &text) {
  std::string turned = text;
  mirror_bytes(turned.data());
  turned.resize(std::strlen(turned.data()));  // a byte that became the terminator ends it
  return turned;
}
