// Faults on demand, for the programs that are linked with faults.cpp (kav_with_faults in tests/CMakeLists.txt): one
// system call of a save, or one allocation, goes wrong as planned. Calls and allocations count from 1.
#pragma once

#include <string>

struct FaultPlan {
  int call = 0;             // this system call goes wrong
  int error = 0;            // with this errno; 0: a write takes one byte only, every other call does its work
  bool is_lasting = false;  // as do all calls after it
  int allocation = 0;       // this allocation fails
  int kill_at_call = 0;     // before this system call the process is killed
};

// Starts counting anew. Until then the environment's KAV_FAIL_ALLOCATION holds, and a file "fault-met" in the working
// directory tells when it has failed.
void plan_faults(const FaultPlan &plan);
// Whether what was to go wrong has gone wrong.
bool fault_happened();
// The calls since then that change a disk, in their order: "write cut flush rename remove", each as often as it was
// made.
std::string lasting_calls();
// Counts an allocation; true, errno set, when it must fail. For the replaced allocators.
bool allocation_fails();
