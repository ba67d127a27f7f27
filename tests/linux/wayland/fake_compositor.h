#pragma once

#include <wayland-server-core.h>

#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "linux/wayland/fake_surface.h"

namespace orvane::fakes {

// A compositor with layer shell in the test's own process: it does what it is told, one step at a
// time, and remembers what its client asked for on its first connection. It draws nothing.
class FakeCompositor {
 public:
  struct Offers {
    bool layerShell = true;
    bool fractionalScale = true;  // with viewporter
    bool xdgOutput = true;
    // Clients find it by its name, and so may connect more than once; else the first connection is
    // handed over to them, and there is no other.
    bool byName = false;
  };
  struct OutputTold {
    std::string name;
    int x = 0;
    int y = 0;
    int width = 1280;  // in pixels
    int height = 720;
    int scale = 1;
    std::string make = "Maker";
    std::string model = "Model";
  };

  explicit FakeCompositor(Offers offers);
  FakeCompositor() : FakeCompositor(Offers{}) {}
  ~FakeCompositor();
  FakeCompositor(const FakeCompositor&) = delete;
  FakeCompositor& operator=(const FakeCompositor&) = delete;

  // Lets `connect` connect, while the compositor answers on another thread.
  void serveDuring(const std::function<void()>& connect);
  // Lets both sides handle all that the other has sent so far.
  void settle();

  [[nodiscard]] wl_display* display() { return display_; }

  class Output;
  Output& addOutput(OutputTold told);
  void changeOutput(Output& output, OutputTold told);
  void removeOutput(Output& output);
  // Ends the client's connection, as a protocol error would (with a message) or a crash.
  void breakConnection();
  // All but the first one.
  void breakFurtherConnections();
  void postError(const std::string& message);
  // Whether something that the first connection was sent is not read yet.
  [[nodiscard]] bool hasUnreadAnswers() const;

  // In the order of their creation; those that are gone, too.
  [[nodiscard]] std::vector<FakeSurface*> surfaces() const;
  [[nodiscard]] FakeSurface& surface(std::size_t index = 0) const { return *surfaces().at(index); }
  // How many buffers the client has.
  [[nodiscard]] int countBuffers() const;
  // Rules of the protocol that the client broke.
  [[nodiscard]] const std::vector<std::string>& complaints() const { return complaints_; }

  bool configuresAtOnce = true;  // grants every size
  bool showsAtOnce = true;       // answers every frame callback
  bool releasesAtOnce = false;
  bool releasesOfGone = true;  // the buffers of surfaces that end

  std::uint32_t nextSerial() { return ++serial_; }
  void complain(std::string what) { complaints_.push_back(std::move(what)); }

 private:
  friend struct FakeProtocol;
  struct FirstClient {
    wl_listener listener;
    FakeCompositor* owner;
  };
  void offer(const Offers& offers);
  void handOver();
  void listen();

  wl_display* display_;
  wl_client* client_ = nullptr;
  std::string folder_;  // of the name; empty without one
  FirstClient first_{};
  wl_resource* compositorResource_ = nullptr;
  std::uint32_t serial_ = 0;
  std::list<std::unique_ptr<FakeSurface>> surfaces_;
  std::list<std::unique_ptr<Output>> outputs_;
  std::vector<std::string> complaints_;
};

}  // namespace orvane::fakes
