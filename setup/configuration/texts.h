// Texts about saving a configuration. "%s" is the value that the comment names.
#pragma once

#include "util/language.h"

// Another program changed a setting meanwhile; %s file, %s KEY=VALUE.
extern Label kept_label, overwritten_label;
extern Label not_saved_label, unsavable_label;  // %s file, %s reason; after the save, and before it
extern Label lock_held_label;
extern Label refused_label;  // %s file, %s key
extern Label unsaved_label;  // %s file, which an earlier session left
extern Label copy_label;     // %s file, which an interrupted write needs
