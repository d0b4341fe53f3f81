// Any bytes as the database file (odd first byte) or as its text, coded for it: read as every program reads it, and
// checked. Each line of the text becomes every record, too.
#include <vector>

#include "corbix/xconfig.h"
#include "fuzz/fuzz.h"
#include "setup/options.h"
#include "setup/settings/models.h"
#include "setup/settings/settings.h"
#include "upsdb/db_check.h"
#include "upsdb/db_text.h"
#include "upsdb/families.h"
#include "upsdb/position.h"
#include "upsdb/records.h"
#include "util/text.h"

namespace {

constexpr int kMostModels = 40;  // so that long files stay fast

void read_models() {
  const int16_t count = UpsGetCountDb();
  expect(count >= 0);
  for (int16_t n = 0; n <= count && n < kMostModels; ++n) {
    UpsData model;
    UpsEvent event;
    UpsFunction function;
    char section[32];
    if (UpsGetAtDb(model, n) == 0 || UpsGetAtDbEvents(event, n, model.name) == 0) continue;
    if (UpsGetSectionDbFunctionEntry(model.name, section, sizeof section) == 1) UpsDbGetFunction(function, n, section);
  }
}

template <class... Records>
void fill(const char *line, int (*...from)(Records &, const char *)) {
  (..., [&](Records record) { from(record, line); }({}));
}

void fill_all(const std::string &line) {
  fill(line.c_str(), fillUpsDataFromUCString, fillPollEntryFromUCString, fillVitalDataFromUCString,
       fillGetInfoFromUCString, fillEventFromUCString, fillCstmValueFromUCString, fillVarInfoFromUCString,
       fillFunctionFromUCString, fillFunctionParamFromUCString);
  uint8_t bytes[7];
  for (int position = 0; position < 8; ++position) PGetBinFromPosition(position, line.c_str(), bytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const FuzzFile file("database");
  if (size == 0) return 0;
  std::string content = text_of_bytes(data + 1, size - 1);
  if (data[0] % 2 == 0) {
    std::string coded, again;
    std::vector<Finding> findings;
    for (const std::string_view line : lines_of(content)) fill_all(std::string(line));
    check_database(content);
    if (code_text(content, coded, findings) == 0) return 0;
    expect(decode_text(coded, again) == 1 && again == content);
    content = coded;
  }
  file.hold(content);
  cpynstr(upstypname, file.path);
  expect(InitUpsTypeArray() == 1);
  expect(get_max_ups_list(UpsTypeArr) <= kMaxModels);
  expect(UpsOpenDb(upstypname) == 1);
  UpsVersionInfo info;
  expect(UpsVersionInfoDb(&info) == 1);
  read_models();
  reset_upsdb();
  expect(XCloseProfile() == 0);
  return 0;
}
