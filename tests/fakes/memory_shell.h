#pragma once

#include <string>
#include <vector>

#include "fakes/memory_apple_scripts.h"
#include "fakes/memory_application.h"
#include "fakes/memory_form_windows.h"
#include "fakes/memory_hot_keys.h"
#include "fakes/memory_status_bar.h"

namespace orvane::fakes {

// What a program has beside its board: all of it writes down in one list what is done to it.
struct MemoryShell {
  explicit MemoryShell(std::vector<std::string>& log)
      : application(log), statusBar(log), formWindows(log), hotKeys(log), scripts(log) {}

  MemoryApplication application;
  MemoryStatusBar statusBar;
  MemoryFormWindowServer formWindows;
  MemoryHotKeys hotKeys;
  MemoryAppleScripts scripts;
};

}  // namespace orvane::fakes
