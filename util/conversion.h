// Whole files from one encoding to the other; for the product's other programs, no screen calls them.
#pragma once

// From EUC-JP to UTF-8, and back. The file is converted line by line, a line of more than 2047 bytes in pieces. The
// conversion ends at the first piece that is invalid or too long when converted; what follows it is not written.
// Nothing happens when the source can't be read.
void saveEUC2UTF(const char *source, const char *destination);
void saveUTF2EUC(const char *source, const char *destination);
