// Reversible scrambling of stored passwords: it hides them from a glance, it is no encryption.
#pragma once

#include <cstddef>

// The rule of the monitor's access password: every byte b becomes (160 - b) modulo 256, in place. Applied twice it
// gives the text back. A byte 0xA0 becomes the terminator.
void mirror_bytes(char *text);

// The rule of the SMTP password: every byte is XORed with the 12 bytes of a fixed key, in turn. At most 511 bytes of
// `text` are taken. Returns a static buffer of 512 bytes that the next call overwrites; applied again it gives the text
// back, but a byte that equals its key byte ends it there.
char *encrypt(const char *text);
