// What is typed into a field: the characters that its type takes, and what becomes of the text.
#pragma once

// 1 when a field of that type takes the character that begins with the byte `ch` in cell `position` (from 0).
int accepts_character(int type, int position, int ch);
// What a text becomes when its field is left, in place (12 bytes at least): without trailing blanks; type 12 a decimal
// integer, type 14 too unless it is "default"; an empty text stays empty.
void finish_text(char *text, int type);
// Cuts trailing blanks.
char *stripstr(char *str);
// Re-prints the text as a decimal integer (the buffer holds 12 bytes at least).
char *drop_leading_zeros(char *str);
