#include <cstring>

#include "setup/settings/settings.h"
#include "util/scramble.h"
#include "util/text.h"

MailRecord MailRec;
FieldDescriptor MailTabArr[kMailFieldCount + 1];

namespace {

constexpr auto kOrder = in_order_of_reading<8>(kMailSettings);
static_assert(has_no_gap(kOrder));

void set_smtp_fields(uint8_t type) {
  MailTabArr[kSmtpUser].type = type;
  MailTabArr[kSmtpPassword].type = type;
}

}  // namespace

void init_mail_tab() { std::copy(kMailFields.begin(), kMailFields.end(), MailTabArr); }

void init_mail_cfg() {
  for (const Setting *setting : kOrder) store_default(*setting, "");
}

void read_mail_cfg(const char *) {
  note_file();
  load_mail();
}

void load_mail() { load_settings(kOrder); }

bool keeps_smtp_user() {
  char word[256];
  return std::strcmp(Xstrupr(text_in(field_of_mask(kMaskMail, kMailEnableFlag), word)), "YES") == 0;
}

void on_enable_smtp() { set_smtp_fields(kFieldText); }
void on_disable_smtp() { set_smtp_fields(kFieldReadOnly); }

std::string encrypted(const std::string &text) { return encrypt(text.c_str()); }
