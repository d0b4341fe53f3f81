// Names that are nearly right.
#pragma once

#include <span>
#include <string>
#include <string_view>

// The first of the names that are nearest to `name`, within two characters more, less or other ones; "" when there is
// none. The case of letters does not count.
std::string nearest_name(std::string_view name, std::span<const std::string_view> names);
