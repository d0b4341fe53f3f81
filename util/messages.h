// The message catalogue: a text file of lines m<number>=<text>.
#pragma once

// The text of message `number` into `buffer` (`size` bytes; the rest is filled with NUL and the last byte is always
// one; what does not fit is cut). The file is "Messages.dat" after the working directory and a backslash. The first
// line that holds "m<number>=" anywhere is the hit, and its text begins at that key's length from the start of the
// line. 1; or 0 with "can't read message <number>" in `buffer`.
int UCTGetMessageDatString(int number, char *buffer, int size);

// The working directory into `buffer` (`length` bytes, cut and terminated). 1; 0 when it can't be told or is longer
// than 259 characters.
int getLocalPath(char *buffer, int length);
