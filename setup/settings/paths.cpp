#include "setup/settings/settings.h"
#include "util/numbers.h"

PathRecord PathRec;
FieldDescriptor PathTabArr[kPathFieldCount + 1];

void take_data_logging(const Setting &setting, const char *value, bool) {
  StdRec.data_logging = to_int32(value) != 0;
  put_field(&PathRec, PathTabArr, setting.field, StdRec.data_logging ? "yes" : "no");
}
bool data_logging_value(const Setting &setting, std::string &value) {
  value = text_of_field(setting).starts_with("yes") ? "1" : "0";
  return true;
}

// The binary log's name: that of the data log with its last four characters, the extension, replaced.
bool binary_log_value(const Setting &setting, std::string &value) {
  value = text_of_field(setting);
  if (value.size() > 4) value.replace(value.size() - 4, 4, ".dat");
  return true;
}
