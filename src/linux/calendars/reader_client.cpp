#include "linux/calendars/reader_client.h"

#include <poll.h>

#include <algorithm>
#include <deque>
#include <list>
#include <memory>
#include <utility>

#include "linux/calendars/reader_session.h"

namespace orvane::host {
namespace {

using Clock = ReaderSession::Clock;

// So many files in a row costing a reader its life are a reason to doubt the program.
constexpr std::size_t suspiciousDeaths = 3;
// How long a change of pace may go unnoticed.
constexpr std::chrono::milliseconds paceCheck{50};

// One run of ReaderClient::read().
class Reading {
 public:
  Reading(const std::string& program, const ReaderLimits& limits, const ReadJob& job,
          const ReaderClient::Sink& sink, const ReaderClient::Pace& pace)
      : program_(program), limits_(limits), job_(job), sink_(sink), pace_(pace) {
    const std::size_t step = std::max<std::size_t>(limits.filesPerProcess, 1);
    for (std::size_t first = 0; first < job.paths.size(); first += step) {
      std::vector<std::size_t> batch;
      for (auto i = first; i < std::min(first + step, job.paths.size()); ++i) batch.push_back(i);
      queue_.push_back(std::move(batch));
    }
  }

  ReaderClient::Report run() {
    while (!report_.programFailed) {
      const auto pace = pace_();
      stopped_ = pace == ReadPace::stop;
      if (stopped_) break;
      if (pace == ReadPace::goOn) beginSessions();
      if (sessions_.empty()) break;
      waitForSessions();
      for (auto session = sessions_.begin(); session != sessions_.end();) {
        session = attend(session, pace) ? std::next(session) : sessions_.erase(session);
      }
    }
    return finish();
  }

 private:
  using Batch = std::vector<std::size_t>;
  using Sessions = std::list<ReaderSession>;

  std::unique_ptr<ReaderSession> begin(const Batch& batch) {
    auto process = ReaderProcess::start(program_);
    if (!process) return nullptr;
    wire::ReadRequest request{job_.windowStart, job_.windowEnd, job_.localTimeZone, {},
                              job_.shownStart,  job_.shownEnd};
    for (const auto index : batch) request.paths.push_back(job_.paths[index]);
    const bool isLast = batch.size() == 1 && !job_.leavesSuspects;
    const auto patience = isLast ? limits_.perLoneFile : limits_.perFile;
    return std::make_unique<ReaderSession>(std::move(*process), request, batch, patience);
  }

  void beginSessions() {
    while (!queue_.empty() && sessions_.size() < limits_.processes) {
      auto session = begin(queue_.front());
      if (!session) {
        report_.programFailed = true;
        return;
      }
      queue_.pop_front();
      sessions_.push_back(std::move(*session));
    }
  }

  void waitForSessions() {
    std::vector<pollfd> files;
    auto wake = Clock::now() + paceCheck;
    for (const auto& session : sessions_) {
      files.push_back({session.output(), POLLIN, 0});
      if (session.input() >= 0) files.push_back({session.input(), POLLOUT, 0});
      wake = std::min(wake, session.deadline());
    }
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(wake - Clock::now()).count();
    poll(files.data(), files.size(), static_cast<int>(std::max<long>(wait, 0)));
  }

  // Answers whether the session goes on.
  bool attend(Sessions::iterator session, ReadPace pace) {
    session->write();
    session->read();
    while (true) {
      const auto rest = session->unanswered();
      auto answer = session->next();
      if (!answer) break;
      accept(rest.front(), *answer);
      if (pace != ReadPace::goOn && rest.size() > 1) return leave(*session);
    }
    if (pace == ReadPace::hurry && !session->isDone() && session->isLone()) return leave(*session);
    if (session->hasFailed()) {
      recover(session->unanswered(), session->isLone());
      return false;
    }
    return !session->isDone();
  }

  // What it has not answered stays to be read.
  bool leave(const ReaderSession& session) {
    queue_.push_back(session.unanswered());
    return false;
  }

  void accept(std::size_t index, wire::FileAnswer& answer) {
    blame();
    sink_(index, &answer);
  }

  // The first of them may have been the end of the reader, or the last straw after many others.
  void recover(Batch batch, bool wasLone) {
    if (job_.leavesSuspects) {
      left_.push_back(batch.front());
    } else if (wasLone) {
      suspects_.push_back(batch.front());
      if (suspects_.size() % suspiciousDeaths == 0 && !isProgramSound()) {
        report_.programFailed = true;
      }
      return;
    } else {
      // The suspect goes last, so that it delays nobody.
      queue_.push_back({batch.front()});
    }
    batch.erase(batch.begin());
    if (!batch.empty()) queue_.push_front(std::move(batch));
  }

  bool isProgramSound() {
    auto session = begin({});
    if (!session || !session->endsWell(limits_.perLoneFile)) return false;
    blame();
    return true;
  }

  // The reader has shown that it works: what it died of were the files.
  void blame() {
    for (const auto index : std::exchange(suspects_, {})) sink_(index, nullptr);
  }

  ReaderClient::Report finish() {
    if (!report_.programFailed && !stopped_ && !suspects_.empty()) {
      report_.programFailed = !isProgramSound();
    }
    auto& unread = report_.unread;
    unread.insert(unread.end(), suspects_.begin(), suspects_.end());
    unread.insert(unread.end(), left_.begin(), left_.end());
    for (const auto& batch : queue_) unread.insert(unread.end(), batch.begin(), batch.end());
    for (const auto& session : sessions_) {
      const auto rest = session.unanswered();
      unread.insert(unread.end(), rest.begin(), rest.end());
    }
    return std::move(report_);
  }

  const std::string& program_;
  const ReaderLimits& limits_;
  const ReadJob& job_;
  const ReaderClient::Sink& sink_;
  const ReaderClient::Pace& pace_;
  std::deque<Batch> queue_;
  Sessions sessions_;
  std::vector<std::size_t> suspects_;
  std::vector<std::size_t> left_;
  bool stopped_ = false;
  ReaderClient::Report report_;
};

}  // namespace

ReaderClient::Report ReaderClient::read(const ReadJob& job, const Sink& sink,
                                        const Pace& pace) const {
  return Reading(program_, limits_, job, sink, pace).run();
}

}  // namespace orvane::host
