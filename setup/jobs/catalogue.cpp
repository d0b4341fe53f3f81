#include "setup/jobs/catalogue.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "util/charset.h"
#include "util/check.h"
#include "util/numbers.h"
#include "util/text.h"
#include "util/tokens.h"

FuncListRec DbFuncList[kFunctionCount];
int32_t DbFuncListCnt = 0;

ShutdownRec Func0Rec;
MessageRec Func1Rec;
NimbroRec Func2Rec;
EmailRec Func3Rec;
TextRec Func4Rec;
ProgramRec Func5Rec;
TextRec Func6Rec;
MessageIdRec Func7Rec;
SyslogRec Func8Rec;

FieldDescriptor Function0TabArr[4], Function1TabArr[5], Function2TabArr[5], Function3TabArr[9], Function4TabArr[4],
    Function5TabArr[5], Function6TabArr[4], Function7TabArr[5], Function8TabArr[6];

namespace {

constexpr int kNameFieldSize = 128;  // of a function's name with its prefix

template <int N>
void read_piece(char (&out)[N], const char *text, int piece) {
  ctoken(out, N, text, "|", piece);
}

// Splits "NAME(prefix)": the closing parenthesis becomes the "," between the prefix and the first parameter.
void read_name(FuncListRec &row, std::string_view text) {
  const size_t open = text.find('(');
  cpynstr(row.name, text.substr(0, open));
  if (open == std::string_view::npos) return;
  std::string prefix(text.substr(open + 1));
  if (!prefix.empty()) prefix.back() = ',';
  cpynstr(row.fixed_prefix, prefix);
}

void read_parameter(ParamDesc &param, const char *text) {
  read_piece(param.name, text, 1);
  read_piece(param.type, text, 2);
  read_piece(param.help, text, 3);
  read_piece(param.example, text, 4);
}

// Both languages have the same functions with the same numbers of parameters.
void read_function(FuncListRec &row, const Label &text, const Label (&parameters)[kParameterSlots]) {
  row.fixed_prefix[0] = '\0';  // a row is empty at first, and most of it room that is better not touched
  char name[kNameFieldSize];
  char count[16];
  read_piece(name, text[language], 1);
  read_name(row, name);
  read_piece(row.title, text[language], 2);
  read_piece(row.description, text[language], 3);
  read_piece(row.summary, text[language], 4);
  read_piece(count, text[language], 5);
  row.param_count = std::clamp(to_int32(count), 0, kMaxParameters);
  for (int k = 0; k < std::min(row.param_count, kParameterSlots); ++k) {
    read_parameter(row.params[k], parameters[k][language]);
  }
}

// The masks as they are at first.

// clang-format off
constexpr FieldDescriptor kFields0[] = {
  // type                   row  col  length
  { kFieldDefaultOrDigits,    4,  12,   7 },
  { kFieldReadOnly,           7,   2,  10 },
  { kFieldDigits,             8,   2,   6 },
  { kFieldEnd,                0,   0,   0 },
};
constexpr FieldDescriptor kFields1[] = {
  { kFieldJobText,            4,  12,  60 },
  { kFieldJobText,            5,  12,  60 },
  { kFieldReadOnly,           8,   2,  10 },
  { kFieldDigits,             9,   2,   6 },
  { kFieldEnd,                0,   0,   0 },
};
constexpr FieldDescriptor kFields2[] = {
  { kFieldAddress,            4,  12,  60 },
  { kFieldDigits,             5,  12,   5 },
  { kFieldReadOnly,           8,   2,  10 },
  { kFieldDigits,             9,   2,   6 },
  { kFieldEnd,                0,   0,   0 },
};
constexpr FieldDescriptor kFields3[] = {
  { kFieldJobText,            4,  12,  60 },
  { kFieldJobText,            5,  12,  60 },
  { kFieldReadOnly,           6,  12,   4 },
  { kFieldReadOnly,           7,  12,   4 },
  { kFieldReadOnly,           8,  12,   4 },
  { kFieldReadOnly,           9,  12,   4 },
  { kFieldReadOnly,          12,   2,  10 },
  { kFieldDigits,            13,   2,   6 },
  { kFieldEnd,                0,   0,   0 },
};
constexpr FieldDescriptor kFields4[] = {
  { kFieldJobText,            4,  12,  60 },
  { kFieldReadOnly,           7,   2,  10 },
  { kFieldDigits,             8,   2,   6 },
  { kFieldEnd,                0,   0,   0 },
};
constexpr FieldDescriptor kFields7[] = {
  { kFieldJobText,            4,  12,  60 },
  { kFieldDigits,             5,  12,   6 },
  { kFieldReadOnly,           8,   2,  10 },
  { kFieldDigits,             9,   2,   6 },
  { kFieldEnd,                0,   0,   0 },
};
constexpr FieldDescriptor kFields8[] = {
  { kFieldReadOnly,           4,  12,  12 },
  { kFieldSkipText,           5,  12,   4 },  // kept: in the cells that the text begins with; it is never drawn
  { kFieldJobText,            5,  12,  60 },
  { kFieldReadOnly,           8,   2,  10 },
  { kFieldDigits,             9,   2,   6 },
  { kFieldEnd,                0,   0,   0 },
};
// clang-format on

// The bytes of the first `fields` members of a mask's record; all of them are texts.
constexpr size_t record_bytes(std::span<const FieldDescriptor> table, size_t fields) {
  size_t bytes = 0;
  for (const FieldDescriptor &field : table.first(fields)) bytes += field.length;
  return bytes;
}

// The record's members lie where the form library looks for them.
template <typename Record, size_t N>
constexpr bool fits_record(const FieldDescriptor (&table)[N]) {
  return table[N - 1].type == kFieldEnd && record_bytes(table, N - 1) == sizeof(Record) &&
         record_bytes(table, N - 3) == offsetof(Record, timing) && table[N - 3].length == sizeof(TimingFields::label);
}
static_assert(fits_record<ShutdownRec>(kFields0));
static_assert(fits_record<MessageRec>(kFields1));
static_assert(fits_record<NimbroRec>(kFields2) && offsetof(NimbroRec, port) == record_bytes(kFields2, 1));
static_assert(fits_record<EmailRec>(kFields3) && offsetof(EmailRec, data_log) == record_bytes(kFields3, 2) &&
              offsetof(EmailRec, operation_info) == record_bytes(kFields3, 5));
static_assert(fits_record<TextRec>(kFields4));
static_assert(fits_record<ProgramRec>(kFields1));
static_assert(fits_record<MessageIdRec>(kFields7) && offsetof(MessageIdRec, id) == record_bytes(kFields7, 1));
static_assert(fits_record<SyslogRec>(kFields8) && offsetof(SyslogRec, text) == record_bytes(kFields8, 2));

template <size_t N>
void fill_table(FieldDescriptor (&table)[N], const FieldDescriptor (&fields)[N]) {
  std::copy(fields, fields + N, table);
}

template <typename Record, size_t N>
constexpr JobMask mask_of(FieldDescriptor (&table)[N], Record &record) {
  return {table, &record, static_cast<int>(N) - 1};
}

constexpr JobMask kJobMasks[kFunctionCount] = {
    mask_of(Function0TabArr, Func0Rec), mask_of(Function1TabArr, Func1Rec), mask_of(Function2TabArr, Func2Rec),
    mask_of(Function3TabArr, Func3Rec), mask_of(Function4TabArr, Func4Rec), mask_of(Function5TabArr, Func5Rec),
    mask_of(Function6TabArr, Func6Rec), mask_of(Function7TabArr, Func7Rec), mask_of(Function8TabArr, Func8Rec),
};

// The summary with the parameters' values in it.
std::string summary_with_values(const JobRec &job) {
  std::string line;
  for (const char *at = job.summary; *at != '\0'; ++at) {
    if (*at != '#') {
      line += *at;
    } else if (at[1] != '\0') {
      char value[kJobTextSize] = {*++at};
      get_param_value(job, value);
      line += value;
    }
  }
  return line;
}

}  // namespace

