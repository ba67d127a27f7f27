#pragma once

#include "foundation/subject.h"

namespace orvane {

// Whether the user's session as a whole is out of sight, whatever its windows do: it is locked, or
// its seat shows another session or a text console. Main thread only.
class SessionSight {
 public:
  virtual ~SessionSight() = default;

  // Whoever is told by nothing else asks for it to be followed, from a moment later on. Costs
  // nothing before; may be called again.
  virtual void follow() = 0;
  // False while nothing is known of it.
  [[nodiscard]] virtual bool isHidden() const = 0;
  [[nodiscard]] virtual Subject<>& changed() = 0;
};

}  // namespace orvane
