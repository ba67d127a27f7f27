#include "linux/calendars/reader_session.h"

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

namespace orvane::host {

ReaderSession::ReaderSession(ReaderProcess process, const wire::ReadRequest& request,
                             std::vector<std::size_t> indices, Clock::duration patience)
    : process_(std::move(process)),
      paths_(request.paths),
      indices_(std::move(indices)),
      request_(wire::encode(request)),
      patience_(patience),
      deadline_(Clock::now() + patience) {}

void ReaderSession::write() {
  while (process_.input() >= 0 && written_ < request_.size()) {
    const auto count = send(process_.input(), request_.data() + written_,
                            request_.size() - written_, MSG_NOSIGNAL);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return;
    if (count < 0) break;  // it is gone; the end of its output will say so
    written_ += static_cast<std::size_t>(count);
  }
  process_.closeInput();
}

void ReaderSession::read() {
  std::array<char, 65536> bytes{};
  const auto count = ::read(process_.output(), bytes.data(), bytes.size());
  if (count > 0) {
    answers_.append(bytes.data(), static_cast<std::size_t>(count));
  } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
    ended_ = true;
  }
}

std::optional<wire::FileAnswer> ReaderSession::next() {
  if (isDone() || isNonsense_) return std::nullopt;
  auto answer = answers_.next();
  isNonsense_ = answers_.isBroken() || (answer && answer->path != paths_[answered_]);
  if (!answer || isNonsense_) return std::nullopt;
  ++answered_;
  deadline_ = Clock::now() + patience_;
  return answer;
}

bool ReaderSession::hasFailed() const {
  return !isDone() && (ended_ || isNonsense_ || Clock::now() >= deadline_);
}

bool ReaderSession::endsWell(std::chrono::milliseconds patience) {
  write();
  return process_.endedWell(patience);
}

std::vector<std::size_t> ReaderSession::unanswered() const {
  return {indices_.begin() + static_cast<std::ptrdiff_t>(answered_), indices_.end()};
}

}  // namespace orvane::host
