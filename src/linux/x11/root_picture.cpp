#include "linux/x11/root_picture.h"

#include <array>

#include "linux/x11/properties.h"
#include "linux/xcb/answers.h"

namespace orvane::host::x11 {

namespace {

// Programs that set a picture write two properties and may first take the old ones away.
constexpr Duration quiet = std::chrono::milliseconds(50);
constexpr std::uint32_t opaque = 0xff000000U;
constexpr std::uint32_t noPicture = 0xff202124U;

// The server leaves the unused byte of a 24-bit picture as it likes.
void makeOpaque(const PixelBuffer& pixels) {
  for (int y = 0; y < pixels.height; ++y) {
    auto* row = reinterpret_cast<std::uint32_t*>(pixels.data + std::ptrdiff_t{y} * pixels.stride);
    for (int x = 0; x < pixels.width; ++x) row[x] |= opaque;
  }
}

void fillWith(const PixelBuffer& pixels, std::uint32_t colour) {
  for (int y = 0; y < pixels.height; ++y) {
    auto* row = reinterpret_cast<std::uint32_t*>(pixels.data + std::ptrdiff_t{y} * pixels.stride);
    std::fill(row, row + pixels.width, colour);
  }
}

}  // namespace

RootPicture::RootPicture(Connection& connection, MainActor& actor)
    : connection_(connection), settling_(actor, quiet, [this] { changed_.send(); }) {
  events_ = connection_.events().subscribe([this](const xcb_generic_event_t& event) {
    if (concernsPicture(event)) settling_.signal();
  });
}

bool RootPicture::concernsPicture(const xcb_generic_event_t& event) const {
  if (typeOf(event) != XCB_PROPERTY_NOTIFY) return false;
  const auto& property = as<xcb_property_notify_event_t>(event);
  return property.window == connection_.root() &&
         (property.atom == connection_.atom(Atom::rootPixmap) ||
          property.atom == connection_.atom(Atom::esetrootPixmap));
}

std::optional<RootPicture::Source> RootPicture::source() const {
  for (const auto name : {Atom::rootPixmap, Atom::esetrootPixmap}) {
    const auto pixmap = numberProperty(connection_, connection_.root(), connection_.atom(name));
    if (!pixmap || *pixmap == XCB_NONE) continue;
    // The program that made it may be gone, and the pixmap with it.
    const auto geometry = xcb::answerTo<xcb_get_geometry_reply_t>(
        connection_.handle(), xcb_get_geometry(connection_.handle(), *pixmap));
    if (geometry && (geometry->depth == 24 || geometry->depth == 32)) {
      return Source{*pixmap, geometry->depth};
    }
  }
  return std::nullopt;
}

void RootPicture::fill(SharedPixels& pixels, PixelPoint at) const {
  // One that goes while it is read was replaced, as a rule.
  for (int attempt = 0; attempt < 2; ++attempt) {
    const auto picture = source();
    if (!picture) break;
    if (fetch(*picture, pixels, at)) return makeOpaque(pixels.buffer());
  }
  fillWith(pixels.buffer(), noPicture);
}

// The server itself repeats the pixmap over the part that is wanted, however small the pixmap is.
// That the pixmap is gone by now is nothing to report, nor is what cannot be done without it.
bool RootPicture::fetch(const Source& source, SharedPixels& pixels, PixelPoint at) const {
  auto* handle = connection_.handle();
  const auto& buffer = pixels.buffer();
  const auto part = xcb_generate_id(handle);
  const auto gc = xcb_generate_id(handle);
  xcb_create_pixmap(handle, source.depth, part, connection_.root(), extent(buffer.width),
                    extent(buffer.height));
  const std::array<std::uint32_t, 5> values = {XCB_FILL_STYLE_TILED, source.pixmap,
                                               static_cast<std::uint32_t>(-at.x),
                                               static_cast<std::uint32_t>(-at.y), 0};
  const auto made =
      xcb_create_gc_checked(handle, gc, part,
                            XCB_GC_FILL_STYLE | XCB_GC_TILE | XCB_GC_TILE_STIPPLE_ORIGIN_X |
                                XCB_GC_TILE_STIPPLE_ORIGIN_Y | XCB_GC_GRAPHICS_EXPOSURES,
                            values.data());
  const xcb_rectangle_t all{0, 0, extent(buffer.width), extent(buffer.height)};
  const auto filled = xcb_poly_fill_rectangle_checked(handle, part, gc, 1, &all);
  xcb_discard_reply(handle, filled.sequence);
  const bool isFetched = pixels.fetch(part);
  const auto freed = xcb_free_gc_checked(handle, gc);
  xcb_discard_reply(handle, freed.sequence);
  xcb_free_pixmap(handle, part);
  return xcb::wasServed(handle, made) && isFetched;
}

}  // namespace orvane::host::x11
