// Loading and saving a whole configuration while system calls and allocations fail, and while the process is killed.
// The file is the old or the new one, whole, and nothing is left beside it.
#include "tests/faults/faults.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <functional>
#include <random>

#include "setup/configuration/configuration.h"
#include "setup/jobs/catalogue.h"
#include "setup/jobs/event_table.h"
#include "setup/session.h"
#include "setup/settings/mail.h"
#include "setup/settings/settings.h"
#include "tests/run.h"
#include "util/files.h"
#include "util/text.h"

namespace {

namespace fs = std::filesystem;

constexpr char kFile[] = "ups.cfg";
constexpr char kLock[] = ".ups.cfg.lock";
constexpr char kSecondName[] = "second";  // a hard link: the file must be written in place
constexpr char kNone[] = "(none)";

enum class Way { renamed, grows_in_place, shrinks_in_place, is_new };
using enum Way;

bool is_there() { return access(kFile, F_OK) == 0; }

std::string content_or_none() { return is_there() ? get_file(kFile) : kNone; }

// Loads what is there, changes something in every section, and saves it. 0 when any of that was not possible.
int save(int32_t number) {
  if (!(is_there() ? init_config_vals(kFile) : init_new_config_vals())) return 0;
  const int last = EventStrings.nCount - 1;  // what there is memory for are the first lists
  EXPECT_STREQ(last < 0 ? "" : CStrArr_GetStr(&EventStrings, last), last < 0 ? "" : eventlist[last].jobs[0]);
  StdRec.power = number;
  CustomRec.shutdown_minutes = number % 90 + 1;
  PathRec.data_log_size = number;
  cpynstr(MailRec.subject, std::string(static_cast<size_t>(number % 100), 's'));
  return EventStrings.nCount == kEventCount &&
         store_event_jobs(3, ("LOGMSG(\"" + std::to_string(number) + "\")O;").c_str()) && save_configuration(kFile);
}

// How many files there are that do not belong there.
long leftovers() {
  const auto all = std::distance(fs::directory_iterator("."), fs::directory_iterator());
  return all - fs::exists(kFile) - fs::exists(kSecondName);
}

struct Faults : testing::Test {
  WorkingFolder folder{kMemoryFolder};
  Way way = renamed;
  std::string old;       // what a run finds
  std::string complete;  // what it leaves when all goes well, as otherwise the old

  Faults() {
    init_all_tabs();
    plan_faults({});
  }

  void lay_out() const {
    for (const auto &entry : fs::directory_iterator(".")) fs::remove(entry.path());
    if (old == kNone) return;
    put_file(kFile, old);
    if (way != renamed) fs::create_hard_link(kFile, kSecondName);
  }

  int save_new() const { return save(way == shrinks_in_place ? 705 : 720); }

  // An old configuration, and the new one.
  void prepare(Way next) {
    way = next;
    old = kNone;
    lay_out();
    EXPECT_EQ(save(510), 1);
    if (way != is_new) old = "; of the site\n" + get_file(kFile) + "\n[rack]\nrow=4\n";
    lay_out();
    EXPECT_EQ(save_new(), 1);
    complete = get_file(kFile);
  }

