// Serial ports: asks the UPS on a port for its model, without disturbing a port that another program uses.
//
// `buf` and `size` are the caller's result buffer: the answer, or the reason of a failure, is appended to what it
// holds, so the caller clears it before each probe. A text that does not fit is left out and changes no result. Names,
// paths and requests are never null. Every function but restore_probed_port traces that it was entered.
//
// Results and the texts that go with them; <error> is the system's text for errno:
//     1  device usable, port free, answer received     the answer (probe_port)
//     0  no memory; or a path that does not fit        "malloc(): <error>"; nothing
//    -1  the device can't be looked up                 "stat(): <error>"
//    -2  it is no character device                     "not a character device"
//    -3  the lock file can't be opened                 "open(): <error>"
//    -4  the lock file can't be read                   "read(): <error>"
//    -5  a living process holds the port               "locked to <process number>"
//    -6  the port can't be opened, or is held (flock)  "open(): <error>"
//    -7  its settings can't be read                    "tcgetattr(): <error>"
//    -8  its settings can't be set                     "tcsetattr(): <error>"
//   -11  the request was not written whole             "write(): <error>"
//   -12  no byte was answered                          "read(): <error>"
#pragma once

#include <termios.h>

inline constexpr int kPortLocked = -5;
inline constexpr int kPortSilent = -12;

inline constexpr int kMaxAnswer = 128;        // bytes of an answer, without the terminator
inline constexpr int kDevicePathSize = 512;   // bytes of a device path, with the terminator
inline constexpr int kLockFilePathSize = 64;  // bytes of a lock file's path, with the terminator

// Appends each text of a list that a null pointer closes to the text in `buf`, as long as the new length stays below
// `size`. 1; or 0 at the first text that does not fit (those before it stay), for a null `buf` or a size below 1.
[[gnu::sentinel]] int build_ret_str(char *buf, int size, const char *text, ...);

// The default device "/dev/ttyS0"; the directory of `device` up to and including its last "/" (empty without one); the
// name after the last "/" (all of `device` without one). A null `device` means the default device. Return `dst`; or
// null, `dst` unchanged, when the text and its terminator do not fit into `size` bytes.
char *get_default_device(char *dst, int size);
char *get_device_path(char *dst, int size, const char *device);
char *get_device(char *dst, int size, const char *device);

// 1 for every name that holds a "/" or fits after "/dev/" in kDevicePathSize bytes: opening the port finds out the
// rest. A longer name is looked up as it stands: 1, -1 or -2.
int is_device_valid(char *buf, int size, const char *name);

// Whether the lock file "/var/lock/LCK..<name>" leaves the port free: as check_lockfile; 1 also when that path does not
// fit into kLockFilePathSize bytes.
int is_device_free(char *buf, int size, const char *name);

// 1 when the lock file does not exist, or names a process that does not exist; -3, -4 or -5 else. A lock file without a
// number, with 0 or with a number too large for a process holds the port (-5). The file is only read.
int check_lockfile(char *buf, int size, const char *path);

// Sets the UPS's line: 2400 bit/s, 8 data bits, no parity, 1 stop bit, no flow control, raw bytes, and a read that ends
// after one second without data. Input flags that are not in its way are kept.
void set_comm_mode(termios *settings);

// Sends `request` to the port "/dev/<name>" and collects the answer until one second of silence or kMaxAnswer bytes; a
// failed read ends it with what came. While it runs the port is held with flock. On every way out the port has its
// settings back and is closed.
// An answer that holds a NUL byte is appended up to there; an answer can so leave `buf` as it was and still give 1.
int probe_port(char *buf, int size, const char *name, const char *request);

// Gives the port that is being probed, if any, its settings back. Async-signal-safe: the handler of a signal that ends
// the program calls it. The probe must not go on after it.
void restore_probed_port();
