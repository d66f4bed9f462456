// Values as the bytes that this program's own processes hand each other.
#pragma once

#include <string>
#include <string_view>
#include <type_traits>

#include "host/nuv_object.h"

namespace nuvhost {

/// Puts one after another what an Unpacker takes in the same order.
class Packer {
 public:
  template <class Plain>
  requires(std::is_arithmetic_v<Plain> || std::is_enum_v<Plain>) void Put(Plain plain) {
    Append(&plain, 1);
  }
  void Put(std::string_view text);
  void Put(const CNuvObject& value);

  const std::string& Bytes() const { return bytes_; }

 private:
  template <class Plain>
  void Append(const Plain* plain, std::size_t count) {
    bytes_.append(reinterpret_cast<const char*>(plain), count * sizeof *plain);
  }
  void PutElement(const CNuvString& text);
  void PutElement(const CNuvPoint& point);
  void PutElement(const CNuvLine& line);
  template <class Vector>
  void PutArray(const Vector& array);

  std::string bytes_;
};

/// Throws ValueError where the bytes end too early.
class Unpacker {
 public:
  explicit Unpacker(std::string_view bytes) : rest_(bytes) {}

  template <class Plain>
  Plain Take() {
    Plain plain;
    std::char_traits<char>::copy(reinterpret_cast<char*>(&plain), Bytes(sizeof plain),
                                 sizeof plain);
    return plain;
  }
  /// How many come next, which have a byte each at least.
  std::size_t TakeCount();
  std::string TakeText();
  CNuvObject TakeValue();

 private:
  const char* Bytes(std::size_t size);
  template <class Vector, class TakeElement>
  CNuvObject TakeArray(TakeElement take);

  std::string_view rest_;
};

}  // namespace nuvhost
