#include "setup/options.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "setup/settings/models.h"
#include "util/language.h"
#include "util/text.h"
#include "util/trace.h"

int32_t testmode = 0;

void read_options(int count, char *const arguments[]) {
  for (int i = 0; i < count; ++i) {
    const std::string_view option = arguments[i];
    // kept: start scripts in the field abbreviate, so two characters decide, and the database's name is joined to "-u"
    if (option == "-zorvik") {
      testmode = 1;
    } else if (option.starts_with("-u")) {
      cpynstr(upstypname, option.substr(2));
    } else if (option.starts_with("-j")) {
      language = 1;
    } else if (option.starts_with("-d")) {
      debugLevel = 10;
    } else {
      usage();
    }
  }
}

void usage() {
  std::puts("Usage:\n\nkavsetup [-u <dbfile>] [-japanese]\n");
  std::puts("   -u <dbfile>    default is upstyp.ups");
  std::puts("   -japanese      japanese version\n");
  std::exit(EXIT_SUCCESS);
}
