#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>

namespace orvane::host {

// Creates a folder and those above it that are missing, for the user alone. Answers an errno, or 0.
[[nodiscard]] int makeFolders(const std::filesystem::path& folder);

// Writes a new file beside `target`, waits until it is on the disk and puts it in the place of
// `target`, whose mode it takes over if it is there. Answers an errno, or 0; after a failure
// `target` is as it was.
[[nodiscard]] int replaceFile(const std::filesystem::path& target, const std::string& text,
                              mode_t ofNewFiles = 0600);

}  // namespace orvane::host
