// A text result put together piece by piece.
#pragma once

#include <cstddef>
#include <string>

#include "plugin/call.h"

namespace formula {

/// An empty text with room for so many characters. Ends the instruction with a failure where a text
/// of that length cannot be a result.
inline std::string TextWithRoom(std::size_t length) {
  CheckTextLength(length);
  std::string text;
  text.reserve(length);
  return text;
}

}  // namespace formula
