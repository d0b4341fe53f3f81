// Lines of a database into every record that is made of one, and a whole database's text into its checks.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "upsdb/db_check.h"
#include "upsdb/families.h"
#include "upsdb/position.h"
#include "upsdb/records.h"

namespace {

template <class Record>
void fill(int (*from)(Record &, const char *), const char *line) {
  Record record = {};
  from(record, line);
}

void fill_all(const std::string &text) {
  const char *line = text.c_str();
  fill(fillUpsDataFromUCString, line);
  fill(fillPollEntryFromUCString, line);
  fill(fillVitalDataFromUCString, line);
  fill(fillGetInfoFromUCString, line);
  fill(fillEventFromUCString, line);
  fill(fillCstmValueFromUCString, line);
  fill(fillVarInfoFromUCString, line);
  fill(fillFunctionFromUCString, line);
  fill(fillFunctionParamFromUCString, line);
  uint8_t bytes[7];
  for (int position = 0; position < 8; ++position) PGetBinFromPosition(position, line, bytes);
}

void code_and_check(const std::string &text) {
  std::string coded;
  std::string again;
  std::vector<Finding> findings;
  if (code_text(text, coded, findings) == 1 && (decode_text(coded, again) == 0 || again != text)) std::abort();
  check_database(decode_text(text, again) == 1 ? again : text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

// The first byte chooses: a line, or a database.
int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (size == 0) return 0;
  std::string text(size - 1, '\0');
  if (size > 1) std::memcpy(text.data(), data + 1, size - 1);
  data[0] % 2 == 0 ? fill_all(text) : code_and_check(text);
  return 0;
}
