#include "linux/settingswindow/form_windows.h"

#include <utility>

#include "linux/settingswindow/program_window.h"

namespace orvane::host {
namespace {

class FormWindows final : public FormWindowServer {
 public:
  FormWindows(FormWindowsOptions options, MainActor& mainActor)
      : options_(std::make_shared<const FormWindowsOptions>(std::move(options))),
        mainActor_(mainActor) {}

  // How large the content is, its form says.
  [[nodiscard]] std::shared_ptr<FormWindow> makeFormWindow(Rect, unsigned styleMask,
                                                           NSBackingStoreType, bool) override {
    return std::make_shared<ProgramWindow>(options_, mainActor_, styleMask);
  }

 private:
  const std::shared_ptr<const FormWindowsOptions> options_;
  MainActor& mainActor_;
};

}  // namespace

std::unique_ptr<FormWindowServer> makeFormWindows(FormWindowsOptions options,
                                                  MainActor& mainActor) {
  return std::make_unique<FormWindows>(std::move(options), mainActor);
}

}  // namespace orvane::host
