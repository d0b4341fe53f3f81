#include "setup/settings/models.h"
#include "setup/settings/settings.h"
#include "util/numbers.h"

StdRecord StdRec;
FieldDescriptor StdTabArr[kStdFieldCount + 1];
InvisibleRecord Invisible, TmpInvisible;

void take_ups_id(const Setting &, const char *value, bool) { StdRec.ups_id = to_int32(value); }
bool ups_id_value(const Setting &, std::string &value) {
  value = std::to_string(StdRec.ups_id);
  return true;
}

void take_cable(const Setting &setting, const char *value, bool) {
  Invisible.cable_code = to_int32(value);
  char name[sizeof StdRec.cable];
  get_cable_name(name, Invisible.cable_code);
  put_field(&StdRec, StdTabArr, setting.field, name);
}
bool cable_value(const Setting &setting, std::string &value) {
  value = std::to_string(get_cable_type(text_of_field(setting).c_str()));
  return true;
}
