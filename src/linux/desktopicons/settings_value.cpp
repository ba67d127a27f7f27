#include "linux/desktopicons/settings_value.h"

#include <memory>
#include <utility>

namespace orvane::host::desktopicons {
namespace {

using gio::VariantPtr;

struct ReleaseSchema {
  void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
};
struct FreeTexts {
  void operator()(char** texts) const { g_strfreev(texts); }
};

std::string printed(const VariantPtr& value) {
  if (!value) return {};
  const gio::TextPtr text(g_variant_print(value.get(), TRUE));
  return text.get();
}

}  // namespace

std::optional<SettingsValue> SettingsValue::find(const std::string& schema,
                                                 const std::string& key) {
  auto* const source = g_settings_schema_source_get_default();
  if (!source) return std::nullopt;
  const std::unique_ptr<GSettingsSchema, ReleaseSchema> found(
      g_settings_schema_source_lookup(source, schema.c_str(), TRUE));
  if (!found || !g_settings_schema_get_path(found.get()) ||
      !g_settings_schema_has_key(found.get(), key.c_str())) {
    return std::nullopt;
  }
  return SettingsValue(
      gio::ObjectPtr<GSettings>(g_settings_new_full(found.get(), nullptr, nullptr)), key);
}

std::string SettingsValue::text() const {
  return printed(VariantPtr(g_settings_get_value(settings_.get(), key_.c_str())));
}

std::string SettingsValue::userText() const {
  return printed(VariantPtr(g_settings_get_user_value(settings_.get(), key_.c_str())));
}

VariantPtr SettingsValue::parsed(const std::string& text) const {
  const VariantPtr now(g_settings_get_value(settings_.get(), key_.c_str()));
  return VariantPtr(
      g_variant_parse(g_variant_get_type(now.get()), text.c_str(), nullptr, nullptr, nullptr));
}

std::string SettingsValue::normalized(const std::string& text) const {
  return printed(parsed(text));
}

bool SettingsValue::set(const std::string& text) const {
  if (!g_settings_is_writable(settings_.get(), key_.c_str())) return false;
  if (text.empty()) {
    g_settings_reset(settings_.get(), key_.c_str());
    return true;
  }
  const auto value = parsed(text);
  return value && g_settings_set_value(settings_.get(), key_.c_str(), value.get());
}

std::vector<std::string> SettingsValue::texts() const {
  const VariantPtr value(g_settings_get_value(settings_.get(), key_.c_str()));
  if (!g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING_ARRAY)) return {};
  const std::unique_ptr<char*, FreeTexts> all(g_variant_dup_strv(value.get(), nullptr));
  std::vector<std::string> result;
  for (char** each = all.get(); *each; ++each) result.emplace_back(*each);
  return result;
}

bool SettingsValue::setTexts(const std::vector<std::string>& texts) const {
  if (!g_settings_is_writable(settings_.get(), key_.c_str())) return false;
  std::vector<const char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (const auto& text : texts) pointers.push_back(text.c_str());
  pointers.push_back(nullptr);
  return g_settings_set_strv(settings_.get(), key_.c_str(), pointers.data());
}

}  // namespace orvane::host::desktopicons
