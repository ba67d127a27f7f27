#include "linux/login/autostart_service.h"

#include <system_error>
#include <utility>

#include "linux/files/replace_file.h"
#include "linux/gio/handles.h"
#include "linux/login/autostart_entry.h"

namespace orvane::host {
namespace {

namespace fs = std::filesystem;

// Far more than any desktop entry; what is larger is not read.
constexpr std::uintmax_t kLargestEntry = 64 * 1024;
constexpr mode_t kReadableByAll = 0644;

class AutostartService final : public SMAppService {
 public:
  explicit AutostartService(AutostartOptions options) : options_(std::move(options)) {}

  [[nodiscard]] SMAppServiceStatus status() const override {
    if (options_.entry.empty()) return SMAppServiceStatus::notFound;
    return login::startsAtLogin(contents()) ? SMAppServiceStatus::enabled
                                            : SMAppServiceStatus::notRegistered;
  }

  [[nodiscard]] bool registerService() override {
    if (options_.entry.empty()) return false;
    const auto entry = login::entryStarting(options_.program, contents());
    return makeFolders(options_.entry.parent_path()) == 0 &&
           replaceFile(options_.entry, entry, kReadableByAll) == 0;
  }

  // An entry that is not there is as good as removed.
  [[nodiscard]] bool unregisterService() override {
    std::error_code refused;
    fs::remove(options_.entry, refused);
    return !refused;
  }

 private:
  // Empty where there is nothing that could be an entry: no file, or no ordinary one.
  [[nodiscard]] std::string contents() const {
    std::error_code unreadable;
    if (!fs::is_regular_file(options_.entry, unreadable)) return {};
    const auto size = fs::file_size(options_.entry, unreadable);
    if (unreadable || size > kLargestEntry) return {};
    char* text = nullptr;
    gsize length = 0;
    if (!g_file_get_contents(options_.entry.c_str(), &text, &length, nullptr)) return {};
    const gio::TextPtr owner(text);
    return {text, length};
  }

  const AutostartOptions options_;
};

}  // namespace

std::unique_ptr<SMAppService> makeAutostartService(AutostartOptions options) {
  return std::make_unique<AutostartService>(std::move(options));
}

fs::path autostartEntryPath(const Environment& environment) {
  const auto base = baseDirectory(environment, "XDG_CONFIG_HOME", ".config");
  return base ? *base / "autostart" / "org.orvane.Orvane.desktop" : fs::path();
}

}  // namespace orvane::host
