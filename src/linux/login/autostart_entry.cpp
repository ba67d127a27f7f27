#include "linux/login/autostart_entry.h"

#include <utility>

#include "linux/gio/handles.h"

namespace orvane::host::login {
namespace {

using gio::KeyFilePtr;

constexpr const char* kGroup = G_KEY_FILE_DESKTOP_GROUP;
constexpr const char* kEnabledByGnome = "X-GNOME-Autostart-enabled";

// Null where the text is no key file.
KeyFilePtr parsed(const std::string& entry) {
  KeyFilePtr file(g_key_file_new());
  constexpr auto keepAll =
      static_cast<GKeyFileFlags>(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS);
  const bool understood =
      g_key_file_load_from_data(file.get(), entry.data(), entry.size(), keepAll, nullptr);
  return understood ? std::move(file) : nullptr;
}

// A key that is absent, or holds something else, counts as the fallback.
bool flag(GKeyFile* file, const char* key, bool fallback) {
  gio::Failure failure;
  const bool value = g_key_file_get_boolean(file, kGroup, key, failure.out());
  return failure ? fallback : value;
}

std::string text(GKeyFile* file, const char* key) {
  const gio::TextPtr value(g_key_file_get_string(file, kGroup, key, nullptr));
  return value ? value.get() : "";
}

// A path as one argument of an Exec line (Desktop Entry Specification, "The Exec key"): in double
// quotes, with what is special in them escaped, and the percent sign doubled.
std::string quoted(const std::string& path) {
  std::string result = "\"";
  for (const char letter : path) {
    if (letter == '"' || letter == '`' || letter == '$' || letter == '\\') result += '\\';
    if (letter == '%') result += '%';
    result += letter;
  }
  return result + "\"";
}

}  // namespace

bool startsAtLogin(const std::string& entry) {
  const auto file = parsed(entry);
  return file && text(file.get(), G_KEY_FILE_DESKTOP_KEY_TYPE) == "Application" &&
         !text(file.get(), G_KEY_FILE_DESKTOP_KEY_EXEC).empty() &&
         !flag(file.get(), G_KEY_FILE_DESKTOP_KEY_HIDDEN, false) &&
         flag(file.get(), kEnabledByGnome, true);
}

std::string entryStarting(const std::string& program, const std::string& existing) {
  auto file = parsed(existing);
  if (!file) file.reset(g_key_file_new());
  const auto set = [&](const char* key, const std::string& value) {
    g_key_file_set_string(file.get(), kGroup, key, value.c_str());
  };
  set(G_KEY_FILE_DESKTOP_KEY_TYPE, "Application");
  set(G_KEY_FILE_DESKTOP_KEY_NAME, "Orvane");
  // A start that only keeps a promise to the user opens nothing where the program runs already.
  set(G_KEY_FILE_DESKTOP_KEY_EXEC, "env ORVANE_START=login " + quoted(program));
  // The command by itself would be found even after the program was removed.
  set(G_KEY_FILE_DESKTOP_KEY_TRY_EXEC, program);
  set(G_KEY_FILE_DESKTOP_KEY_ICON, "org.orvane.Orvane");
  g_key_file_remove_key(file.get(), kGroup, G_KEY_FILE_DESKTOP_KEY_HIDDEN, nullptr);
  g_key_file_remove_key(file.get(), kGroup, kEnabledByGnome, nullptr);
  gsize length = 0;
  const gio::TextPtr written(g_key_file_to_data(file.get(), &length, nullptr));
  return {written.get(), length};
}

}  // namespace orvane::host::login
