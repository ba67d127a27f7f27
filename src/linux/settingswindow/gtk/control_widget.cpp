#include "linux/settingswindow/gtk/control_widget.h"

#include "linux/settingswindow/gtk/control_widgets.h"

namespace orvane::window {
namespace {

using Make = std::unique_ptr<ControlWidget> (*)(const FormControl&, const FormHands&);

struct MakerOf {
  Make operator()(const FormPicker&) const { return makePicker; }
  Make operator()(const FormToggle&) const { return makeToggle; }
  Make operator()(const FormTextField&) const { return makeTextField; }
  Make operator()(const FormSlider&) const { return makeSlider; }
  Make operator()(const FormColorPicker&) const { return makeColorPicker; }
  Make operator()(const FormSourceList&) const { return makeSourceList; }
  Make operator()(const FormPreview&) const { return makePreview; }
  Make operator()(const FormCaption&) const { return makeCaption; }
};

}  // namespace

std::unique_ptr<ControlWidget> makeControlWidget(const FormControl& control,
                                                 const FormHands& hands) {
  return std::visit(MakerOf{}, control.content)(control, hands);
}

}  // namespace orvane::window
