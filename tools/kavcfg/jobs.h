// Jobs in words: for people who read them, and for the command line.
#pragma once

#include <string>

#include "setup/jobs/catalogue.h"

// What a job does, with its texts; and when, in the editor's words. In the current language.
std::string deed_of(const JobRec &job);
std::string timing_of(const JobRec &job, int event);
