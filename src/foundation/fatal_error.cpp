#include "foundation/fatal_error.h"

#include <cstdlib>
#include <iostream>

namespace orvane {

void fatalError(std::string_view sentence) {
  std::cerr << "orvane: " << sentence << std::endl;
  std::abort();
}

}  // namespace orvane
