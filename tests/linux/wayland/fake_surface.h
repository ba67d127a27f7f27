#pragma once

#include <wayland-server.h>
#include <wlr-layer-shell-unstable-v1-server.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "view/pixel_grid.h"

namespace orvane::fakes {

class FakeCompositor;

// What a wl_region is made of.
using FakeRegion = std::vector<PixelRect>;

// A layer surface as the compositor sees it. It keeps what was committed, and what a commit of a
// picture held.
class FakeSurface {
 public:
  // What one commit with a buffer showed.
  struct Picture {
    int width = 0;  // of the buffer
    int height = 0;
    std::vector<std::uint32_t> pixels;
    std::vector<PixelRect> changed;
    int bufferScale = 1;
    int viewWidth = 0;  // of the viewport's destination; 0: none
    int viewHeight = 0;
    int marginLeft = 0;
    int marginTop = 0;
  };

  FakeSurface(FakeCompositor& compositor, wl_resource* surface)
      : compositor_(compositor), surface_(surface) {}

  // ---- What the client asked for
  std::string nameSpace;
  wl_resource* output = nullptr;
  std::uint32_t layer = 0;
  std::uint32_t anchor = 0;
  std::int32_t exclusiveZone = 0;
  std::uint32_t keyboard = 1;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  bool takesPointer = true;
  std::vector<PixelRect> blurred;  // committed; empty: nothing
  bool isGone = false;             // destroyed by the client
  std::vector<Picture> pictures;
  int commits = 0;

  // ---- What a test does
  void configure(std::uint32_t toWidth, std::uint32_t toHeight);
  void close();
  void preferScale(std::uint32_t per120);
  // Answers the frame callbacks: what was committed is on the screen.
  void showFrame();
  void releaseBuffers();  // all that it holds
  [[nodiscard]] std::size_t heldBuffers() const { return held_.size(); }
  [[nodiscard]] bool isFrameAwaited() const { return !frames_.empty(); }

 private:
  friend class FakeCompositor;
  friend struct FakeProtocol;
  friend class FakeKWin;
  struct Pending {
    std::optional<wl_resource*> buffer;
    std::vector<PixelRect> changed;
    std::vector<wl_resource*> frames;
    std::optional<std::vector<PixelRect>> blurred;
  };

  void commit();
  void takePicture(wl_resource* buffer);

  FakeCompositor& compositor_;
  wl_resource* surface_;
  wl_resource* layerSurface_ = nullptr;
  wl_resource* fractionalScale_ = nullptr;
  Pending pending_;
  Picture state_;  // of the next picture, but for its pixels
  std::uint32_t configuredWidth_ = 0;
  std::uint32_t configuredHeight_ = 0;
  bool configured_ = false;
  bool acknowledged_ = false;
  std::vector<wl_resource*> frames_;
  std::vector<wl_resource*> held_;
};

}  // namespace orvane::fakes
