// Why a value is not accepted: what the masks would not take, and what the file would not give back.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "setup/settings/settings.h"
#include "util/language.h"

// The faults of `value`, which the records have taken already; none when it is good. `typed` is the value itself or, of
// a password, the text in clear. A temperature in the records gets its decimal. Needs the models (InitUpsTypeArray).
std::vector<std::string> faults_of(const Setting &setting, const std::string &typed, const std::string &value);

// The first fault of a text in a field of that kind: its characters and its length; "" for none.
std::string fault_of_text(const FieldDescriptor &field, std::string_view text);
