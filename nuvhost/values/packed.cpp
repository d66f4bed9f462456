#include "nuvhost/values/packed.h"

#include "nuvhost/error.h"

namespace nuvhost {

void Packer::Put(std::string_view text) {
  Put(text.size());
  bytes_ += text;
}

void Packer::PutElement(const CNuvString& text) {
  Put(std::string_view(static_cast<const char*>(text)));
}

void Packer::PutElement(const CNuvPoint& point) {
  const double pair[] = {point.x, point.y};
  Append(pair, 2);
}

void Packer::PutElement(const CNuvLine& line) {
  const double pair[] = {line.a, line.d};
  Append(pair, 2);
}

template <class Vector>
void Packer::PutArray(const Vector& array) {
  using Element = typename Vector::value_type;
  const std::size_t size = array.Size();
  Put(size);
  if constexpr (std::is_arithmetic_v<Element>) {
    if (size > 0) Append(array.GetStorage(), size);
  } else {
    for (std::size_t i = 0; i < size; ++i) PutElement(array[i]);
  }
}

void Packer::Put(const CNuvObject& value) {
  Put(value.GetType());
  switch (value.GetType()) {
    case NUV_OBJ_BOOL: return Put(static_cast<bool>(value));
    case NUV_OBJ_DOUBLE: return Put(static_cast<double>(value));
    case NUV_OBJ_STRING: return Put(std::string_view(static_cast<const char*>(value)));
    case NUV_OBJ_POINT: return PutElement(static_cast<const CNuvPoint&>(value));
    case NUV_OBJ_LINE: return PutElement(static_cast<const CNuvLine&>(value));
    case NUV_OBJ_BOOL_VECTOR: return PutArray(static_cast<const CNuvBoolVector&>(value));
    case NUV_OBJ_DOUBLE_VECTOR: return PutArray(static_cast<const CNuvDoubleVector&>(value));
    case NUV_OBJ_STRING_VECTOR: return PutArray(static_cast<const CNuvStringVector&>(value));
    case NUV_OBJ_POINT_VECTOR: return PutArray(static_cast<const CNuvPointVector&>(value));
    case NUV_OBJ_LINE_VECTOR: return PutArray(static_cast<const CNuvLineVector&>(value));
    default: return;  // of a type that no parameter has
  }
}

const char* Unpacker::Bytes(std::size_t size) {
  if (size > rest_.size()) throw ValueError("an answer that is not whole");
  const char* const bytes = rest_.data();
  rest_.remove_prefix(size);
  return bytes;
}

std::size_t Unpacker::TakeCount() {
  const auto count = Take<std::size_t>();
  if (count > rest_.size()) throw ValueError("an answer that is not whole");
  return count;
}

std::string Unpacker::TakeText() {
  const std::size_t size = TakeCount();
  return {Bytes(size), size};
}

template <class Vector, class TakeElement>
CNuvObject Unpacker::TakeArray(TakeElement take) {
  CNuvObject value(Vector::kType);
  auto& array = static_cast<Vector&>(value);
  array.Resize(TakeCount());
  for (std::size_t i = 0; i < array.Size(); ++i) array[i] = take();
  return value;
}

CNuvObject Unpacker::TakeValue() {
  const auto point = [this] {
    const auto x = Take<double>();
    return CNuvPoint(x, Take<double>());
  };
  const auto line = [this] {
    const auto a = Take<double>();
    return CNuvLine(a, Take<double>());
  };
  CNuvObject value;
  switch (Take<NUV_OBJ_TYPE>()) {
    case NUV_OBJ_BOOL: value = Take<bool>(); break;
    case NUV_OBJ_DOUBLE: value = Take<double>(); break;
    case NUV_OBJ_STRING: value = TakeText().c_str(); break;
    case NUV_OBJ_POINT: value = point(); break;
    case NUV_OBJ_LINE: value = line(); break;
    case NUV_OBJ_BOOL_VECTOR: return TakeArray<CNuvBoolVector>([this] { return Take<bool>(); });
    case NUV_OBJ_DOUBLE_VECTOR:
      return TakeArray<CNuvDoubleVector>([this] { return Take<double>(); });
    case NUV_OBJ_STRING_VECTOR:
      return TakeArray<CNuvStringVector>([this] { return CNuvString(TakeText()); });
    case NUV_OBJ_POINT_VECTOR: return TakeArray<CNuvPointVector>(point);
    case NUV_OBJ_LINE_VECTOR: return TakeArray<CNuvLineVector>(line);
    default: break;
  }
  return value;
}

}  // namespace nuvhost
