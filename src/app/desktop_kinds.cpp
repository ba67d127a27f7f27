#include "app/desktop_kinds.h"

#include <iterator>
#include <utility>

namespace orvane {

DesktopKinds::DesktopKinds(std::vector<Kind> kinds, std::string nothingNamed)
    : kinds_(std::move(kinds)), nothingNamed_(std::move(nothingNamed)) {}

ReturningDesktop::Opened DesktopKinds::open(const ReturningDesktop::Attempt& attempt) {
  std::vector<std::string> failures;
  for (std::size_t index = 0; index < kinds_.size(); ++index) {
    if (!isAskedFor(index, attempt)) continue;
    auto opened = kinds_[index].open(attempt);
    if (opened.server) {
      last_ = index;
      return opened;
    }
    std::move(opened.failures.begin(), opened.failures.end(), std::back_inserter(failures));
  }
  if (failures.empty()) failures.push_back(nothingNamed_);
  return {nullptr, std::move(failures)};
}

bool DesktopKinds::isAskedFor(std::size_t index, const ReturningDesktop::Attempt& attempt) const {
  if (attempt.isForTheSame && last_ && *last_ != index) return false;
  return kinds_[index].isNamed();
}

}  // namespace orvane
