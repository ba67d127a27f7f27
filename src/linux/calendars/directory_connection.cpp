#include "linux/calendars/directory_connection.h"

#include <chrono>
#include <utility>

namespace orvane::host {
namespace {

// A calendar that appears is told of in several signs at once.
constexpr std::chrono::milliseconds listingDelay{40};

}  // namespace

void DirectoryConnection::use(AccountService& service) {
  const bool isKnown = std::exchange(service_, &service) == &service;
  if (isKnown && !backOff_.isWaiting()) return;
  backOff_.cutShort();
  open();
}

void DirectoryConnection::stop() {
  for (auto* subscription : {&question_, &limit_, &listing_, &end_}) subscription->cancel();
  backOff_.reset();
  directory_.reset();
}

void DirectoryConnection::open() {
  limit_ = actor_.after(patience_.opening, [this] { lose(); });
  // It is not destroyed while it speaks.
  const auto end = [this] { end_ = actor_.after(Duration::zero(), [this] { lose(); }); };
  question_ = service_->open({[this] { listSoon(); }, end},
                             [this](std::unique_ptr<AccountDirectory> opened) {
                               if (!opened) return lose();
                               limit_.cancel();
                               backOff_.reset();
                               directory_ = std::move(opened);
                               heard_.listed();
                             });
}

void DirectoryConnection::lose() {
  for (auto* subscription : {&question_, &limit_, &listing_, &end_}) subscription->cancel();
  heard_.lost();
  directory_.reset();
  backOff_.wait([this] { open(); });
}

void DirectoryConnection::listSoon() {
  if (listing_) return;
  listing_ = actor_.after(listingDelay, [this] {
    listing_.cancel();
    heard_.listed();
  });
}

}  // namespace orvane::host
