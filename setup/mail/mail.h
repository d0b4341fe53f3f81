// The mail settings of the monitor: defaults, reading, writing, the mask.
#pragma once

#include <cstdint>
#include <span>

#include "screen/maskelib.h"
#include "setup/section.h"

// Members follow MailTabArr; texts may fill their member without a terminator. Written by the functions below and by
// the mask; the password is in clear here.
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
// Writes MailRec; 1, or 0 when a key was not stored. Without SMTP the stored user and password are erased.
int save_mail_cfg(const char *file);
// 1 when MailRec's SMTP user and password will be written, not erased: any case of "yes" counts for that, while the
// mask opens its fields for the lower-case word only.
int keeps_smtp_user();
// The keys in the order of their writing; and how a key is loaded, null for one that is none of the mail settings.
std::span<const WriteRow> mail_section();
const LoadRow *load_row_of_mail(const char *key);

void draw_mail_frame(WINDOW *win, int32_t attr);
// The mask above `parent` until it is left; 0.
int edit_mail_cfg(WINDOW *parent, int32_t attr);
// Open the fields of the SMTP user and password for typing, respectively close them.
void on_enable_smtp();
void on_disable_smtp();
// Choice 1 puts "yes", choice 2 "no" into the field and shows it, 1; any other choice changes nothing, 0.
int fill_mail_rec(WINDOW *win, int choice, int field);
