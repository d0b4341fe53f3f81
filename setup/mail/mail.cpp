#include "setup/mail/mail.h"

#include <cstring>

#include "screen/menu.h"
#include "setup/forms/forms.h"
#include "setup/mail/texts.h"

namespace {

constexpr FrameLabel kHints[] = {
    {3, 54, mailframe_label12},
    {9, 54, mailframe_label12},
    {11, 2, mailframe_label09},
};

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

constexpr SettingsMask kMailMask = {kMaskMail, 17, 6, 0, kHints, has_list, pick, nullptr, open_smtp_fields};

}  // namespace

int edit_mail_cfg(WINDOW *, int32_t attr) {
  run_settings_mask(kMailMask, attr);
  return 0;
}

void draw_mail_frame(WINDOW *win, int32_t attr) { draw_settings_frame(kMailMask, win, attr); }

int fill_mail_rec(WINDOW *win, int choice, int field) {
  return fill_yes_no(win, field_of_mask(kMaskMail, field), choice);
}
