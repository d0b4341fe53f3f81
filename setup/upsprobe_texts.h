// Texts of the detection dialog.
#pragma once

#include "util/language.h"

extern Label probeframe_label01;                      // progress, %s device
extern Label probeframe_label02;                      // above what was found; a blank behind each "|"
extern Label probeframe_label03, probeframe_label04;  // the model, the port
extern Label probeframe_label05;                      // nothing was found: title of the menu
extern Label probeframe_label06, probeframe_label07;  // its entries: again, by hand
extern Label probe_ok_label, probe_cancel_label;      // the keys of the confirmation
