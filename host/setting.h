// CNuvSetting and CNuvAngleTr: the application's settings and the user's angle unit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "host/export.h"

enum class NuvAngleUnit : std::uint8_t { kRadians, kDegrees };

/// The settings of the application, one set for the process. Changing them while instructions
/// run is the caller's to serialise.
class NUV_SETTING_API CNuvSetting {
 public:
  static CNuvSetting& Inst() noexcept;

  /// The colour of annotations that name none, 0x00BBGGRR.
  std::uint32_t GetDefaultAnnotationColor() const noexcept;
  void SetDefaultAnnotationColor(std::uint32_t color) noexcept { default_color_ = color; }

  NuvAngleUnit GetAngleUnit() const noexcept { return angle_unit_; }
  void SetAngleUnit(NuvAngleUnit unit) noexcept { angle_unit_ = unit; }

  /// The most elements that an array may hold; 0, the start value, for 1 GiB of elements.
  std::size_t GetVectorLimit() const noexcept { return vector_limit_; }
  void SetVectorLimit(std::size_t elements) noexcept { vector_limit_ = elements; }

  /// The file, its path in UTF-8, to which log entries are appended; empty, the start value, for
  /// the standard error stream.
  const std::string& GetLogFile() const noexcept { return log_file_; }
  void SetLogFile(const std::string& path) { log_file_ = path; }

 private:
  std::uint32_t default_color_ = 0;
  NuvAngleUnit angle_unit_ = NuvAngleUnit::kRadians;
  std::size_t vector_limit_ = 0;
  std::string log_file_;
};

/// Angles between the user's preferred unit and radians.
class NUV_SETTING_API CNuvAngleTr {
 public:
  static double ToRad(double angle) noexcept;
  /// The flag belongs to the host; it changes nothing here.
  static double ToPrefs(double angle, bool flag) noexcept;
};
