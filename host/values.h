// The host's scalar value types: boolean, number, text, point, line, circle, rectangle.
#pragma once

#include <string>
#include <string_view>

#include "host/base_type.h"
#include "host/std_str.h"

/// One boolean.
class NUV_OBJECT_API CNuvBool final : public CNuvBaseType {
 public:
  static constexpr NUV_OBJ_TYPE kType = NUV_OBJ_BOOL;

  explicit CNuvBool(bool value = false) noexcept : value_(value) {}
  CNuvBool& operator=(bool value) noexcept {
    value_ = value;
    return *this;
  }
  operator bool&() noexcept { return value_; }
  operator const bool&() const noexcept { return value_; }
  friend bool operator==(const CNuvBool& a, const CNuvBool& b) { return a.value_ == b.value_; }

  CNuvBaseType* Clone() const override;
  bool Copy(const CNuvBaseType& other) override;
  bool Compare(const CNuvBaseType& other) const override;
  NUV_OBJ_TYPE GetType() const noexcept override;

 private:
  bool value_;
};

/// One number.
class NUV_OBJECT_API CNuvDouble final : public CNuvBaseType {
 public:
  static constexpr NUV_OBJ_TYPE kType = NUV_OBJ_DOUBLE;

  explicit CNuvDouble(double value = 0.0) noexcept : value_(value) {}
  CNuvDouble& operator=(double value) noexcept {
    value_ = value;
    return *this;
  }
  operator double&() noexcept { return value_; }
  operator const double&() const noexcept { return value_; }
  friend bool operator==(const CNuvDouble& a, const CNuvDouble& b) { return a.value_ == b.value_; }

  CNuvBaseType* Clone() const override;
  bool Copy(const CNuvBaseType& other) override;
  bool Compare(const CNuvBaseType& other) const override;
  NUV_OBJ_TYPE GetType() const noexcept override;

 private:
  double value_;
};

/// An 8-bit text. Bytes 128 to 255 are legal everywhere; a zero byte ends the text.
class NUV_OBJECT_API CNuvString final : public CNuvBaseType {
 public:
  static constexpr NUV_OBJ_TYPE kType = NUV_OBJ_STRING;

  CNuvString() noexcept;
  /// A null pointer stands for the empty text.
  CNuvString(const char* text);
  CNuvString(const std::string& text) : CNuvString(text.c_str()) {}
  CNuvString(const CNuvString& other);
  CNuvString(CNuvString&& other) noexcept;
  ~CNuvString() override;
  CNuvString& operator=(const CNuvString& other);
  CNuvString& operator=(CNuvString&& other) noexcept;
  /// The text may be a part of this one.
  CNuvString& operator=(const char* text);
  operator const char*() const noexcept;
  friend NUV_OBJECT_API bool operator==(const CNuvString& a, const CNuvString& b) noexcept;

  CNuvBaseType* Clone() const override;
  bool Copy(const CNuvBaseType& other) override;
  bool Compare(const CNuvBaseType& other) const override;
  NUV_OBJ_TYPE GetType() const noexcept override;

 private:
  CStdStr text_;
};

/// A point in the image; y grows downward. Equality is exact in both coordinates.
template <class Number, NUV_OBJ_TYPE Type>
class TNuvPoint final : public CNuvBaseType {
 public:
  static constexpr NUV_OBJ_TYPE kType = Type;

  TNuvPoint(Number x_value = 0, Number y_value = 0) noexcept : x(x_value), y(y_value) {}
  friend bool operator==(const TNuvPoint& a, const TNuvPoint& b) {
    return a.x == b.x && a.y == b.y;
  }

  CNuvBaseType* Clone() const override;
  bool Copy(const CNuvBaseType& other) override;
  bool Compare(const CNuvBaseType& other) const override;
  NUV_OBJ_TYPE GetType() const noexcept override;

  Number x;
  Number y;
};
extern template class NUV_OBJECT_API TNuvPoint<double, NUV_OBJ_POINT>;
using CNuvPoint = TNuvPoint<double, NUV_OBJ_POINT>;

/// A line in normal form: the points (x, y) with -x sin(a) + y cos(a) = d, in image coordinates.
/// Equality is exact in both numbers.
class NUV_OBJECT_API CNuvLine final : public CNuvBaseType {
 public:
  static constexpr NUV_OBJ_TYPE kType = NUV_OBJ_LINE;

  explicit CNuvLine(double angle = 0.0, double distance = 0.0) noexcept : a(angle), d(distance) {}
  friend bool operator==(const CNuvLine& l, const CNuvLine& m) { return l.a == m.a && l.d == m.d; }

  CNuvBaseType* Clone() const override;
  bool Copy(const CNuvBaseType& other) override;
  bool Compare(const CNuvBaseType& other) const override;
  NUV_OBJ_TYPE GetType() const noexcept override;

  double a;  ///< angle with the x axis, in radians
  double d;  ///< signed distance from the origin
};

/// A circle by its centre and radius.
class NUV_OBJECT_API CNuvCircle final : public CNuvBaseType {
 public:
  static constexpr NUV_OBJ_TYPE kType = NUV_OBJ_CIRCLE;

  explicit CNuvCircle(double center_x = 0.0, double center_y = 0.0, double r = 0.0) noexcept
      : x(center_x), y(center_y), radius(r) {}
  friend bool operator==(const CNuvCircle& a, const CNuvCircle& b) {
    return a.x == b.x && a.y == b.y && a.radius == b.radius;
  }

  CNuvBaseType* Clone() const override;
  bool Copy(const CNuvBaseType& other) override;
  bool Compare(const CNuvBaseType& other) const override;
  NUV_OBJ_TYPE GetType() const noexcept override;

  double x;
  double y;
  double radius;
};

/// A rectangle by its centre, width and height, turned around its centre by an angle in radians.
template <class Number, NUV_OBJ_TYPE Type>
class TNuvRect final : public CNuvBaseType {
 public:
  static constexpr NUV_OBJ_TYPE kType = Type;

  explicit TNuvRect(Number center_x = 0, Number center_y = 0, Number w = 0, Number h = 0,
                    Number a = 0) noexcept
      : x(center_x), y(center_y), width(w), height(h), angle(a) {}
  friend bool operator==(const TNuvRect& a, const TNuvRect& b) {
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height &&
           a.angle == b.angle;
  }

  CNuvBaseType* Clone() const override;
  bool Copy(const CNuvBaseType& other) override;
  bool Compare(const CNuvBaseType& other) const override;
  NUV_OBJ_TYPE GetType() const noexcept override;

  Number x;
  Number y;
  Number width;
  Number height;
  Number angle;
};
extern template class NUV_OBJECT_API TNuvRect<double, NUV_OBJ_RECT>;
using CNuvRect = TNuvRect<double, NUV_OBJ_RECT>;

// A value begins with its virtual table, which is the host's.
static_assert(sizeof(CNuvBool) == 16 && sizeof(CNuvDouble) == 16 && sizeof(CNuvString) == 48);
static_assert(sizeof(CNuvPoint) == 24 && sizeof(CNuvLine) == 24 && sizeof(CNuvCircle) == 32);
static_assert(sizeof(CNuvRect) == 48);
