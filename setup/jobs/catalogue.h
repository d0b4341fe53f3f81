// The job functions that the editor offers: their descriptions, and the masks in which their parameters are edited.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "record/fields.h"
#include "setup/jobs/texts.h"

inline constexpr int kJobTextSize = 512;  // bytes of every text of a job, terminator included
inline constexpr int kMaxParameters = 16;
inline constexpr int kJobLineLength = 64;  // longest line of a job in a menu

struct ParamDesc {
  char name[kJobTextSize];
  char type[32];  // "STRING", "FILE", "ULONG" or "LONG"
  char help[kJobTextSize];
  char example[kJobTextSize];
};

struct FuncListRec {
  char name[kJobTextSize];
  char title[kJobTextSize];
  char description[kJobTextSize];
  char summary[kJobTextSize];  // "#1" stands for the first parameter's value
  int32_t param_count;
  char fixed_prefix[kJobTextSize];  // arguments in front of the parameters, "," at the end; empty for most functions
  char spare[kJobTextSize];         // empty; a JobRec has its argument list here
  ParamDesc params[kMaxParameters];
};

struct JobParam {
  ParamDesc desc;
  char value[kJobTextSize];
};

// A job of the event being edited. About 40 kB: keep it on the heap.
struct JobRec {
  char name[kJobTextSize];
  char title[kJobTextSize];
  char description[kJobTextSize];
  char summary[kJobTextSize];
  int32_t param_count;  // 0 to 16
  char fixed_prefix[kJobTextSize];
  char arguments[kJobTextSize];  // as read
  char timing[256];              // "O", "P60", "OX5"
  int32_t function;              // row of the catalogue, -1 when the job is of none of its functions
  JobParam params[kMaxParameters];
  char text[1024];  // the whole job as read, without ";"; such a job is shown and written back as this text
};

// The catalogue in the language that was set when it was loaded. Written by function_catalogue() and by callers that
// store fill_function_list()'s result; a count of 0 makes the next use load it again.
extern FuncListRec DbFuncList[kFunctionCount];
extern int32_t DbFuncListCnt;

// Fills DbFuncList in the current language. Returns the number of functions (9), which the caller stores in
// DbFuncListCnt.
[[nodiscard]] int fill_function_list();
// The rows of DbFuncList, loaded when they are not.
std::span<const FuncListRec> function_catalogue();

// Makes `job` an empty one of a function of the catalogue: texts of row `index`, values empty, timing "O" ("OX" for the
// scheduler event). 1; or 0 when there is no such row: the job is then of no known function, its texts are empty.
int fill_function_rec(JobRec &job, int index, int event);

// `text` holds one character (and has room for kJobTextSize bytes): a number k from 1 to the parameter count is
// replaced by the value of parameter k, and what stands there then is compared with the later numbers in the same way.
void get_param_value(const JobRec &job, char *text);

// The job in one line, at most 64 characters, for a menu: never empty and without "|".
void job_line(const JobRec &job, char (&line)[kJobLineLength + 1]);

// --- masks

// The records that the masks edit. Texts may fill their members without a terminator: they leave and enter through
// get_field and put_field.
struct TimingFields {
  char label[10];
  char number[6];
};
struct ShutdownRec {
  char delay[7];
  TimingFields timing;
};
struct MessageRec {
  char user[60], text[60];
  TimingFields timing;
};
struct NimbroRec {
  char address[60], port[5];
  TimingFields timing;
};
struct EmailRec {
  char address[60], text[60], data_log[4], text_log[4], trouble_record[4], operation_info[4];
  TimingFields timing;
};
struct TextRec {
  char text[60];
  TimingFields timing;
};
struct ProgramRec {
  char program[60], parameter[60];
  TimingFields timing;
};
struct MessageIdRec {
  char user[60], id[6];
  TimingFields timing;
};
struct SyslogRec {
  char type[12], event_id[4], text[60];
  TimingFields timing;
};

// Written by the job mask, read when it stores.
extern ShutdownRec Func0Rec;
extern MessageRec Func1Rec;
extern NimbroRec Func2Rec;
extern EmailRec Func3Rec;
extern TextRec Func4Rec;
extern ProgramRec Func5Rec;
extern TextRec Func6Rec;
extern MessageIdRec Func7Rec;
extern SyslogRec Func8Rec;

// Their fields: the parameters, then the timing label and the timing number. Filled by init_function_tab(); the job
// mask changes the type of the timing number.
extern FieldDescriptor Function0TabArr[4], Function1TabArr[5], Function2TabArr[5], Function3TabArr[9],
    Function4TabArr[4], Function5TabArr[5], Function6TabArr[4], Function7TabArr[5], Function8TabArr[6];

// Fills the nine tables. Before the first mask is shown; again at any time.
void init_function_tab();

// Mask and record of one function.
struct JobMask {
  FieldDescriptor *fields;
  void *record;
  int count;  // fields; the last two are those of the timing
};
const JobMask &job_mask(int function);
