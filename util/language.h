// The language of the user interface and the pairs of texts that it chooses from.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

// 0 English, 1 Japanese. Written once by the command line, read by every screen.
extern int32_t language;

// A text that a person sees: English, then Japanese (UTF-8 in the repository, EUC-JP in the program).
// Use it as label[language]. A table of labels is an array of them: the pairs lie one after the other.
using Label = const char *const[2];

// A label in the current language, each "%s" replaced by the next of `values`.
std::string filled(Label &label, std::initializer_list<std::string_view> values);
