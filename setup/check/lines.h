// What the lines of a configuration are, for the check and the repairs.
#pragma once

#include <string>
#include <string_view>

#include "setup/settings/setting.h"

inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The part of the file that a line stands in.
enum class Part {
  start,     // neither a setting nor a topic so far
  settings,  // in front of the first topic
  topic,
  hidden,  // after a "[" that is no topic's
};

// The setting that a line has the key of, null for none; the key of any line, "" when it has none.
const Setting *setting_of_line(std::string_view text);
std::string_view key_of_line(std::string_view text);
// The key that an unknown one was meant to be; "" when it is no misspelt one.
std::string meant_key(std::string_view key);

// A topic as a person writes it, not just a "[" somewhere in the line.
bool is_topic_line(std::string_view text);
// Whether a "[" in a line of that part, which is no topic line, hides the lines below it.
bool hides_rest(std::string_view text, Part part);
// Whether a carriage return stands before another character than the line feed.
bool has_inner_return(std::string_view text);
// The part of a value that the monitor reads, a line end left out.
std::string_view without_white_ends(std::string_view value);
