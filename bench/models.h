// A database of 500 models.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "upsdb/db_text.h"

inline constexpr int kModels = 500;

inline std::string model_name(int i) {
  char name[32];
  std::snprintf(name, sizeof name, "Halvoris %05dVA K-BENC%03d-200", 100 * i, i);
  return name;
}

// The sample database with so many more models that it has kModels. Names are as long as names can be.
inline std::string big_database() {
  std::string text;
  std::ifstream sample(SAMPLE_TEXT);
  int models = 0;
  for (std::string line; std::getline(sample, line);) {
    text += line + "\n";
    const bool is_model = line.find("|POLL_") != std::string::npos;
    if (is_model && ++models == 1) {
      for (int i = 40; i < kModels; ++i) text += model_name(i) + line.substr(line.find('|')) + "\n";
    }
  }
  std::string coded;
  std::vector<Finding> findings;
  if (models != 40 || !code_text(text, coded, findings)) std::abort();
  return coded;
}
