// Loading and saving a whole configuration while system calls and allocations fail, and while the process is killed.
// The file is the old or the new one, whole, and nothing is left beside it.
#include "tests/faults/faults.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <random>
#include <thread>

#include "corbix/xconfig.h"
#include "setup/configuration/configuration.h"
#include "setup/jobs/catalogue.h"
#include "setup/jobs/event_table.h"
#include "setup/session.h"
#include "setup/settings/mail.h"
#include "setup/settings/settings.h"
#include "tests/folder.h"
#include "util/text.h"

namespace {

namespace fs = std::filesystem;

constexpr char kFile[] = "ups.cfg";
constexpr char kLock[] = ".ups.cfg.lock";
constexpr char kSecondName[] = "second";  // a hard link: the file must be written in place

enum class Way { kRename, kInPlace, kNewFile };
constexpr Way kWays[] = {Way::kRename, Way::kInPlace, Way::kNewFile};

int load(Way way) { return way == Way::kNewFile ? init_new_config_vals() : init_config_vals(kFile); }

// Changes something in every section; 0 when that was not possible.
int change_settings(int32_t number) {
  StdRec.power = number;
  CustomRec.shutdown_minutes = number % 90 + 1;
  PathRec.data_log_size = number;
  cpynstr(MailRec.subject, "event " + std::to_string(number));
  return EventStrings.nCount == kEventCount &&
         store_event_jobs(3, ("LOGMSG(\"" + std::to_string(number) + "\")O;").c_str());
}

std::string content_or_none() { return fs::exists(kFile) ? get_file(kFile) : "(none)"; }

// How many files there are that do not belong there.
long leftovers() {
  long count = 0;
  for (const auto &entry : fs::directory_iterator(".")) {
    const std::string name = entry.path().filename();
    if (name != kFile && name != kSecondName) ++count;
  }
  return count;
}

struct Faults : testing::Test {
  WorkingFolder folder{kMemoryFolder};
  std::string old;       // what a run finds; "(none)" for a new file
  std::string complete;  // what it leaves when all goes well, as otherwise the old

  Faults() {
    init_all_tabs();
    plan_faults({});
  }

  void lay_out(Way way) {
    fs::remove(kFile);
    fs::remove(kSecondName);
    if (old == "(none)") return;
    put_file(kFile, old);
    if (way == Way::kInPlace) fs::create_hard_link(kFile, kSecondName);
  }

  // An old configuration, and the new one.
  void prepare(Way way) {
    old = "(none)";
    lay_out(way);
    init_new_config_vals();
    EXPECT_EQ(change_settings(500), 1);
    if (way != Way::kNewFile) {
      EXPECT_EQ(save_configuration(kFile), 1);
      old = "; of the site\n" + get_file(kFile) + "\n[rack]\nrow=4\n";
    }
    lay_out(way);
    EXPECT_EQ(load(way) + change_settings(700) + save_configuration(kFile), 3);
    complete = get_file(kFile);
  }

  bool is_whole(const std::string &content) const { return content == old || content == complete; }

