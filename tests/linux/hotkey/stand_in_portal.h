#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "../gio/private_bus.h"

namespace orvane::host::hotkey {

// How a portal behaves. Plain: as one that knows the registry of programs, and grants.
struct PortalManners {
  bool hasRegistry = true;
  bool knowsProgram = true;  // or its desktop file is not installed, and its registration refused
  bool needsProgram = true;  // whose the connection is; older registries do not mind
  bool hasShortcuts = true;
  bool answersAtAll = true;
  guint32 createResponse = 0;  // 1: the user refused, 2: it ended otherwise
  guint32 bindResponse = 0;
  bool sessionHandleIsPath = false;  // as old ones have it
  std::string sessionHandle = {};    // what the response tells in place of the real one
};

// A desktop portal on a connection of its own, which writes down what it is asked. The registry is
// strict: nothing is granted to a connection that has not said whose it is, and saying so twice, or
// for a program that it does not know, is an error.
class StandInPortal {
 public:
  using Lines = std::vector<std::string>;

  explicit StandInPortal(const gio::PrivateBus& bus, PortalManners manners = {});
  StandInPortal(const StandInPortal&) = delete;
  StandInPortal& operator=(const StandInPortal&) = delete;
  ~StandInPortal();

  // "Method(arguments)" for each call, in the order of their coming.
  [[nodiscard]] const Lines& calls() const { return calls_; }
  [[nodiscard]] std::size_t count(const std::string& method) const;
  // Errors that calls were answered with.
  [[nodiscard]] const Lines& errors() const { return errors_; }
  // The path of the session that was asked for last; of a request of its owner.
  [[nodiscard]] const std::string& session() const { return session_; }
  [[nodiscard]] std::string requestPath(const std::string& token) const;

  // Signals of the shortcuts' interface, and the end of a request, with arguments in text form.
  void send(const std::string& signal, const std::string& arguments) const;
  void respond(const std::string& path, const std::string& arguments) const;
  void activate(const std::string& session, const std::string& shortcut) const;
  // As if the session's end came from the desktop.
  void closeSession(const std::string& path) const;

 private:
  static void onCall(GDBusConnection*, const char* sender, const char* path, const char* interface,
                     const char* method, GVariant* arguments, GDBusMethodInvocation* invocation,
                     gpointer self);
  void add(const char* description);
  void registerCaller(GDBusMethodInvocation* invocation);
  void request(const std::string& method, GVariant* arguments, GDBusMethodInvocation* invocation);
  void refuse(GDBusMethodInvocation* invocation, const std::string& message);
  [[nodiscard]] std::string results(bool creates) const;
  void emit(const std::string& path, const std::string& interface, const std::string& signal,
            const std::string& arguments) const;

  const PortalManners manners_;
  const gio::ObjectPtr<GDBusConnection> connection_;
  std::set<std::string> registered_;
  std::string caller_;  // as paths name it
  std::string session_;
  Lines calls_;
  Lines errors_;
  guint name_ = 0;
};

}  // namespace orvane::host::hotkey
