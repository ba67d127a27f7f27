#include "linux/mainloop/memory_use.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

namespace orvane::host {
namespace {

// How much of the library's code and constants is in memory, in kB.
int residentOf(const std::string& library) {
  std::ifstream maps("/proc/self/smaps");
  int total = 0;
  bool counts = false;
  for (std::string line; std::getline(maps, line);) {
    std::istringstream words(line);
    std::string first, second;
    words >> first >> second;
    const bool isHead = first.find('-') != std::string::npos && second.size() == 4;
    if (isHead) {
      counts =
          line.find("/" + library) != std::string::npos && second.find('w') == std::string::npos;
    }
    if (counts && first == "Rss:") total += std::stoi(second);
  }
  return total;
}

TEST(StartPagesTest, WhatWasLoadedLaterIsLetGoAndComesBack) {
  const StartPages pages;
  ASSERT_EQ(residentOf("libthread_db"), 0) << "it was to be loaded later";
  void* const library = dlopen("libthread_db.so.1", RTLD_LAZY);
  ASSERT_NE(library, nullptr) << dlerror();
  using Symbols = const char** (*)();
  const auto symbols = reinterpret_cast<Symbols>(dlsym(library, "td_symbol_list"));
  ASSERT_NE(symbols, nullptr);
  const std::string first = symbols()[0];
  const int before = residentOf("libthread_db");
  pages.letGo();
  EXPECT_LT(residentOf("libthread_db"), before);
  EXPECT_EQ(symbols()[0], first);
  dlclose(library);
}

TEST(StartPagesTest, WhatWasThereFromTheStartStays) {
  const StartPages pages;
  const int before = residentOf("libstdc++");
  ASSERT_GT(before, 0);
  pages.letGo();
  EXPECT_GE(residentOf("libstdc++"), before);
}

}  // namespace
}  // namespace orvane::host
