// Finds the UPS: asks the serial ports one after the other for a model, and takes a confirmed one into the settings.
#pragma once

#include <cstdint>

#include "screen/scrio.h"

// Results of the dialog.
inline constexpr int kProbeAgain = 1;
inline constexpr int kProbeByHand = 2;
inline constexpr int kProbeConfirmed = 3;
inline constexpr int kProbeCancelled = 4;
inline constexpr int kProbeNoMemory = -1;

// The whole detection. Only a confirmed model changes anything: settings, line settings, job lists. `arg` is not used,
// `file` goes to the confirmation.
int show_probe_win(WINDOW *parent, const char *arg, int32_t attr, const char *file);
// Shows what was found and asks: confirmed or cancelled, no memory. `file` and `spare` are not used.
int draw_found_frame(WINDOW *parent, int32_t attr, const char *file, const char *spare, const char *port,
                     const char *model);
// Nothing was found: again or by hand, no memory.
int draw_notfound_menu(WINDOW *parent);

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
