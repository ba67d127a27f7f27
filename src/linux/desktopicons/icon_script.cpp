#include "linux/desktopicons/icon_script.h"

namespace orvane::host::desktopicons {
namespace {

constexpr std::string_view kBefore =
    "tell application \"System Events\"\n"
    "    set visible of process \"Finder\" to true\n"
    "end tell\n"
    "do shell script \"defaults write com.apple.finder CreateDesktop -bool ";
constexpr std::string_view kAfter = "; killall Finder\"";

}  // namespace

ParsedScript parseIconScript(std::string_view source) {
  if (!source.starts_with(kBefore)) return {};
  source.remove_prefix(kBefore.size());
  if (!source.ends_with(kAfter)) return {};
  source.remove_suffix(kAfter.size());
  if (source == "false") return {true, IconWish::hide};
  if (source == "true") return {true, IconWish::show};
  return {};
}

}  // namespace orvane::host::desktopicons
