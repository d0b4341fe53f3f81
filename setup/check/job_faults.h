// Tests of job lists: everything that the event editor would change, drop or not accept.
#pragma once

#include <string>
#include <vector>

// The faults of the list of `event`, job by job, then those of the list as a whole.
std::vector<std::string> faults_of_job_list(int event, const std::string &list);
