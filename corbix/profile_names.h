// Names that the profile store gives to what has none.
#pragma once

// The topic under which the lines before the first topic of a file are read and set.
inline constexpr const char *kTmpTopic = "@$tmp_topic$@";
// The start of the keys that nameless lines get: "@$tmp_key$@00000" is the first one of its topic.
inline constexpr const char *kTmpKey = "@$tmp_key$@";
