#include "linux/x11/protocol_error.h"

#include <array>
#include <string_view>

namespace orvane::host::x11 {

namespace {

struct Named {
  int code;
  const char* name;
};

// The core requests that this adapter makes.
constexpr std::array requests = {
    Named{XCB_CREATE_WINDOW, "CreateWindow"},
    Named{XCB_CHANGE_WINDOW_ATTRIBUTES, "ChangeWindowAttributes"},
    Named{XCB_DESTROY_WINDOW, "DestroyWindow"},
    Named{XCB_MAP_WINDOW, "MapWindow"},
    Named{XCB_UNMAP_WINDOW, "UnmapWindow"},
    Named{XCB_CONFIGURE_WINDOW, "ConfigureWindow"},
    Named{XCB_CHANGE_PROPERTY, "ChangeProperty"},
    Named{XCB_SEND_EVENT, "SendEvent"},
    Named{XCB_CREATE_PIXMAP, "CreatePixmap"},
    Named{XCB_FREE_PIXMAP, "FreePixmap"},
    Named{XCB_CREATE_GC, "CreateGC"},
    Named{XCB_FREE_GC, "FreeGC"},
    Named{XCB_POLY_FILL_RECTANGLE, "PolyFillRectangle"},
    Named{XCB_PUT_IMAGE, "PutImage"},
    Named{XCB_CREATE_COLORMAP, "CreateColormap"},
    Named{XCB_FREE_COLORMAP, "FreeColormap"},
};

constexpr std::array errors = {
    Named{XCB_REQUEST, "BadRequest"},
    Named{XCB_VALUE, "BadValue"},
    Named{XCB_WINDOW, "BadWindow"},
    Named{XCB_PIXMAP, "BadPixmap"},
    Named{XCB_ATOM, "BadAtom"},
    Named{XCB_CURSOR, "BadCursor"},
    Named{XCB_FONT, "BadFont"},
    Named{XCB_MATCH, "BadMatch"},
    Named{XCB_DRAWABLE, "BadDrawable"},
    Named{XCB_ACCESS, "BadAccess"},
    Named{XCB_ALLOC, "BadAlloc"},
    Named{XCB_COLORMAP, "BadColor"},
    Named{XCB_G_CONTEXT, "BadGC"},
    Named{XCB_ID_CHOICE, "BadIDChoice"},
    Named{XCB_NAME, "BadName"},
    Named{XCB_LENGTH, "BadLength"},
    Named{XCB_IMPLEMENTATION, "BadImplementation"},
};

struct NamedOfExtension {
  std::string_view extension;
  int code;  // counted from the extension's first
  const char* name;
};

// From the protocol descriptions of the extensions that are used.
constexpr std::array extensionErrors = {
    NamedOfExtension{"MIT-SHM", 0, "BadShmSeg"}, NamedOfExtension{"RANDR", 0, "BadOutput"},
    NamedOfExtension{"RANDR", 1, "BadCrtc"},     NamedOfExtension{"RANDR", 2, "BadMode"},
    NamedOfExtension{"RANDR", 3, "BadProvider"}, NamedOfExtension{"XFIXES", 0, "BadRegion"},
};

std::string nameOf(const Extension& extension, int code) {
  for (const auto& named : extensionErrors) {
    if (named.extension == extension.name && named.code == code) return named.name;
  }
  return extension.name + " error " + std::to_string(code);
}

// Null for a code that has no name here.
template <class Table>
const char* nameIn(const Table& table, int code) {
  for (const Named& named : table) {
    if (named.code == code) return named.name;
  }
  return nullptr;
}

std::string requestOf(const xcb_generic_error_t& error, const std::vector<Extension>& extensions) {
  if (const char* name = nameIn(requests, error.major_code)) return name;
  const auto minor = std::to_string(error.minor_code);
  for (const auto& extension : extensions) {
    if (extension.request == error.major_code) return extension.name + " request " + minor;
  }
  return "request " + std::to_string(error.major_code) + "." + minor;
}

// Extensions count their errors from the first number that was given to them.
std::string reasonOf(const xcb_generic_error_t& error, const std::vector<Extension>& extensions) {
  if (const char* name = nameIn(errors, error.error_code)) return name;
  const Extension* raised = nullptr;
  for (const auto& each : extensions) {
    if (each.firstError == 0 || each.firstError > error.error_code) continue;
    if (raised == nullptr || each.firstError > raised->firstError) raised = &each;
  }
  if (raised == nullptr) return "error " + std::to_string(error.error_code);
  return nameOf(*raised, error.error_code - raised->firstError);
}

}  // namespace

std::string describe(const xcb_generic_error_t& error, const std::vector<Extension>& extensions) {
  return "The X server refused " + requestOf(error, extensions) + ": " +
         reasonOf(error, extensions) + ".";
}

}  // namespace orvane::host::x11
