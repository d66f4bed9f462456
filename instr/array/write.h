// Array results as a row of pieces: runs of an input, copies of a value, further inputs.
//
// An instruction says what its result consists of; room, failure and a result that is one of the
// inputs are dealt with here.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "plugin/call.h"
#include "plugin/inputs.h"

namespace formula {

/// A run of an array's elements.
template <class Vector>
struct Slice {
  const Vector& from;
  std::size_t start;
  std::size_t size;

  bool Reads(const Vector& result) const { return &from == &result; }
  void CopyTo(typename Vector::value_type* to) const {
    std::copy_n(from.GetStorage() + start, size, to);
  }
};

template <class Vector>
Slice<Vector> All(const Vector& array) {
  return {array, 0, array.Size()};
}
template <class Vector>
Slice<Vector> Head(const Vector& array, std::size_t end) {
  return {array, 0, end};
}
template <class Vector>
Slice<Vector> Tail(const Vector& array, std::size_t start) {
  return {array, start, array.Size() - start};
}

/// Elements of an array by their indices.
template <class Vector>
struct Picked {
  const Vector& from;
  const std::size_t* indices;
  std::size_t size;

  bool Reads(const Vector& result) const { return &from == &result; }
  void CopyTo(typename Vector::value_type* to) const {
    for (std::size_t i = 0; i < size; ++i) to[i] = from[indices[i]];
  }
};

/// A value, any number of times.
template <class Element>
struct Copies {
  std::size_t size;
  Element value;

  template <class Vector>
  bool Reads(const Vector& /*result*/) const {
    return false;
  }
  template <class Target>
  void CopyTo(Target* to) const {
    std::fill_n(to, size, value);
  }
};
template <class Element>
Copies(std::size_t size, Element value) -> Copies<Element>;

/// The values of an input that may be given any number of times.
template <class Value>
struct GivenValues {
  explicit GivenValues(Repeated<Value> given)
      : values(given), size(static_cast<std::size_t>(given.Size())) {}

  template <class Vector>
  bool Reads(const Vector& /*result*/) const {
    return false;
  }
  template <class Target>
  void CopyTo(Target* to) const {
    for (std::int32_t i = 0; i < values.Size(); ++i) to[i] = values[i];
  }

  Repeated<Value> values;
  std::size_t size;
};

/// Makes the array consist of the pieces. A size that is too large leaves it as it was.
template <class Vector, class... Pieces>
void WriteArray(Vector& result, const Pieces&... pieces) {
  const auto write = [&](Vector& target) {
    target.Resize((std::size_t{0} + ... + pieces.size));
    auto* to = target.GetStorage();
    ((pieces.CopyTo(to), to += pieces.size), ...);
  };
  if ((pieces.Reads(result) || ...)) {
    Vector fresh;
    write(fresh);
    result = fresh;
  } else {
    write(result);
  }
}

/// Makes the array result consist of the pieces; a failure leaves it as it was.
template <class E, class... Pieces>
Status Write(Call& call, const Pieces&... pieces) {
  WriteArray(call.ArrayResult<typename E::Vector>(0), pieces...);
  return Status::kSuccess;
}

/// The array result of an instruction that begins by emptying it: it is empty after any failure.
/// The elements stay until then, since the result may be an input, too.
template <class E>
class EmptiedResult {
 public:
  explicit EmptiedResult(Call& call) : result_(call.ArrayResult<typename E::Vector>(0)) {}
  EmptiedResult(const EmptiedResult&) = delete;
  EmptiedResult& operator=(const EmptiedResult&) = delete;
  ~EmptiedResult() {
    if (!written_) result_.Resize(0);
  }
  template <class... Pieces>
  Status Write(const Pieces&... pieces) {
    WriteArray(result_, pieces...);
    written_ = true;
    return Status::kSuccess;
  }

 private:
  typename E::Vector& result_;
  bool written_ = false;
};

}  // namespace formula
