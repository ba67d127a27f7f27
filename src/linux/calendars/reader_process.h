#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>

namespace orvane::host {

// One running reader program, with our ends of its standard input and output. It knows nothing of
// our environment and holds none of our files. Destroying it kills it and leaves no zombie.
class ReaderProcess {
 public:
  // Nothing when the program cannot be started.
  static std::optional<ReaderProcess> start(const std::string& program);

  ReaderProcess(ReaderProcess&& other) noexcept;
  ReaderProcess& operator=(ReaderProcess&& other) = delete;
  ReaderProcess(const ReaderProcess&) = delete;
  ~ReaderProcess();

  // Both are non-blocking sockets or pipes; -1 once closed.
  [[nodiscard]] int input() const { return input_; }
  [[nodiscard]] int output() const { return output_; }
  void closeInput();

  // Waits for it to end by itself; true when it does so in time and with status 0.
  bool endedWell(std::chrono::milliseconds patience);

 private:
  ReaderProcess(pid_t process, int input, int output)
      : process_(process), input_(input), output_(output) {}

  pid_t process_;
  int input_;
  int output_;
};

}  // namespace orvane::host
