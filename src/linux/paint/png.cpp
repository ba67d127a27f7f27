#include "linux/paint/png.h"

#include <algorithm>

#include "linux/paint/handles.h"
#include "linux/paint/pixel_surface.h"

namespace orvane::host {

namespace {

PictureError error(const char* what, const std::string& path, cairo_status_t status) {
  return {std::string(what) + " " + path + ": " + cairo_status_to_string(status)};
}

PictureError readError(const std::string& path, cairo_status_t status) {
  // Whatever the decoder does not understand it reports as a lack of memory.
  if (status == CAIRO_STATUS_NO_MEMORY) {
    return {"Cannot read the picture " + path + ": it is no PNG, or damaged"};
  }
  return error("Cannot read the picture", path, status);
}

}  // namespace

Picture::Picture(int wide, int high)
    : width(std::max(wide, 0)),
      height(std::max(high, 0)),
      pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {}

PixelBuffer Picture::buffer() {
  return {reinterpret_cast<std::uint8_t*>(pixels.data()), width, height, width * 4};
}

std::variant<Picture, PictureError> readPNG(const std::string& path) {
  const SurfaceHandle file(cairo_image_surface_create_from_png(path.c_str()));
  const cairo_status_t status = cairo_surface_status(file.get());
  if (status != CAIRO_STATUS_SUCCESS) return readError(path, status);
  Picture picture(cairo_image_surface_get_width(file.get()),
                  cairo_image_surface_get_height(file.get()));
  // Files come in several formats; drawing them brings them into ours.
  const SurfaceHandle surface = surfaceOver(picture.buffer());
  const CairoHandle cr(cairo_create(surface.get()));
  cairo_set_operator(cr.get(), CAIRO_OPERATOR_SOURCE);
  cairo_set_source_surface(cr.get(), file.get(), 0, 0);
  cairo_paint(cr.get());
  cairo_surface_flush(surface.get());
  return picture;
}

std::optional<PictureError> writePNG(const Picture& picture, const std::string& path) {
  Picture copy = picture;
  const SurfaceHandle surface = surfaceOver(copy.buffer());
  const cairo_status_t status = cairo_surface_write_to_png(surface.get(), path.c_str());
  if (status != CAIRO_STATUS_SUCCESS) return error("Cannot write the picture", path, status);
  return std::nullopt;
}

}  // namespace orvane::host
