#include "linux/settingswindow/gtk/row_changes.h"

#include <string_view>
#include <unordered_map>

namespace orvane::window {
namespace {

// Gathers neighbouring removals and insertions into one replacement.
class Gathering {
 public:
  void keep() {
    finish();
    ++position_;
  }
  void remove() { ++open_.removed; }
  void insert(const FormRow& row) { open_.inserted.push_back(row); }
  std::vector<RowReplacement> finished() {
    finish();
    return std::move(done_);
  }

 private:
  void finish() {
    if (open_.removed > 0 || !open_.inserted.empty()) {
      open_.position = position_;
      position_ += open_.inserted.size();
      done_.push_back(std::move(open_));
    }
    open_ = {};
  }

  std::size_t position_ = 0;
  RowReplacement open_;
  std::vector<RowReplacement> done_;
};

// How many rows of each key are still to come.
using Awaited = std::unordered_map<std::string_view, std::size_t>;

Awaited keysOf(const std::vector<FormRow>& rows) {
  Awaited awaited;
  for (const auto& row : rows) ++awaited[row.key];
  return awaited;
}

}  // namespace

std::vector<RowReplacement> replacementsBetween(const std::vector<FormRow>& shown,
                                                const std::vector<FormRow>& next) {
  Gathering gathering;
  Awaited awaited = keysOf(next);
  auto old = shown.begin();
  for (const auto& row : next) {
    for (; old != shown.end() && awaited[old->key] == 0; ++old) gathering.remove();
    if (old != shown.end() && old->key == row.key) {
      gathering.keep();
      ++old;
    } else {
      gathering.insert(row);
    }
    --awaited[row.key];
  }
  for (; old != shown.end(); ++old) gathering.remove();
  return gathering.finished();
}

}  // namespace orvane::window
