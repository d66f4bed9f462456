// CNuvGeometry: the host's geometry routines and constants.
#pragma once

#include "host/export.h"

/// Angles are in radians throughout.
class NUV_GEOMETRY_API CNuvGeometry {
 public:
  static const double Pi;
  static const double PiDiv2;
  static const double PiDiv4;
};
