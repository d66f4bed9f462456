// InterruptWatch: Ctrl-C as a wish to come to an end, rather than as the end.
#pragma once

namespace nuvhost {

/// While it exists, a first Ctrl-C is noted; a second one ends the process as it does without. One
/// object at a time may exist. Where Ctrl-C is ignored, as in the background, it stays so.
class InterruptWatch {
 public:
  InterruptWatch();
  InterruptWatch(const InterruptWatch&) = delete;
  InterruptWatch& operator=(const InterruptWatch&) = delete;
  ~InterruptWatch();

  bool HasHappened() const;
};

}  // namespace nuvhost
