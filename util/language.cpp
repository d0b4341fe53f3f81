#include "util/language.h"

int32_t language = 0;
