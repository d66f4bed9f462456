#include "tests/fuzz/values.h"

#include <bit>
#include <cmath>
#include <functional>
#include <iterator>
#include <limits>
#include <string_view>

namespace fuzz {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kHostile[] = {kNaN,
                               -kNaN,
                               kInfinity,
                               -kInfinity,
                               -0.0,
                               1e300,
                               -1e300,
                               1e-300,
                               5e-324,
                               2147483647.0,
                               -2147483648.0,
                               4294967296.0,
                               9007199254740993.0,
                               -9.3e18,
                               1.8446744073709552e19,
                               1.0000000000000002,
                               3.141592653589793,
                               0.1};

constexpr const char* kPieces[] = {
    "%", "%%", "5.1", "f",    "+#0 -", "lg", "e",  "A", "70000", "x",  "n", "s",   "0x",   "1",
    "-", "+",  "inf", "nan",  "e308",  ".",  ",",  " ", "\n",    "\t", "'", "dd",  "MMMM", "yyyy",
    "g", "HH", "tt",  "\xE9", "\xFF",  "/",  "\\", "=", "a",     "b",  "A", "text"};

std::size_t AnySize(Bytes& bytes) {
  switch (bytes.Next() % 32) {
    case 0: return bytes.Below(2048);
    case 1:
    case 2:
    case 3: return bytes.Below(256);
    case 4:
    case 5:
    case 6:
    case 7: return 4;
    default: return bytes.Below(12);
  }
}

/// The numbers of a long array, a few bytes for all: as they repeat, rise or turn.
class Series {
 public:
  explicit Series(Bytes& bytes)
      : kind_(bytes.Next() % 4),
        period_(1 + bytes.Below(16)),
        start_(AnyNumber(bytes)),
        step_(AnyNumber(bytes)) {}

  double operator()(std::size_t i) const {
    const auto x = static_cast<double>(i);
    switch (kind_) {
      case 0: return start_ + step_ * x;
      case 1: return start_ + step_ * static_cast<double>(i * i % period_);
      case 2: return start_ + 100 * std::sin(x / static_cast<double>(period_));
      default: return i % (8 * period_) == 3 ? step_ : start_ + static_cast<double>(i % 3) / 8;
    }
  }

 private:
  int kind_;
  std::size_t period_;
  double start_;
  double step_;
};

/// An array whose elements two numbers each make; short ones take them from the bytes.
template <class Vector, class Make>
CNuvObject Array(Bytes& bytes, Make make) {
  Vector array;
  array.Resize(AnySize(bytes));
  if (array.Size() <= 16) {
    for (std::size_t i = 0; i < array.Size(); ++i) {
      const double first = AnyNumber(bytes);
      array[i] = make(first, [&] { return AnyNumber(bytes); });
    }
  } else {
    const Series first(bytes);
    const Series second(bytes);
    for (std::size_t i = 0; i < array.Size(); ++i) {
      array[i] = make(first(i), [&] { return second(i + 1); });
    }
  }
  CNuvObject value;
  value = array;
  return value;
}

CNuvObject Texts(Bytes& bytes) {
  CNuvStringVector array;
  array.Resize(AnySize(bytes));
  const std::size_t longest = array.Size() <= 16 ? std::string::npos : 32;
  for (std::size_t i = 0; i < array.Size(); ++i) {
    array[i] = i < 16 ? CNuvString(AnyText(bytes).substr(0, longest)) : array[i * i % 16];
  }
  CNuvObject value;
  value = array;
  return value;
}

/// The words of a value, one after the other, mixed as FNV-1a does.
class Mixed {
 public:
  template <class Value>
  void Add(const Value& value) {
    if constexpr (requires { value.Size(); }) {
      for (std::size_t i = 0; i < value.Size(); ++i) Add(value[i]);
      Add(std::uint64_t{value.Size()});
    } else if constexpr (requires { value.x; }) {
      AddAll(value.x, value.y);
    } else if constexpr (requires { value.a; }) {
      AddAll(value.a, value.d);
    } else if constexpr (requires { static_cast<const char*>(value); }) {
      const auto* const text = static_cast<const char*>(value);
      Add(std::uint64_t{std::hash<std::string_view>()(text)});
    } else {
      AddWord(std::bit_cast<std::uint64_t>(value));
    }
  }
  void Add(bool value) { AddWord(value ? 1 : 0); }
  template <class... Values>
  void AddAll(const Values&... values) {
    (Add(values), ...);
  }
  std::uint64_t Result() const { return mixed_; }

 private:
  void AddWord(std::uint64_t word) {
    mixed_ = (mixed_ ^ word) * 0x100000001b3;
    mixed_ ^= mixed_ >> 29;  // what a product never takes down
  }

  std::uint64_t mixed_ = 0xcbf29ce484222325;
};

}  // namespace

double AnyNumber(Bytes& bytes) {
  switch (bytes.Next() % 8) {
    case 0: return kHostile[bytes.Below(std::size(kHostile))];
    case 1: return std::bit_cast<double>(bytes.Next(8));
    case 2: return static_cast<std::int16_t>(bytes.Next(2));
    case 3: return static_cast<std::int32_t>(bytes.Next(4)) / 65536.0;
    case 4: return static_cast<std::int8_t>(bytes.Next()) / 4.0;
    default: return static_cast<double>(bytes.Below(16));
  }
}

