#include "setup/jobs/email_job.h"

#include <algorithm>

#include "setup/jobs/job_language.h"
#include "util/text.h"

const char *const signStr = R"(#USEEMAILSIGNF?,"-sig","#EMAILSIGNF")";
const char *const logFileBinStr = R"(#USEDATAEX?,"-attach","#LOGFILEBINEX")";
const char *const logFileTextStr = R"(#USETEXT?,"-attach","#LOGFILETXT")";
const char *const troubleRecStr = R"(@FUPSFUNC("trouble.dat","Trouble records",2013,"")?,"-attach","trouble.dat")";
const char *const opInfoRecStr = R"(@FUPSFUNC("opinfo.dat","Operating records",2012,"")?,"-attach","opinfo.dat")";

namespace {

constexpr int kAddress = 0;  // parameters of the job, and fields of its mask
constexpr int kText = 1;
constexpr int kFirstAttachment = 2;  // data log, text log, trouble records, operating records
constexpr int kParameters = 6;
constexpr int kTimingLabel = 6;
constexpr int kTimingNumber = 7;

int says_yes(const JobRec &job, int parameter) { return std::string_view(job.params[parameter].value) == "yes"; }

// Cuts `text` at its last ",", what follows it goes to `rest`. False, nothing changed, when there is none.
bool cut_at_last_comma(std::string &text, std::string &rest) {
  const size_t comma = text.rfind(',');
  if (comma == std::string::npos) return false;
  rest = text.substr(comma + 1);
  text.resize(comma);
  return true;
}

void set_unquoted(JobRec &job, int parameter, std::string_view text) {
  cpynstr(job.params[parameter].value, text);
  removeQuotes(job.params[parameter].value);
}

void put(int field, const char *text) { put_field(&Func3Rec, Function3TabArr, field, text); }

}  // namespace

int getEmailParamStr(const JobRec &job, std::string &text) {
  for (const int parameter : {kAddress, kText}) {
    text += '"';
    text += job.params[parameter].value;
    text += "\",";
  }
  return patchEmailParamString(&text, 1, says_yes(job, 2), says_yes(job, 3), says_yes(job, 4), says_yes(job, 5));
}

int patchEmailParamString(std::string *text, int sign, int dlog, int tlog, int trec, int oinf) {
  if (text == nullptr) return 0;
  std::string message;
  std::string after_last;
  // kept: a message text with a "," comes apart here, the monitor knows no other form
  if (cut_at_last_comma(*text, after_last)) cut_at_last_comma(*text, message);

  const struct {
    int present;
    const char *block;
  } blocks[] = {
      {sign, signStr}, {dlog, logFileBinStr}, {tlog, logFileTextStr}, {trec, troubleRecStr}, {oinf, opInfoRecStr}};
  for (const auto &[present, block] : blocks) {
    *text += "${";
    if (present) *text += block;
    *text += '}';
  }
  *text += ',' + message;
  return 1;
}

int getEmailParams(JobRec &job) {
  const std::string_view arguments = job.arguments;
  const std::string_view text = arguments.substr(std::min(arguments.size(), std::string_view(job.fixed_prefix).size()));
  size_t block = text.find('$');
  if (block == std::string_view::npos) return 0;
  set_unquoted(job, kAddress, text.substr(0, block));

  // the first block is the signature's
  for (int parameter = kFirstAttachment; parameter < kParameters; ++parameter) {
    block = text.find('$', block + 1);
    if (block == std::string_view::npos) break;
    getEmailSpecialParam(text.substr(block), job.params[parameter].value);
  }

  const size_t comma = text.rfind(',');
  if (comma == std::string_view::npos) return 0;
  set_unquoted(job, kText, text.substr(comma + 1));
  return 1;
}

void getEmailSpecialParam(std::string_view text, char (&out)[kJobTextSize]) {
  const size_t open = text.find('{');
  const size_t begin = open == std::string_view::npos ? 0 : open + 1;
  const size_t end = std::min(text.find('}'), text.size());
  cpynstr(out, begin < end ? text.substr(begin, end - begin) : "");
}

int getEmailParamVal(const char *value) { return *value != '\0'; }

void parseEmailFuncStr(const JobRec &job, int event) {
  put(kAddress, job.params[kAddress].value);
  put(kText, job.params[kText].value);
  for (int parameter = kFirstAttachment; parameter < kParameters; ++parameter) {
    put(parameter, getEmailParamVal(job.params[parameter].value) ? "yes" : "no");
  }
  char label[kTimingLabelSize];
  char number[kTimingNumberSize];
  int state = 0;
  get_repeat_value(job.timing, label, number, &state, event);
  put(kTimingLabel, label);
  put(kTimingNumber, number);
  Function3TabArr[kTimingNumber].type = static_cast<uint8_t>(state);
}

bool is_same_email(const JobRec &from_mask, const JobRec &read) {
  for (const int parameter : {kAddress, kText}) {
    if (std::string_view(from_mask.params[parameter].value) != read.params[parameter].value) return false;
  }
  for (int parameter = kFirstAttachment; parameter < kParameters; ++parameter) {
    if (says_yes(from_mask, parameter) != getEmailParamVal(read.params[parameter].value)) return false;
  }
  return true;
}
