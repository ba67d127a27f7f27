#include "linux/reader/reader_program.h"

#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "linux/reader/listing.h"
#include "support/test_paths.h"

namespace orvane::ical {

namespace {

using Clock = std::chrono::steady_clock;

class ReaderProcess {
 public:
  ReaderProcess() {
    int input[2], output[2];
    if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0) {
      throw std::runtime_error("no pipe");
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    std::string name = builtProgram("orvane-reader");
    char* arguments[] = {name.data(), nullptr};
    // It needs nothing of its environment; sanitizers keep their options.
    const int failure = posix_spawn(&process_, name.c_str(), &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    close(input[0]);
    close(output[1]);
    input_ = input[1];
    output_ = output[0];
    if (failure != 0) throw std::runtime_error("cannot start the reader");
    fcntl(input_, F_SETFL, O_NONBLOCK);
  }
  ReaderProcess(const ReaderProcess&) = delete;
  ReaderProcess& operator=(const ReaderProcess&) = delete;
  ~ReaderProcess() {
    if (input_ >= 0) close(input_);
    close(output_);
    if (process_ > 0) {
      kill(process_, SIGKILL);
      waitpid(process_, nullptr, 0);
    }
  }

  [[nodiscard]] pid_t process() const { return process_; }

  ReaderRun talk(const std::string& input) {
    wire::AnswerStream stream;
    ReaderRun run;
    std::size_t written = 0;
    const auto deadline = Clock::now() + std::chrono::minutes(1);
    for (bool isOpen = true; isOpen;) {
      if (Clock::now() > deadline) {
        kill(process_, SIGKILL);
        break;
      }
      if (written == input.size() && input_ >= 0) closeInput();
      pollfd polled[2] = {{output_, POLLIN, 0}, {input_, POLLOUT, 0}};
      poll(polled, 2, 1000);
      if (input_ >= 0 && polled[1].revents != 0) written = writeSome(input, written);
      if (polled[0].revents != 0) isOpen = readSome(stream, run);
    }
    run.isStreamBroken = stream.isBroken();
    finish(run);
    return run;
  }

 private:
  void closeInput() {
    close(input_);
    input_ = -1;
  }

  std::size_t writeSome(const std::string& input, std::size_t written) {
    const ssize_t count = write(input_, input.data() + written, input.size() - written);
    return count < 0 ? input.size() : written + static_cast<std::size_t>(count);
  }

  bool readSome(wire::AnswerStream& stream, ReaderRun& run) {
    char piece[65536];
    const ssize_t count = read(output_, piece, sizeof piece);
    if (count <= 0) return false;
    stream.append(piece, static_cast<std::size_t>(count));
    while (auto answer = stream.next()) run.answers.push_back(std::move(*answer));
    return true;
  }

  void finish(ReaderRun& run) {
    int status = 0;
    rusage used{};
    wait4(process_, &status, 0, &used);
    process_ = -1;
    if (WIFEXITED(status)) run.exitStatus = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) run.signal = WTERMSIG(status);
    run.peakKilobytes = used.ru_maxrss;
    run.processorSeconds = static_cast<double>(used.ru_utime.tv_sec + used.ru_stime.tv_sec) +
                           static_cast<double>(used.ru_utime.tv_usec + used.ru_stime.tv_usec) / 1e6;
  }

  pid_t process_ = -1;
  int input_ = -1;
  int output_ = -1;
};

}  // namespace

wire::ReadRequest requestFor(const std::vector<std::string>& paths) {
  return {instant("2026-11-16T00:00:00Z"), instant("2026-11-30T00:00:00Z"), "Europe/Berlin", paths};
}

ReaderRun runReader(const std::string& input) {
  ReaderProcess process;
  signal(SIGPIPE, SIG_IGN);
  return process.talk(input);
}

ReaderRun runReader(const std::vector<std::string>& paths) {
  return runReader(wire::encode(requestFor(paths)));
}

std::string limitsOfWaitingReader() {
  const ReaderProcess process;
  const std::string path = "/proc/" + std::to_string(process.process()) + "/limits";
  const auto deadline = Clock::now() + std::chrono::seconds(30);
  std::string limits;
  // It limits its memory last.
  while (Clock::now() < deadline && limits.find("limited: yes") == std::string::npos) {
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    limits = text.str();
    std::istringstream lines(limits);
    for (std::string line; std::getline(lines, line);) {
      if (line.find("Max open files") == 0 && line.find(" 32 ") != std::string::npos) {
        limits += "limited: yes\n";
      }
    }
    sched_yield();
  }
  return limits;
}

}  // namespace orvane::ical
