#include "linux/desktopicons/icon_memory.h"

#include <system_error>

#include "linux/files/replace_file.h"
#include "linux/gio/handles.h"

namespace orvane::host::desktopicons {
namespace {

namespace fs = std::filesystem;
using gio::KeyFilePtr;

constexpr const char* kBefore = "before";
constexpr const char* kWritten = "written";

// Empty where there is no such file, or none of this kind.
KeyFilePtr load(const fs::path& file) {
  KeyFilePtr records(g_key_file_new());
  g_key_file_load_from_file(records.get(), file.c_str(), G_KEY_FILE_NONE, nullptr);
  return records;
}

bool save(GKeyFile* records, const fs::path& file) {
  gsize length = 0;
  const gio::TextPtr text(g_key_file_to_data(records, &length, nullptr));
  return makeFolders(file.parent_path()) == 0 && replaceFile(file, {text.get(), length}) == 0;
}

}  // namespace

std::optional<IconState> IconMemory::find(const std::string& backend) const {
  const auto records = load(file_);
  const auto text = [&](const char* key) {
    return gio::TextPtr(g_key_file_get_string(records.get(), backend.c_str(), key, nullptr));
  };
  const auto before = text(kBefore);
  const auto written = text(kWritten);
  if (!before || !written) return std::nullopt;
  return IconState{before.get(), written.get()};
}

bool IconMemory::remember(const std::string& backend, const IconState& state) const {
  if (file_.empty()) return false;
  const auto records = load(file_);
  g_key_file_set_string(records.get(), backend.c_str(), kBefore, state.before.c_str());
  g_key_file_set_string(records.get(), backend.c_str(), kWritten, state.written.c_str());
  return save(records.get(), file_);
}

void IconMemory::forget(const std::string& backend) const {
  const auto records = load(file_);
  if (!g_key_file_remove_group(records.get(), backend.c_str(), nullptr)) return;
  gsize groups = 0;
  char** const names = g_key_file_get_groups(records.get(), &groups);
  g_strfreev(names);
  std::error_code refused;
  if (groups > 0) {
    save(records.get(), file_);
  } else {
    fs::remove(file_, refused);
  }
}

}  // namespace orvane::host::desktopicons