  // Runs `meets` with 1, 2 and so on for every way, as long as it tells that the fault was met. How often that was.
  int count_met(const std::function<bool(int)> &meets) {
    int met = 0;
    for (const Way next : {renamed, grows_in_place, shrinks_in_place, is_new}) {
      prepare(next);
      int place = 1;
      while (meets(place) && !HasFailure()) ++place;
      EXPECT_FALSE(HasFailure()) << "way " << static_cast<int>(way) << ", place " << place;
      met += place - 1;
    }
    return met;
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

Outcome run_with_fault(const Faults &test, const FaultPlan &plan) {
  Outcome run;
  test.lay_out();
  plan_faults(plan);
  try {
    run.saved = test.save_new() == 1;
  } catch (const std::bad_alloc &) {
    run.ended = true;
  }
  run.met = fault_happened();
  plan_faults({});
  XCloseProfile();
  return run;
}

// A run that ends the program, in a process of its own.
int status_of_run(const Faults &test, const FaultPlan &plan) {
  test.lay_out();
  return status_of_child([&] {
    if (std::freopen("/dev/null", "w", stderr) == nullptr) return EXIT_FAILURE;
    plan_faults(plan);
    test.save_new();
    return EXIT_SUCCESS;
  });
}

// What reaches the disk, and in which order: a power failure finds a whole file, too.
TEST_F(Faults, IsFlushedBeforeItTakesTheOldOnesPlace) {
  const std::pair<Way, const char *> cases[] = {
      // the last two are what was unsaved, and the lock
      {renamed, "write flush rename flush remove remove"},
      {grows_in_place, "write flush flush write flush write cut flush remove remove remove"},
      {shrinks_in_place, "write flush flush write cut flush remove remove remove"},
      {is_new, "write flush rename flush remove remove"},
  };
  for (const auto &[next, calls] : cases) {
    prepare(next);
    lay_out();
    plan_faults({});
    EXPECT_EQ(save_new(), 1);
    EXPECT_EQ(lasting_calls(), calls);
  }
}

TEST_F(Faults, AnySystemCallOfASaveMayFail) {
  for (const int error : {0, EIO, ENOSPC, EINTR, EACCES, EMFILE}) {
    const int injected = count_met([&](int call) {
      const Outcome run = run_with_fault(*this, {.call = call, .error = error});
      expect_whole(run.saved);
      EXPECT_TRUE(run.saved || (run.met && error != 0)) << "nothing failed, but it is not saved";
      return run.met;
    });
    std::printf("%d system calls went wrong with error %d\n", injected, error);
  }
}

TEST_F(Faults, AnyAllocationMayFail) {
  int ended = 0;
  const int injected = count_met([&](int allocation) {
    const Outcome run = run_with_fault(*this, {.allocation = allocation});
    EXPECT_TRUE(!run.ended || status_of_run(*this, {.allocation = allocation}) == 128 + SIGABRT);
    expect_whole(run.saved);
    ended += run.ended;
    return run.met;
  });
  std::printf("%d allocations failed, %d of them ended the program\n", injected, ended);
}

// What a killed save has left: a whole file; or, where it was being written in place, its whole copy, which is found.
// What is not needed any more the next save removes.
struct AfterKill : Faults {
  long left = 0;  // copies and unfinished files

  void expect_recovery() {
    const std::string content = content_or_none();
    const std::string copy = interrupted_copy(kFile);
    EXPECT_TRUE(copy.empty() ? is_whole(content) : is_whole(get_file(copy)) && !is_whole(content)) << content;
    const long found = leftovers() - fs::exists(kLock);
    EXPECT_LE(found, 1);
    left += found;
    EXPECT_EQ(save_new(), 1);
    EXPECT_EQ(leftovers(), !copy.empty());
  }
};

// A write before the kill has put one byte into its file.
TEST_F(AfterKill, BeforeAnySystemCallOfASave) {
  const int kills = count_met([&](int call) {
    const int status = status_of_run(*this, {.call = call - 1, .kill_at_call = call});
    expect_recovery();
    return status == 128 + SIGKILL;
  });
  EXPECT_GT(kills, 50);
  std::printf("killed before %d system calls; %ld files were left beside the configuration\n", kills, left);
}

TEST_F(AfterKill, OrAfterADiskHasBroken) {
  count_met([&](int call) {
    const Outcome run = run_with_fault(*this, {.call = call, .error = EIO, .is_lasting = true});
    EXPECT_TRUE(!run.saved || content_or_none() == complete);
    expect_recovery();
    return run.met;
  });
}

// KAV_KILLS: how often; each time in the midst of saves that follow each other without a pause.
TEST_F(AfterKill, AtRandomMoments) {
  const char *wanted = std::getenv("KAV_KILLS");
  const int kills = wanted == nullptr ? 60 : std::atoi(wanted);
  std::mt19937 random(7);
  for (const Way next : {renamed, grows_in_place}) {
    prepare(next);
    for (int i = 0; i < kills / 2 && !HasFailure(); ++i) {
      lay_out();
      const useconds_t moment = 1 + random() % 20000;
      const auto save_until_killed = [&] {
        ualarm(moment, 0);
        for (int number = 510;; number = 1230 - number) save(number);
        return EXIT_SUCCESS;
      };
      EXPECT_EQ(status_of_child(save_until_killed), 128 + SIGALRM);
      expect_recovery();
    }
  }
  std::printf("killed %d times; %ld files were left beside the configuration\n", kills, left);
}

}  // namespace
