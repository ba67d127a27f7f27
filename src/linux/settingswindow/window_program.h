#pragma once

#include <sys/types.h>

#include <functional>
#include <memory>
#include <string>

#include "linux/files/file_descriptor.h"

namespace orvane::host {

// One running program that shows a window. It has our environment and standard error, and of our
// files only its end of a socket. Destroying this kills it and leaves no zombie. Main thread only.
class WindowProgram {
 public:
  // Called once in a turn of the default main context, with the status as waitpid() tells it, when
  // the program ended by itself. The program may be destroyed inside the call.
  using Ended = std::function<void(int status)>;

  WindowProgram(pid_t process, Ended ended);
  WindowProgram(const WindowProgram&) = delete;
  WindowProgram& operator=(const WindowProgram&) = delete;
  ~WindowProgram();

  [[nodiscard]] pid_t process() const { return process_; }
  void whenEnded(Ended ended) { ended_ = std::move(ended); }

 private:
  pid_t process_;
  unsigned watch_ = 0;
  Ended ended_;
};

struct StartedProgram {
  std::unique_ptr<WindowProgram> program;  // null: it could not be started
  FileDescriptor socket;                   // our end, non-blocking
  int error = 0;                           // why not, as errno tells it
};

[[nodiscard]] StartedProgram startWindowProgram(const std::string& path,
                                                WindowProgram::Ended ended);

}  // namespace orvane::host
