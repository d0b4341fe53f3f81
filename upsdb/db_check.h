// Tests a database's text: what the readers would miss, cut or misread.
#pragma once

#include <string_view>
#include <vector>

#include "upsdb/db_text.h"

// Every fault found, in the order of the lines; none when the database is sound.
std::vector<Finding> check_database(std::string_view text);
