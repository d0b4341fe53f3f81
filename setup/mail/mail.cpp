#include "setup/mail/mail.h"

#include <cstddef>
#include <cstring>
#include <iterator>

#include "screen/maskloop.h"
#include "screen/menu.h"
#include "setup/cfgmask/checks.h"
#include "setup/cfgmask/settings.h"
#include "setup/cfgmask/texts.h"
#include "setup/mail/texts.h"
#include "setup/section.h"
#include "util/scramble.h"
#include "util/text.h"

MailRecord MailRec;
FieldDescriptor MailTabArr[kMailFieldCount + 1];

namespace {

constexpr FieldDescriptor kMailFields[] = {
    {kFieldText, 2, 25, 48},  {kFieldReadOnly, 3, 25, 4}, {kFieldReadOnly, 4, 25, 48},
    {kFieldText, 6, 25, 48},  {kFieldText, 7, 25, 48},    {kFieldReadOnly, 9, 25, 4},
    {kFieldText, 12, 25, 48}, {kFieldText, 13, 25, 48},   {kFieldEnd, 0, 0, 0},
};
static_assert(std::size(kMailFields) == kMailFieldCount + 1);
static_assert(member_offset(kMailFields, kMailEnableFlag) == offsetof(MailRecord, smtp_enabled));
static_assert(member_offset(kMailFields, kSmtpPassword) == offsetof(MailRecord, smtp_password));

constexpr FrameLabel kMailFrame[] = {
    {2, 2, mailframe_label01},  {3, 2, mailframe_label02},  {3, 54, list_hint_label},   {4, 2, mailframe_label03},
    {6, 2, mailframe_label04},  {7, 2, mailframe_label05},  {9, 2, mailframe_label06},  {9, 54, list_hint_label},
    {11, 2, mailframe_label09}, {12, 2, mailframe_label07}, {13, 2, mailframe_label08},
};

RecordField mail_field(int field) { return {&MailRec, MailTabArr, field}; }

// The file holds the password scrambled.
void take_password(const char *value, bool stored) {
  put_field(&MailRec, MailTabArr, kSmtpPassword, stored ? encrypt(value) : value);
}

constexpr LoadRow kLoadRows[] = {
    {"MailSubject", "UPS event", {&MailRec, MailTabArr, kMailSubject}},
    {"UseMailSign", "no", {&MailRec, MailTabArr, kUseMailSign}},
    {"MailSignFile", "mailsign.txt", {&MailRec, MailTabArr, kMailSignFile}},
    {"MailFromAddr", "", {&MailRec, MailTabArr, kMailFromAddr}},
    {"SmtpHost", "", {&MailRec, MailTabArr, kSmtpHost}},
    {"MailEnableFlag", "no", {&MailRec, MailTabArr, kMailEnableFlag}},
    {"SmtpUser", "", {&MailRec, MailTabArr, kSmtpUser}},
    {"SmtpPassword", "", {}, take_password},
};

int mail_text(int field, char *value) {
  text_in(mail_field(field), value);
  return 1;
}

// The key of the server is never empty.
int smtp_host_text(int field, char *value) {
  mail_text(field, value);
  if (value[0] == '\0') cpynstr(value, " ", 2);
  return 1;
}

int smtp_user_text(int field, char *value) {
  value[0] = '\0';
  return keeps_smtp_user() ? mail_text(field, value) : 1;
}

int smtp_password_text(int field, char *value) {
  smtp_user_text(field, value);
  cpynstr(value, encrypt(value), 512);
  return 1;
}

constexpr WriteRow kWriteRows[] = {
    {"MailSubject", mail_text, kMailSubject, WriteRule::empty_may_fail},
    {"UseMailSign", mail_text, kUseMailSign},
    {"MailSignFile", mail_text, kMailSignFile},
    {"MailEnableFlag", mail_text, kMailEnableFlag},
    {"MailFromAddr", mail_text, kMailFromAddr, WriteRule::empty_may_fail},
    {"SmtpHost", smtp_host_text, kSmtpHost},
    {"SmtpUser", smtp_user_text, kSmtpUser, WriteRule::empty_may_fail},
    {"SmtpPassword", smtp_password_text, kSmtpPassword, WriteRule::empty_may_fail},
};

const char *mail_notice(const void *) {
  return section_notice(kWriteRows, [](const char *key) { return default_in(kLoadRows, key); });
}

void open_smtp_fields(const void *) {
  if (std::strncmp(MailRec.smtp_enabled, "yes", 3) == 0) {
    on_enable_smtp();
  } else {
    on_disable_smtp();
  }
}

bool has_list(const void *, int field) { return field == kUseMailSign || field == kMailEnableFlag; }

void pick(const void *, WINDOW *win, int field) {
  const bool smtp = field == kMailEnableFlag;
  const char *question = smtp ? mailframe_label10[language] : mailframe_label11[language];
  fill_mail_rec(win, yes_no_menu(win, smtp ? 11 : 9, 27, question), field);
}

constexpr Mask kMailMask = {.rows = 17,
                            .columns = 76,
                            .row = 6,
                            .column = 2,
                            .record = &MailRec,
                            .fields = MailTabArr,
                            .count = kMailFieldCount,
                            .rules = 0,
                            .labels = kMailFrame,
                            .context = &kMaskMail,
                            .prepare = open_smtp_fields,
                            .notice = mail_notice,
                            .has_list = has_list,
                            .pick = pick,
                            .check = check_mask_field,
                            .show_error = show_mask_error,
                            .show_help = show_mask_help};

void set_smtp_fields(uint8_t type) {
  MailTabArr[kSmtpUser].type = type;
  MailTabArr[kSmtpPassword].type = type;
}

}  // namespace

void init_mail_tab() { std::memcpy(MailTabArr, kMailFields, sizeof kMailFields); }

void init_mail_cfg() {
  MailRec = {};
  store_defaults(kLoadRows);
}

void read_mail_cfg(const char *) {
  MailRec = {};
  load_section(kLoadRows);
}

int save_mail_cfg(const char *file) { return write_section(file, kWriteRows); }
int keeps_smtp_user() {
  char word[256];
  return std::strcmp(Xstrupr(text_in(mail_field(kMailEnableFlag), word)), "YES") == 0;
}

std::span<const WriteRow> mail_section() { return kWriteRows; }
const LoadRow *load_row_of_mail(const char *key) { return load_row_in(kLoadRows, key); }

void draw_mail_frame(WINDOW *win, int32_t attr) { draw_mask_frame(win, attr, kMailFrame); }

int edit_mail_cfg(WINDOW *, int32_t attr) {
  run_mask(kMailMask, attr);
  return 0;
}

void on_enable_smtp() { set_smtp_fields(kFieldText); }
void on_disable_smtp() { set_smtp_fields(kFieldReadOnly); }

int fill_mail_rec(WINDOW *win, int choice, int field) { return fill_yes_no(win, mail_field(field), choice); }
