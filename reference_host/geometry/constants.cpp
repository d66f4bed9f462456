#include <numbers>

#include "host/geometry.h"

const double CNuvGeometry::Pi = std::numbers::pi;
const double CNuvGeometry::PiDiv2 = std::numbers::pi / 2.0;
const double CNuvGeometry::PiDiv4 = std::numbers::pi / 4.0;
