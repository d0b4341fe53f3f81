// Asks the serial ports for a UPS, and finds its model in the database.
#pragma once

inline constexpr int kPortCount = 4;
inline constexpr int kNameSize = 64;
inline constexpr int kResultSize = 128;

// What a port answered.
struct Detection {
  char device[kNameSize];  // "/dev/ttyS0"
  int result;              // of probe_port (unixtools/portprobe.h), and the text that goes with it
  char answer[kResultSize];
  char code[kResultSize];    // of the model, "" for none
  char db_model[kNameSize];  // its name in the database, "" for none
};
// Fills in the device of a port, from 0 to kPortCount - 1.
void name_port(int port, Detection &found);
// Asks the port, and fills in the rest: 1 when the UPS on it is of a model that the database knows
// (InitUpsTypeArray), else 0.
int ask_port(int port, Detection &found);

inline constexpr int kNoModelAnswer = -13;
// The model code of an answer "%M<code>\r" into `dst` (`size` bytes; what does not fit is cut): 1, also for an empty
// answer; kNoModelAnswer for one that does not begin with "%M"; 0 for null or no size.
int prepare_string(char *dst, int size, const char *answer);
// The name of the first model whose name contains `text`, or the display name of a code that is translated before.
// `dst`
// (`size` bytes); null when there is none or it does not fit.
char *check_model_list(char *dst, int size, const char *text);
// The display name of the first model code that contains `code`, `code` itself when there is none or it does not fit.
// Returns `dst`.
char *get_model_string(char *dst, int size, const char *code);
