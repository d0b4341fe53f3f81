// Texts of the settings masks beside those of their fields: titles of lists, messages.
#pragma once

#include "util/language.h"

extern Label model_list_title;     // of the list of UPS models
extern Label model_missing_label;  // the mask can't be finished without a model
extern Label shutdown_list_title, ups_shutdown_list_title, ups_restore_list_title, fixed_shutdown_list_title;
extern Label logging_list_title;
extern Label extra_job_list_title;
