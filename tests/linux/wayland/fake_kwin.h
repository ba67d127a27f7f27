#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "linux/wayland/fake_compositor.h"

namespace orvane::fakes {

// What makes a fake compositor look like KWin, and which of its own interfaces it offers.
class FakeKWin {
 public:
  // `outputManagement` is the version of its interface for outputs, which grows with each release.
  FakeKWin(FakeCompositor& compositor, std::uint32_t outputManagement);
  ~FakeKWin();  // before the compositor's end; what is bound stays bound
  FakeKWin(const FakeKWin&) = delete;
  FakeKWin& operator=(const FakeKWin&) = delete;

  // Also to a client that binds it later.
  void tellOrder(std::vector<std::string> connectors);
  // The effect is switched on, or off.
  void offerBlur();
  void withdrawBlur();

 private:
  struct Requests;
  void sendOrder(wl_resource* order) const;

  FakeCompositor& compositor_;
  std::vector<std::string> order_;
  std::vector<wl_resource*> orders_;
  wl_global* orderGlobal_ = nullptr;
  wl_global* blur_ = nullptr;
};

}  // namespace orvane::fakes
