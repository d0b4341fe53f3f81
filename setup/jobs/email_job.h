// The arguments of the e-mail job: prefix, quoted recipient, five blocks "${...}", "," and the quoted message text.
//
// In a record the parameters are ADDRESS, TEXT, DLOG, TLOG, TREC and OINF. The last four hold the text of their block
// when the job was read, "yes" or "no" when it comes from the mask; only "yes" writes the block.
#pragma once

#include <string>
#include <string_view>

#include "setup/jobs/catalogue.h"

// The blocks: a condition that the monitor evaluates, and the mailer's arguments that go with it.
extern const char *const signStr, *const logFileBinStr, *const logFileTextStr, *const troubleRecStr,
                                                                                   *const opInfoRecStr;

// Appends the arguments that follow the prefix to `text`, which ends with the prefix. Returns patchEmailParamString()'s
// result. A message text with "," comes apart at its last one.
[[nodiscard]] int getEmailParamStr(const JobRec &job, std::string &text);
// Moves the message text to the end of the five blocks; a block whose flag is 0 is empty. `text` ends with the quoted
// recipient,
// ",", the quoted message text and ",". 1, or 0 for null.
[[nodiscard]] int patchEmailParamString(std::string *text, int sign, int dlog, int tlog, int trec, int oinf);

// Fills the six values from the arguments. 1; or 0 when they hold no "$" (no value is set) or no "," (no text is set).
int getEmailParams(JobRec &job);
// The text between the first "{" and the first "}" of `text`, from the start and to the end where there is none, into
// `out` (cut to kJobTextSize - 1 characters).
void getEmailSpecialParam(std::string_view text, char (&out)[kJobTextSize]);
// 1 when the value is not empty.
int getEmailParamVal(const char *value);

// Fills Func3Rec from the job for the mask; the type of its timing number is set in Function3TabArr.
void parseEmailFuncStr(const JobRec &job, int event);
// Whether address, text and attachments are the same in a job from the mask and in one that was read.
bool is_same_email(const JobRec &from_mask, const JobRec &read);
