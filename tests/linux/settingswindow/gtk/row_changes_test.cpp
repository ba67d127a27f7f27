#include "linux/settingswindow/gtk/row_changes.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace orvane::window {
namespace {

using Rows = std::vector<FormRow>;

// Each letter is the key of a row.
Rows rows(const std::string& keys) {
  Rows rows;
  for (const char key : keys) rows.push_back({std::string(1, key), "Row", false});
  return rows;
}

std::string keysOf(const Rows& rows) {
  std::string keys;
  for (const auto& row : rows) keys += row.key;
  return keys;
}

Rows applied(Rows rows, const std::vector<RowReplacement>& replacements) {
  for (const auto& [position, removed, inserted] : replacements) {
    const auto at = rows.begin() + static_cast<std::ptrdiff_t>(position);
    const auto place = rows.erase(at, at + static_cast<std::ptrdiff_t>(removed));
    rows.insert(place, inserted.begin(), inserted.end());
  }
  return rows;
}

std::string textOf(const std::vector<RowReplacement>& replacements) {
  std::string text;
  for (const auto& [position, removed, inserted] : replacements) {
    text += (text.empty() ? "" : " ") + std::to_string(position) + "-" + std::to_string(removed) +
            "+" + keysOf(inserted);
  }
  return text;
}

TEST(RowChanges, TouchNothingButWhatDiffers) {
  const struct {
    const char* shown;
    const char* next;
    const char* changes;
  } cases[] = {{"", "", ""},
               {"abc", "abc", ""},
               {"", "abc", "0-0+abc"},
               {"abc", "", "0-3+"},
               {"abc", "xabc", "0-0+x"},
               {"abc", "abcx", "3-0+x"},
               {"abc", "axbc", "1-0+x"},
               {"abc", "ac", "1-1+"},
               {"abcd", "axcd", "1-1+x"},
               {"abcdef", "xabdeyf", "0-0+x 3-1+ 5-0+y"},
               {"abc", "cab", "0-0+c 3-1+"},
               {"aab", "ab", "1-1+"},
               {"ab", "aab", "1-0+a"}};
  for (const auto& [shown, next, changes] : cases) {
    const auto replacements = replacementsBetween(rows(shown), rows(next));
    EXPECT_EQ(textOf(replacements), changes) << shown << " to " << next;
    EXPECT_EQ(keysOf(applied(rows(shown), replacements)), next);
  }
}

TEST(RowChanges, LeaveRowsWithAnotherLabelOrStateInPlace) {
  Rows next = rows("abc");
  next[1].label = "Renamed";
  next[2].isOn = true;
  EXPECT_TRUE(replacementsBetween(rows("abc"), next).empty());
}

TEST(RowChanges, TurnAnyListIntoAnyOther) {
  std::mt19937 random(7);
  const auto anyKeys = [&] {
    std::string keys(random() % 12, 'a');
    for (char& key : keys) key = static_cast<char>('a' + random() % 6);
    return keys;
  };
  for (int round = 0; round < 2000; ++round) {
    const std::string shown = anyKeys();
    const std::string next = anyKeys();
    const auto replacements = replacementsBetween(rows(shown), rows(next));
    ASSERT_EQ(keysOf(applied(rows(shown), replacements)), next) << shown << " to " << next;
  }
}

}  // namespace
}  // namespace orvane::window
