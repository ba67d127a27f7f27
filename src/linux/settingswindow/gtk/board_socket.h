#pragma once

#include <sigc++/connection.h>

#include <functional>
#include <string>

#include "linux/files/file_descriptor.h"
#include "linux/settingswindow/wire/message_stream.h"
#include "linux/settingswindow/wire/messages.h"

namespace orvane::window {

// The program's end of the socket, in the toolkit's main loop.
class BoardSocket {
 public:
  struct Ears {
    std::function<void(formwire::BoardMessage)> message;
    // Nothing more will come: the other end is closed, or spoke nonsense. Called once, last.
    std::function<void(bool isNonsense)> ended;
  };

  BoardSocket(host::FileDescriptor descriptor, Ears ears);
  ~BoardSocket();
  BoardSocket(const BoardSocket&) = delete;
  BoardSocket& operator=(const BoardSocket&) = delete;

  // Never waits; what the socket does not take yet is kept. A message over the wire's limits is
  // dropped.
  void send(const formwire::WindowMessage& message);

 private:
  bool read();
  bool readOnce();
  void handOn();
  bool write();
  void end(bool isNonsense);

  const host::FileDescriptor descriptor_;
  const Ears ears_;
  formwire::BoardMessageStream stream_;
  std::string unsent_;
  sigc::connection reading_;
  sigc::connection writing_;
  bool hasEnded_ = false;
};

}  // namespace orvane::window
