#include "host/setting.h"

namespace {

constexpr double kPi = 3.141592653589793;

bool InDegrees() noexcept {
  return CNuvSetting::Inst().GetAngleUnit() == NuvAngleUnit::kDegrees;
}

}  // namespace

CNuvSetting& CNuvSetting::Inst() noexcept {
  static CNuvSetting settings;
  return settings;
}

std::uint32_t CNuvSetting::GetDefaultAnnotationColor() const noexcept {
  return default_color_;
}

double CNuvAngleTr::ToRad(double angle) noexcept {
  return InDegrees() ? angle * kPi / 180.0 : angle;
}

double CNuvAngleTr::ToPrefs(double angle, bool /*flag*/) noexcept {
  return InDegrees() ? angle * 180.0 / kPi : angle;
}