std::string AnyText(Bytes& bytes) {
  std::string text;
  switch (bytes.Next() % 8) {
    case 0: break;
    case 1: text = std::to_string(AnyNumber(bytes)); break;
    case 2: {
      std::string piece = kPieces[bytes.Below(std::size(kPieces))];
      for (std::size_t count = bytes.Below(1024); count > 0; --count) text += piece;
      break;
    }
    case 3:
    case 4:
      for (std::size_t count = bytes.Below(32); count > 0; --count) {
        const char c = static_cast<char>(bytes.Next());
        text += c == '\0' ? '0' : c;
      }
      break;
    default:
      for (std::size_t count = bytes.Below(12); count > 0; --count) {
        text += kPieces[bytes.Below(std::size(kPieces))];
      }
  }
  return text;
}

NUV_OBJ_TYPE AnyType(Bytes& bytes) {
  constexpr NUV_OBJ_TYPE kTypes[] = {
      NUV_OBJ_EMPTY,       NUV_OBJ_BOOL,          NUV_OBJ_DOUBLE,        NUV_OBJ_STRING,
      NUV_OBJ_POINT,       NUV_OBJ_LINE,          NUV_OBJ_CIRCLE,        NUV_OBJ_RECT,
      NUV_OBJ_BOOL_VECTOR, NUV_OBJ_DOUBLE_VECTOR, NUV_OBJ_STRING_VECTOR, NUV_OBJ_POINT_VECTOR,
      NUV_OBJ_LINE_VECTOR};
  return kTypes[bytes.Below(std::size(kTypes))];
}

CNuvObject AnyValue(Bytes& bytes, NUV_OBJ_TYPE type) {
  CNuvObject value(type);
  switch (type) {
    case NUV_OBJ_BOOL: value = bytes.Flag(); break;
    case NUV_OBJ_DOUBLE: value = AnyNumber(bytes); break;
    case NUV_OBJ_STRING: value = AnyText(bytes).c_str(); break;
    case NUV_OBJ_POINT: {
      const double x = AnyNumber(bytes);
      value = CNuvPoint(x, AnyNumber(bytes));
      break;
    }
    case NUV_OBJ_LINE: {
      const double angle = AnyNumber(bytes);
      value = CNuvLine(angle, AnyNumber(bytes));
      break;
    }
    case NUV_OBJ_CIRCLE: value = CNuvCircle(1, 2, AnyNumber(bytes)); break;
    case NUV_OBJ_RECT: value = CNuvRect(1, 2, 3, 4, AnyNumber(bytes)); break;
    case NUV_OBJ_BOOL_VECTOR:
      return Array<CNuvBoolVector>(bytes, [](double x, auto) { return x > 2; });
    case NUV_OBJ_DOUBLE_VECTOR:
      return Array<CNuvDoubleVector>(bytes, [](double x, auto) { return x; });
    case NUV_OBJ_STRING_VECTOR: return Texts(bytes);
    case NUV_OBJ_POINT_VECTOR:
      return Array<CNuvPointVector>(bytes, [](double x, auto y) { return CNuvPoint(x, y()); });
    case NUV_OBJ_LINE_VECTOR:
      return Array<CNuvLineVector>(bytes, [](double a, auto d) { return CNuvLine(a, d()); });
    default: break;
  }
  return value;
}

std::uint64_t Fingerprint(const CNuvObject& value) {
  Mixed mixed;
  mixed.Add(std::uint64_t{value.GetType()});
  switch (value.GetType()) {
    case NUV_OBJ_BOOL:
    case NUV_OBJ_DOUBLE: mixed.Add(static_cast<double>(value)); break;
    case NUV_OBJ_STRING: mixed.Add(static_cast<const char*>(value)); break;
    case NUV_OBJ_POINT: mixed.Add(static_cast<const CNuvPoint&>(value)); break;
    case NUV_OBJ_LINE: mixed.Add(static_cast<const CNuvLine&>(value)); break;
    case NUV_OBJ_CIRCLE: {
      const auto& circle = static_cast<const CNuvCircle&>(*value.Get());
      mixed.AddAll(circle.x, circle.y, circle.radius);
      break;
    }
    case NUV_OBJ_RECT: {
      const auto& rect = static_cast<const CNuvRect&>(*value.Get());
      mixed.AddAll(rect.x, rect.y, rect.width, rect.height, rect.angle);
      break;
    }
    case NUV_OBJ_BOOL_VECTOR: mixed.Add(static_cast<const CNuvBoolVector&>(value)); break;
    case NUV_OBJ_DOUBLE_VECTOR: mixed.Add(static_cast<const CNuvDoubleVector&>(value)); break;
    case NUV_OBJ_STRING_VECTOR: mixed.Add(static_cast<const CNuvStringVector&>(value)); break;
    case NUV_OBJ_POINT_VECTOR: mixed.Add(static_cast<const CNuvPointVector&>(value)); break;
    case NUV_OBJ_LINE_VECTOR: mixed.Add(static_cast<const CNuvLineVector&>(value)); break;
    default: break;
  }
  return mixed.Result();
}

}  // namespace fuzz
