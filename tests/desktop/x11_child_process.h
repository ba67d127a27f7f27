#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orvane::desktop_test {

using Milliseconds = std::chrono::milliseconds;

// Long enough for a loaded machine; a wait ends as soon as its condition holds.
inline constexpr Milliseconds generous{20000};

// Asks again and again, a few milliseconds apart, until the condition holds or the limit is over.
bool eventually(const std::function<bool()>& condition, Milliseconds limit = generous);
// Whether the condition holds all the time.
bool throughout(Milliseconds span, const std::function<bool()>& condition);

using Environment = std::map<std::string, std::string>;

// A program that runs while this object lives. It is stopped by its own process id, at the latest
// with this object, and so is what it started, since it leads a process group of its own.
class ChildProcess {
 public:
  // Replaces the named variables of our own environment; an empty value takes one away. What the
  // program writes can be read with output().
  ChildProcess(std::vector<std::string> command, const Environment& environment);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

  [[nodiscard]] pid_t id() const { return id_; }
  void signal(int number) const;
  // Its exit status, 128 more than the signal that killed it; nothing while it runs.
  std::optional<int> status();
  std::optional<int> waitForEnd(Milliseconds limit = generous);
  // All that it wrote so far to its standard output and error.
  const std::string& output();
  // The first line of it; empty when none came.
  std::string firstLine();

 private:
  pid_t id_ = -1;
  int pipe_ = -1;
  std::optional<int> status_;
  std::string output_;
};

}  // namespace orvane::desktop_test
