#pragma once

#include <functional>
#include <string>
#include <vector>

#include "linux/wayland/handles.h"

namespace orvane::host::wayland {

// KWin's own order of outputs, the main one first (kde_output_order_v1).
class OutputOrder {
 public:
  // `told` gets the connectors whenever the compositor has told a whole list.
  OutputOrder(Handle<kde_output_order_v1> order,
              std::function<void(std::vector<std::string>)> told);
  OutputOrder(const OutputOrder&) = delete;
  OutputOrder& operator=(const OutputOrder&) = delete;

 private:
  Handle<kde_output_order_v1> order_;
  std::function<void(std::vector<std::string>)> told_;
  std::vector<std::string> connectors_;  // of a list that is not whole yet
};

}  // namespace orvane::host::wayland
