// The settings of the mail mask.
#pragma once

#include "setup/settings/setting.h"
#include "setup/settings/texts.h"

// Members follow the fields; texts may fill their member without a terminator. Filled by loading a configuration and by
// the mask, read by the writer; the password is in clear here.
struct MailRecord {
  char subject[48];
  char use_signature[4];  // "yes" or "no"
  char signature_file[48];
  char sender[48];
  char smtp_host[48];
  char smtp_enabled[4];  // "yes" or "no"
  char smtp_user[48];
  char smtp_password[48];
};
enum MailField {
  kMailSubject,
  kUseMailSign,
  kMailSignFile,
  kMailFromAddr,
  kSmtpHost,
  kMailEnableFlag,
  kSmtpUser,
  kSmtpPassword,
  kMailFieldCount
};
extern MailRecord MailRec;
extern FieldDescriptor MailTabArr[kMailFieldCount + 1];  // filled by init_mail_tab, once a session

void init_mail_tab();
// MailRec to the defaults of a new configuration.
void init_mail_cfg();
// MailRec from the configuration that the caller has opened; missing keys take their defaults. The name is not used.
void read_mail_cfg(const char *file);
void load_mail();  // the same from the file's texts as noted
// Writes MailRec; 1, or 0 when a key was not stored. Without SMTP the stored user and password are erased.
int save_mail_cfg(const char *file);
// Whether MailRec's SMTP user and password will be written, not erased: any case of "yes" counts for that, while the
// mask opens its fields for the lower-case word only.
bool keeps_smtp_user();
// Open the fields of the SMTP user and password for typing, or close them.
void on_enable_smtp();
void on_disable_smtp();

std::string encrypted(const std::string &text);

// clang-format off
inline constexpr auto kMailSettings = settings_of_mask(kMaskMail, {
  // key               kind          default      read  field          smallest largest  unit
  //   type            row col length   label                         help                 in the file
  {"MailSubject",    Kind::text,   "UPS event",      1, kMailSubject,      0, 0, Unit::none,
     {kFieldText,       2, 25, 48},  {2,  2, mailframe_label01}, help_mail_subject,   {.rule = WriteRule::empty_may_fail}},
  {"UseMailSign",    Kind::yes_no, "no",             2, kUseMailSign,      0, 0, Unit::none,
     {kFieldReadOnly,   3, 25,  4},  {3,  2, mailframe_label02}, help_use_signature},
  {"MailSignFile",   Kind::text,   "mailsign.txt",   3, kMailSignFile,     0, 0, Unit::none,
     {kFieldReadOnly,   4, 25, 48},  {4,  2, mailframe_label03}, help_signature_file},
  {"MailEnableFlag", Kind::yes_no, "no",             6, kMailEnableFlag,   0, 0, Unit::none,
     {kFieldReadOnly,   9, 25,  4},  {9,  2, mailframe_label06}, help_smtp_enabled},
  {"MailFromAddr",   Kind::text,   "",               4, kMailFromAddr,     0, 0, Unit::none,
     {kFieldText,       6, 25, 48},  {6,  2, mailframe_label04}, help_sender,         {.rule = WriteRule::empty_may_fail}},
  {"SmtpHost",       Kind::text,   "",               5, kSmtpHost,         0, 0, Unit::none,
     {kFieldText,       7, 25, 48},  {7,  2, mailframe_label05}, help_smtp_host,      {.never_empty = true}},
  {"SmtpUser",       Kind::text,   "",               7, kSmtpUser,         0, 0, Unit::none,
     {kFieldText,      12, 25, 48},  {12, 2, mailframe_label07}, help_smtp_user,
     {.is_kept = keeps_smtp_user, .rule = WriteRule::empty_may_fail}},
  {"SmtpPassword",   Kind::secret, "",               8, kSmtpPassword,     0, 0, Unit::none,
     {kFieldText,      13, 25, 48},  {13, 2, mailframe_label08}, help_smtp_password,
     {.scramble = encrypted, .is_kept = keeps_smtp_user, .rule = WriteRule::empty_may_fail}},
});
// clang-format on

inline constexpr auto kMailFields = fields_of<kMailFieldCount>(kMailSettings);
static_assert(have_one_row_each(kMailSettings, kMailFieldCount));
static_assert(member_offset(kMailFields.data(), kMailEnableFlag) == offsetof(MailRecord, smtp_enabled));
static_assert(member_offset(kMailFields.data(), kSmtpPassword) == offsetof(MailRecord, smtp_password));