int fill_function_list() {
  for (int i = 0; i < kFunctionCount; ++i) read_function(DbFuncList[i], func_list[i], funcpar_list[i]);
  return kFunctionCount;
}

std::span<const FuncListRec> function_catalogue() {
  if (DbFuncListCnt == 0) DbFuncListCnt = fill_function_list();
  return DbFuncList;
}

int fill_function_rec(JobRec &job, int index, int event) {
  std::memset(&job, 0, sizeof(job));
  cpynstr(job.timing, event == kSchedulerEvent ? "OX" : "O");
  job.function = -1;
  const std::span<const FuncListRec> rows = function_catalogue();
  if (index < 0 || index >= static_cast<int>(rows.size())) return 0;

  const FuncListRec &row = rows[static_cast<size_t>(index)];
  cpynstr(job.name, row.name);
  cpynstr(job.title, row.title);
  cpynstr(job.description, row.description);
  cpynstr(job.summary, row.summary);
  cpynstr(job.fixed_prefix, row.fixed_prefix);
  job.param_count = row.param_count;
  job.function = index;
  for (int k = 0; k < row.param_count; ++k) job.params[k].desc = row.params[k];
  return 1;
}

void get_param_value(const JobRec &job, char *text) {
  // kept: each number is compared with what the numbers before it put there, lists in use show that way
  for (int k = 1; k <= job.param_count; ++k) {
    if (to_int32(text) == k) cpynstr(text, job.params[k - 1].value, kJobTextSize);
  }
}

void job_line(const JobRec &job, char (&line)[kJobLineLength + 1]) {
  std::string text = job.function < 0 ? job.text : summary_with_values(job);
  std::replace(text.begin(), text.end(), '|', ' ');
  cpynstr(line, text.empty() ? " " : cut_text(text, kJobLineLength));
}

void init_function_tab() {
  fill_table(Function0TabArr, kFields0);
  fill_table(Function1TabArr, kFields1);
  fill_table(Function2TabArr, kFields2);
  fill_table(Function3TabArr, kFields3);
  fill_table(Function4TabArr, kFields4);
  fill_table(Function5TabArr, kFields1);
  fill_table(Function6TabArr, kFields4);
  fill_table(Function7TabArr, kFields7);
  fill_table(Function8TabArr, kFields8);
}

const JobMask &job_mask(int function) {
  require(function >= 0 && function < kFunctionCount, "function", "setup/events_cfg/catalogue");
  return kJobMasks[function];
}
