// The host's scalar value types: boolean, number, text, point, line, circle, rectangle.
#pragma once

#include <string>
#include <string_view>

#include "host/base_type.h"
#include "host/std_str.h"

/// One boolean.
class NUV_OBJECT_API CNuvBool final : public TNuvTypedValue<CNuvBool, NUV_OBJ_BOOL> {
 public:
  explicit CNuvBool(bool value = false) noexcept : value_(value) {}
  CNuvBool& operator=(bool value) noexcept {
    value_ = value;
    return *this;
  }
  operator bool&() noexcept { return value_; }
  operator const bool&() const noexcept { return value_; }
  friend bool operator==(const CNuvBool& a, const CNuvBool& b) { return a.value_ == b.value_; }

 private:
  bool value_;
};

/// One number.
class NUV_OBJECT_API CNuvDouble final : public TNuvTypedValue<CNuvDouble, NUV_OBJ_DOUBLE> {
 public:
  explicit CNuvDouble(double value = 0.0) noexcept : value_(value) {}
  CNuvDouble& operator=(double value) noexcept {
    value_ = value;
    return *this;
  }
  operator double&() noexcept { return value_; }
  operator const double&() const noexcept { return value_; }
  friend bool operator==(const CNuvDouble& a, const CNuvDouble& b) { return a.value_ == b.value_; }

 private:
  double value_;
};

/// An 8-bit text. Bytes 128 to 255 are legal everywhere; a zero byte ends the text.
class NUV_OBJECT_API CNuvString final : public TNuvTypedValue<CNuvString, NUV_OBJ_STRING> {
 public:
  CNuvString() noexcept = default;
  /// A null pointer stands for the empty text.
  CNuvString(const char* text) : text_(text) {}
  CNuvString(const std::string& text) : text_(text.c_str()) {}
  CNuvString& operator=(const char* text) {
    text_ = std::string_view(text == nullptr ? "" : text);
    return *this;
  }
  operator const char*() const noexcept { return text_.c_str(); }
  std::string_view View() const noexcept { return text_.View(); }
  /// The text, to be written in place; no zero byte may come into it.
  CStdStr& Str() noexcept { return text_; }
  friend bool operator==(const CNuvString& a, const CNuvString& b) noexcept {
    return a.text_ == b.text_;
  }

 private:
  CStdStr text_;
};

/// A point in the image; y grows downward. Equality is exact in both coordinates.
template <class Number, NUV_OBJ_TYPE Type>
class TNuvPoint final : public TNuvTypedValue<TNuvPoint<Number, Type>, Type> {
 public:
  constexpr TNuvPoint(Number x_value = 0, Number y_value = 0) noexcept : x(x_value), y(y_value) {}
  friend bool operator==(const TNuvPoint& a, const TNuvPoint& b) {
    return a.x == b.x && a.y == b.y;
  }

  Number x;
  Number y;
};
using CNuvPoint = TNuvPoint<double, NUV_OBJ_POINT>;

/// A line in normal form: the points (x, y) with -x sin(a) + y cos(a) = d, in image coordinates.
/// Equality is exact in both numbers.
class NUV_OBJECT_API CNuvLine final : public TNuvTypedValue<CNuvLine, NUV_OBJ_LINE> {
 public:
  explicit CNuvLine(double angle = 0.0, double distance = 0.0) noexcept : a(angle), d(distance) {}
  friend bool operator==(const CNuvLine& l, const CNuvLine& m) { return l.a == m.a && l.d == m.d; }

  double a;  ///< angle with the x axis, in radians
  double d;  ///< signed distance from the origin
};

/// A circle by its centre and radius.
class NUV_OBJECT_API CNuvCircle final : public TNuvTypedValue<CNuvCircle, NUV_OBJ_CIRCLE> {
 public:
  explicit CNuvCircle(double center_x = 0.0, double center_y = 0.0, double r = 0.0) noexcept
      : x(center_x), y(center_y), radius(r) {}
  friend bool operator==(const CNuvCircle& a, const CNuvCircle& b) {
    return a.x == b.x && a.y == b.y && a.radius == b.radius;
  }

  double x;
  double y;
  double radius;
};

/// A rectangle by its centre, width and height, turned around its centre by an angle in radians.
template <class Number, NUV_OBJ_TYPE Type>
class TNuvRect final : public TNuvTypedValue<TNuvRect<Number, Type>, Type> {
 public:
  explicit TNuvRect(Number center_x = 0, Number center_y = 0, Number w = 0, Number h = 0,
                    Number a = 0) noexcept
      : x(center_x), y(center_y), width(w), height(h), angle(a) {}
  friend bool operator==(const TNuvRect& a, const TNuvRect& b) {
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height &&
           a.angle == b.angle;
  }

  Number x;
  Number y;
  Number width;
  Number height;
  Number angle;
};
using CNuvRect = TNuvRect<double, NUV_OBJ_RECT>;