  void expect_whole(bool saved) const {
    const std::string found = content_or_none();
    EXPECT_TRUE(is_whole(found)) << found;
    EXPECT_TRUE(!saved || found == complete) << "told as saved, but it is not";
    EXPECT_EQ(leftovers(), 0);
  }
};

// What came of a run: whether the save was told as done, whether memory ran out where nothing could be done about it,
// and whether the fault was met at all.
struct Outcome {
  bool saved = false, ended = false, met = true;
};

int load_change_save(Way way) { return load(way) && change_settings(700) && save_configuration(kFile); }

Outcome run_with_fault(Way way, const FaultPlan &plan) {
  Outcome run;
  plan_faults(plan);
  try {
    run.saved = load_change_save(way) == 1;
  } catch (const std::bad_alloc &) {
    run.ended = true;
  }
  run.met = fault_happened();
  plan_faults({});
  XCloseProfile();
  return run;
}

pid_t start_child(const std::function<void()> &work) {
  const pid_t child = fork();
  if (child != 0) return child;
  dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
  [&]() noexcept { work(); }();  // what is thrown ends it, as it ends the program
  _exit(EXIT_SUCCESS);
}

// 128 and the signal for a killed one.
int status_of(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

// A run that ends the program, in a process of its own.
int status_of_run(Way way, const FaultPlan &plan) {
  return status_of(start_child([&] {
    plan_faults(plan);
    load_change_save(way);
  }));
}

TEST_F(Faults, AnySystemCallOfASaveMayFail) {
  int injected = 0;
  for (const Way way : kWays) {
    prepare(way);
    for (const int error : {0, EIO, ENOSPC, EINTR, EACCES, EMFILE}) {
      Outcome run;
      for (int call = 1; run.met && !HasFailure(); ++call) {
        lay_out(way);
        run = run_with_fault(way, {.call = call, .error = error});
        expect_whole(run.saved);
        EXPECT_TRUE(run.saved || (run.met && error != 0)) << "nothing failed, but it is not saved";
        EXPECT_FALSE(HasFailure()) << "way " << static_cast<int>(way) << ", call " << call << ", error " << error;
        injected += run.met;
      }
    }
  }
  std::printf("%d system calls went wrong\n", injected);
}

TEST_F(Faults, AnyAllocationMayFail) {
  int injected = 0, ended = 0;
  for (const Way way : kWays) {
    prepare(way);
    Outcome run;
    for (int allocation = 1; run.met && !HasFailure(); ++allocation) {
      lay_out(way);
      run = run_with_fault(way, {.allocation = allocation});
      if (run.ended) {
        lay_out(way);
        EXPECT_EQ(status_of_run(way, {.allocation = allocation}), 128 + SIGABRT);
      }
      expect_whole(run.saved);
      EXPECT_FALSE(HasFailure()) << "way " << static_cast<int>(way) << ", allocation " << allocation;
      injected += run.met;
      ended += run.ended;
    }
  }
  std::printf("%d allocations failed, %d of them ended the program\n", injected, ended);
}

// What a killed save has left: a whole file; or, where it was being written in place, its whole copy. The number of
// copies and unfinished files beside it.
struct AfterKill : Faults {
  long expect_recoverable(Way way) const {
    bool whole = is_whole(content_or_none());
    for (const auto &entry : fs::directory_iterator(".")) {
      const std::string name = entry.path().filename();
      if (way == Way::kInPlace && name.starts_with(".kavsetup-")) whole = whole || is_whole(get_file(name));
    }
    EXPECT_TRUE(whole) << content_or_none();
    const long left = leftovers() - fs::exists(kLock);
    EXPECT_LE(left, 1);
    return left;
  }
  // The next save removes what is not needed any more.
  void expect_cleared(Way way) const {
    const bool is_needed = way == Way::kInPlace && !is_whole(content_or_none());
    EXPECT_TRUE(load_change_save(content_or_none() == "(none)" ? Way::kNewFile : way));
    EXPECT_TRUE(leftovers() == 0 || (is_needed && leftovers() == 1));
  }
  static void clear() {
    for (const auto &entry : fs::directory_iterator(".")) fs::remove(entry.path());
  }
};

TEST_F(AfterKill, BeforeAnySystemCallOfASave) {
  int kills = 0;
  for (const Way way : kWays) {
    prepare(way);
    for (int call = 1, status = 128 + SIGKILL; status == 128 + SIGKILL && !HasFailure(); ++call) {
      clear();
      lay_out(way);
      status = status_of_run(way, {.kill_at_call = call});
      expect_recoverable(way);
      expect_cleared(way);
      kills += status == 128 + SIGKILL;
    }
  }
  EXPECT_GT(kills, 50);
  std::printf("killed before %d system calls\n", kills);
}

// KAV_KILLS: how often; each time in the midst of saves that follow each other without a pause.
TEST_F(AfterKill, AtRandomMoments) {
  const char *wanted = std::getenv("KAV_KILLS");
  const int kills = wanted == nullptr ? 60 : std::atoi(wanted);
  std::mt19937 random(7);
  long left = 0;
  for (const Way way : {Way::kRename, Way::kInPlace}) {
    prepare(way);
    for (int i = 0; i < kills / 2 && !HasFailure(); ++i) {
      clear();
      lay_out(way);
      const pid_t child = start_child([&] {
        for (int number = 500;; number = 1200 - number) {
          if (load(way) && change_settings(number)) save_configuration(kFile);
        }
      });
      std::this_thread::sleep_for(std::chrono::microseconds(random() % 20000));
      kill(child, SIGKILL);
      EXPECT_EQ(status_of(child), 128 + SIGKILL);
      left += expect_recoverable(way);
      expect_cleared(way);
    }
  }
  std::printf("killed %d times; %ld files were left beside the configuration\n", kills, left);
}

}  // namespace
