#include "linux/settingswindow/gtk/x11_position.h"

#include <gdk/gdk.h>
#ifdef GDK_WINDOWING_X11
#include <gdk/x11/gdkx.h>
#endif
#include <gdkmm/display.h>
#include <gdkmm/monitor.h>
#include <gdkmm/surface.h>

#include <cmath>
#include <memory>
#include <utility>

namespace orvane::window {

#ifdef GDK_WINDOWING_X11
namespace {

// How much of a window has to lie on a screen to be got hold of.
constexpr int kGrip = 80;

// The window as the server knows it, which is ahead of the toolkit.
class OnServer {
 public:
  explicit OnServer(GdkSurface* surface)
      : display_(gdk_x11_display_get_xdisplay(gdk_surface_get_display(surface))),
        window_(gdk_x11_surface_get_xid(surface)),
        scale_(gdk_surface_get_scale_factor(surface)) {}

  [[nodiscard]] std::optional<Point> position() const {
    int x = 0;
    int y = 0;
    ::Window child = 0;
    if (!XTranslateCoordinates(display_, window_, root(), 0, 0, &x, &y, &child)) {
      return std::nullopt;
    }
    return Point{x / scale_, y / scale_};
  }
  [[nodiscard]] Size size() const {
    ::Window root = 0;
    int x = 0;
    int y = 0;
    unsigned width = 0;
    unsigned height = 0;
    unsigned border = 0;
    unsigned depth = 0;
    XGetGeometry(display_, window_, &root, &x, &y, &width, &height, &border, &depth);
    return {width / scale_, height / scale_};
  }
  void move(const Point& position) const {
    XMoveWindow(display_, window_, static_cast<int>(std::lround(position.x * scale_)),
                static_cast<int>(std::lround(position.y * scale_)));
  }

 private:
  [[nodiscard]] ::Window root() const { return XDefaultRootWindow(display_); }

  Display* const display_;
  const ::Window window_;
  const double scale_;
};

GdkSurface* x11Surface(Gtk::Window& window) {
  const auto surface = window.get_surface();
  return surface && GDK_IS_X11_SURFACE(surface->gobj()) ? surface->gobj() : nullptr;
}

Rect areaOf(Gdk::Monitor& monitor) {
  Gdk::Rectangle area;
  monitor.get_geometry(area);
  return {static_cast<double>(area.get_x()), static_cast<double>(area.get_y()),
          static_cast<double>(area.get_width()), static_cast<double>(area.get_height())};
}

bool canBeReached(Gtk::Window& window, const Rect& frame) {
  const Rect grip{frame.x + (frame.width - kGrip) / 2, frame.y, kGrip, kGrip};
  const auto monitors = window.get_display()->get_monitors();
  for (guint i = 0; i < monitors->get_n_items(); ++i) {
    const auto monitor = std::dynamic_pointer_cast<Gdk::Monitor>(monitors->get_object(i));
    if (monitor && grip.intersects(areaOf(*monitor))) return true;
  }
  return false;
}

void place(Gtk::Window& window, const std::optional<Point>& position, const Size& size) {
  const OnServer server(x11Surface(window));
  if (position && canBeReached(window, {position->x, position->y, size.width, size.height})) {
    return server.move(*position);
  }
  const auto monitor = window.get_display()->get_monitor_at_surface(window.get_surface());
  if (!monitor) return;
  const Rect area = areaOf(*monitor);
  server.move({area.x + (area.width - size.width) / 2, area.y + (area.height - size.height) / 2});
}

}  // namespace

std::optional<Point> positionOf(Gtk::Window& window) {
  GdkSurface* surface = x11Surface(window);
  return surface && window.get_mapped() ? OnServer(surface).position() : std::nullopt;
}

void moveTo(Gtk::Window& window, const std::optional<Point>& position) {
  GdkSurface* surface = x11Surface(window);
  if (!surface) return;
  const Size size = OnServer(surface).size();
  if (size.width >= kGrip) return place(window, position, size);
  // It is not laid out yet, and will be before anything of it is seen.
  const auto once = std::make_shared<sigc::connection>();
  *once = window.get_surface()->signal_layout().connect(
      [&window, position, once](int width, int height) {
        place(window, position, {static_cast<double>(width), static_cast<double>(height)});
        // What was captured ends with the connection: this one outlives it.
        sigc::connection ending = *once;
        ending.disconnect();
      });
}

MoveWatch::MoveWatch(Gtk::Window& window, std::function<void()> moved)
    : window_(window), moved_(std::move(moved)) {
  const auto heard = +[](GdkDisplay*, const XEvent* event, const MoveWatch* watch) -> gboolean {
    GdkSurface* surface = x11Surface(watch->window_);
    const bool isOfWindow = event->type == ConfigureNotify && surface;
    if (isOfWindow && event->xconfigure.window == gdk_x11_surface_get_xid(surface)) watch->moved_();
    return FALSE;
  };
  GdkDisplay* display = window.get_display()->gobj();
  if (!GDK_IS_X11_DISPLAY(display)) return;
  handler_ = g_signal_connect(display, "xevent", G_CALLBACK(heard), this);
}

MoveWatch::~MoveWatch() {
  if (handler_ != 0) g_signal_handler_disconnect(window_.get_display()->gobj(), handler_);
}

#else

std::optional<Point> positionOf(Gtk::Window&) { return std::nullopt; }
MoveWatch::MoveWatch(Gtk::Window& window, std::function<void()> moved)
    : window_(window), moved_(std::move(moved)) {}
MoveWatch::~MoveWatch() = default;
void moveTo(Gtk::Window&, const std::optional<Point>&) {}

#endif

}  // namespace orvane::window
