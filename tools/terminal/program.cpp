#include "tools/terminal/program.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cstdlib>

namespace {

std::vector<char *> pointers(std::vector<std::string> &texts) {
  std::vector<char *> result;
  result.reserve(texts.size() + 1);
  for (std::string &text : texts) result.push_back(text.data());
  result.push_back(nullptr);
  return result;
}

// The program's environment: the defaults, each replaced by a setting of the same name.
std::vector<std::string> environment(const TerminalState &t, const Start &how) {
  const char *path = std::getenv("PATH");
  const std::string log = "log_path=" + t.root + "/reports/report:exitcode=99";
  std::vector<std::string> all = {"TERM=xterm-256color",
                                  std::string("TERMINFO=") + KAVSETUP_TERMINFO,
                                  "LC_ALL=C.UTF-8",
                                  "HOME=" + t.directory,
                                  std::string("PATH=") + (path != nullptr ? path : "/usr/bin:/bin"),
                                  "ASAN_OPTIONS=" + log,
                                  "UBSAN_OPTIONS=print_stacktrace=1:" + log};
  for (const std::string &setting : how.environment) {
    const std::string name = setting.substr(0, setting.find('=') + 1);
    std::erase_if(all, [&](const std::string &other) { return other.starts_with(name); });
    all.push_back(setting);
  }
  return all;
}

struct Command {
  const char *directory;
  std::vector<char *> arguments, settings;
};

[[noreturn]] void become_program(int terminal, const Command &command) {
  setpgid(0, 0);
  signal(SIGTTOU, SIG_IGN);  // the terminal is asked for from the background
  tcsetpgrp(terminal, getpid());
  signal(SIGTTOU, SIG_DFL);
  for (const int target : {0, 1, 2}) dup2(terminal, target);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  if (chdir(command.directory) == 0) execvpe(command.arguments[0], command.arguments.data(), command.settings.data());
  _exit(127);
}

// The shell leads the session, so that the line settings outlive the program, as they do for a person, and that the
// program can be stopped. It passes a hang-up on, tells the program's id and status, and lives until its socket ends.
[[noreturn]] void become_shell(int terminal, int socket, const Command &command) {
  for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM, SIGCHLD, SIGTSTP, SIGTTIN, SIGTTOU, SIGWINCH})
    signal(number, SIG_DFL);  // whatever the test was started under
  sigset_t watched;
  sigemptyset(&watched);
  for (const int number : {SIGHUP, SIGCHLD}) sigaddset(&watched, number);
  sigprocmask(SIG_SETMASK, &watched, nullptr);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  setsid();
  ioctl(terminal, TIOCSCTTY, 0);
  const pid_t program = fork();
  if (program == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    become_program(terminal, command);
  }
  bool told = write(socket, &program, sizeof program) == sizeof program;
  int status = 0;
  while (program > 0 && waitpid(program, &status, WNOHANG) != program) {
    if (sigwaitinfo(&watched, nullptr) != SIGHUP) continue;
    kill(-program, SIGHUP);
    kill(-program, SIGCONT);
  }
  told = told && write(socket, &status, sizeof status) == sizeof status;
  char end;
  while (told && read(socket, &end, 1) > 0) continue;
  _exit(0);
}

bool open_pseudo_terminal(TerminalState &t) {
  const int master = t.master.emplace(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK)).number;
  char name[64] = "";
  if (grantpt(master) != 0 || unlockpt(master) != 0 || ptsname_r(master, name, sizeof name) != 0) return false;
  t.slave_name = name;
  const int slave = t.slave.emplace(open(name, O_RDWR | O_NOCTTY | O_CLOEXEC)).number;
  return get_line_settings(slave, t.line_settings) == 1;
}

bool start_shell(TerminalState &t, const Command &command) {
  int sockets[2];
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, sockets) != 0) return false;
  t.shell.emplace(sockets[0]);
  const Descriptor far_end(sockets[1]);
  t.shell_id = fork();
  if (t.shell_id == 0) {
    close(t.master->number);
    close(t.shell->number);
    become_shell(t.slave->number, far_end.number, command);
  }
  return read(t.shell->number, &t.process, sizeof t.process) == sizeof t.process;
}

}  // namespace

void set_size(const TerminalState &t, int rows, int columns) {
  const winsize size = {static_cast<unsigned short>(rows), static_cast<unsigned short>(columns), 0, 0};
  ioctl(t.master->number, TIOCSWINSZ, &size);
}

bool start_program(TerminalState &t, const Start &how) {
  std::vector<std::string> settings = environment(t, how);
  std::vector<std::string> arguments = {how.program.empty() ? KAVSETUP_PROGRAM : how.program};
  arguments.insert(arguments.end(), how.options.begin(), how.options.end());
  if (!open_pseudo_terminal(t)) return false;
  set_size(t, how.rows, how.columns);
  return start_shell(t, {t.directory.c_str(), pointers(arguments), pointers(settings)});
}
