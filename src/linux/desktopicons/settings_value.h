#pragma once

#include <optional>
#include <string>
#include <vector>

#include "linux/gio/handles.h"

namespace orvane::host::desktopicons {

// One key of GSettings as text: values are in the text form of variants, and the empty text stands
// for "not set by the user".
class SettingsValue {
 public:
  // Nothing where the schema or the key is not installed: the library would end the process.
  [[nodiscard]] static std::optional<SettingsValue> find(const std::string& schema,
                                                         const std::string& key);

  // What holds now, and what of it the user set.
  [[nodiscard]] std::string text() const;
  [[nodiscard]] std::string userText() const;
  // The same value as text() would print it; empty where it is not of the key's type.
  [[nodiscard]] std::string normalized(const std::string& text) const;
  // The empty text takes the user's value away. Answers whether the key took it.
  [[nodiscard]] bool set(const std::string& text) const;

  // For keys that hold a list of texts; empty for others.
  [[nodiscard]] std::vector<std::string> texts() const;
  [[nodiscard]] bool setTexts(const std::vector<std::string>& texts) const;

 private:
  SettingsValue(gio::ObjectPtr<GSettings> settings, std::string key)
      : settings_(std::move(settings)), key_(std::move(key)) {}
  [[nodiscard]] gio::VariantPtr parsed(const std::string& text) const;

  gio::ObjectPtr<GSettings> settings_;
  std::string key_;
};

}  // namespace orvane::host::desktopicons
