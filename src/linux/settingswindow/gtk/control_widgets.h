#pragma once

#include <memory>

#include "linux/settingswindow/gtk/control_widget.h"

// One factory for each kind of control; each widget shows the control already.
namespace orvane::window {

[[nodiscard]] std::unique_ptr<ControlWidget> makePicker(const FormControl& control,
                                                        const FormHands& hands);
[[nodiscard]] std::unique_ptr<ControlWidget> makeToggle(const FormControl& control,
                                                        const FormHands& hands);
[[nodiscard]] std::unique_ptr<ControlWidget> makeTextField(const FormControl& control,
                                                           const FormHands& hands);
[[nodiscard]] std::unique_ptr<ControlWidget> makeSlider(const FormControl& control,
                                                        const FormHands& hands);
[[nodiscard]] std::unique_ptr<ControlWidget> makeColorPicker(const FormControl& control,
                                                             const FormHands& hands);
[[nodiscard]] std::unique_ptr<ControlWidget> makeSourceList(const FormControl& control,
                                                            const FormHands& hands);
[[nodiscard]] std::unique_ptr<ControlWidget> makePreview(const FormControl& control,
                                                         const FormHands& hands);
[[nodiscard]] std::unique_ptr<ControlWidget> makeCaption(const FormControl& control,
                                                         const FormHands& hands);

}  // namespace orvane::window
