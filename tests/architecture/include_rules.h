#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvane::architecture {

// What one source file does against the map of the house, as sentences that name the file and line.
// `path` is relative to src/, with slashes.
//
// - Files of the logic include the standard library, and folders that the arrows allow.
// - Files of an adapter include their own folder, what adapters share (linux/files/, linux/gio/,
//   linux/wire/), foundation/, platform/, view/, and whatever library they adapt.
// - Headers outside linux/ name no library that an adapter stands for, not even in a comment.
// - main.cpp and app/main_*, which name the adapters, may include anything.
[[nodiscard]] std::vector<std::string> violationsIn(std::string_view path, std::string_view text);

}  // namespace orvane::architecture
