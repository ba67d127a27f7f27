// Owners of the C libraries' objects.
#pragma once

#include <cairo.h>
#include <pango/pangocairo.h>

#include <memory>

namespace orvane::host {

// Calls the library's own function to let go of an object.
template <auto release>
struct Release {
  template <typename T>
  void operator()(T* object) const {
    release(object);
  }
};

template <typename T>
using GObjectHandle = std::unique_ptr<T, Release<g_object_unref>>;

using CairoHandle = std::unique_ptr<cairo_t, Release<cairo_destroy>>;
using SurfaceHandle = std::unique_ptr<cairo_surface_t, Release<cairo_surface_destroy>>;
using PatternHandle = std::unique_ptr<cairo_pattern_t, Release<cairo_pattern_destroy>>;
using CairoFontOptionsHandle =
    std::unique_ptr<cairo_font_options_t, Release<cairo_font_options_destroy>>;

using ContextHandle = GObjectHandle<PangoContext>;
using FontMapHandle = GObjectHandle<PangoFontMap>;
using PangoFontHandle = GObjectHandle<PangoFont>;
using LayoutHandle = GObjectHandle<PangoLayout>;
using FontDescriptionHandle =
    std::unique_ptr<PangoFontDescription, Release<pango_font_description_free>>;
using AttributesHandle = std::unique_ptr<PangoAttrList, Release<pango_attr_list_unref>>;

// Keeps cairo's state of one context as it was, whatever happens in between.
class SavedState {
 public:
  explicit SavedState(cairo_t* cr) : cr_(cr) { cairo_save(cr); }
  ~SavedState() { cairo_restore(cr_); }
  SavedState(const SavedState&) = delete;
  SavedState& operator=(const SavedState&) = delete;

 private:
  cairo_t* cr_;
};

}  // namespace orvane::host
