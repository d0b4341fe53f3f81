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
