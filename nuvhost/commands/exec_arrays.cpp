#include "nuvhost/commands/exec_arrays.h"

#include <array>
#include <bit>
#include <cstring>
#include <filesystem>
#include <vector>

#include "nuvhost/error.h"
#include "nuvhost/system/paths.h"
#include "reference_host/services/call_context.h"

namespace nuvhost {
namespace {

static_assert(std::endian::native == std::endian::little);

/// Below so many elements a list costs less than a file.
constexpr std::size_t kFewest = 64;

// How an element lies in a file: as a few scalars, one behind the other.
struct BooleanLayout {
  using Vector = CNuvBoolVector;
  using Element = std::array<std::uint8_t, 1>;
  static Element Of(bool value) { return {value ? std::uint8_t{1} : std::uint8_t{0}}; }
  static bool From(const Element& element) { return element[0] != 0; }
};
struct NumberLayout {
  using Vector = CNuvDoubleVector;
  using Element = std::array<double, 1>;
  static Element Of(double value) { return {value}; }
  static double From(const Element& element) { return element[0]; }
};
struct PointLayout {
  using Vector = CNuvPointVector;
  using Element = std::array<double, 2>;
  static Element Of(const CNuvPoint& value) { return {value.x, value.y}; }
  static CNuvPoint From(const Element& element) { return {element[0], element[1]}; }
};
struct LineLayout {
  using Vector = CNuvLineVector;
  using Element = std::array<double, 2>;
  static Element Of(const CNuvLine& value) { return {value.a, value.d}; }
  static CNuvLine From(const Element& element) { return CNuvLine(element[0], element[1]); }
};

/// Has the layout of arrays of a type used; without one, nothing.
template <class Use>
void WithLayout(std::uint32_t type, Use use) {
  switch (type) {
    case NUV_OBJ_BOOL_VECTOR: return use(BooleanLayout());
    case NUV_OBJ_DOUBLE_VECTOR: return use(NumberLayout());
    case NUV_OBJ_POINT_VECTOR: return use(PointLayout());
    case NUV_OBJ_LINE_VECTOR: return use(LineLayout());
    default: return;
  }
}

OpenFile Open(const std::string& name, const char* mode) {
  std::error_code error;
  const std::filesystem::path path = PathFromUtf8(name);
  if (!std::filesystem::is_regular_file(path, error)) return nullptr;
#if defined(_WIN32)
  OpenFile file(_wfopen(path.c_str(), std::wstring(mode, mode + std::strlen(mode)).c_str()));
#else
  OpenFile file(std::fopen(path.c_str(), mode));
#endif
  if (file != nullptr) std::setvbuf(file.get(), nullptr, _IONBF, 0);
  return file;
}

std::uint64_t WholeNumber(const Json& json, const char* member, std::uint64_t otherwise) {
  const auto found = json.find(member);
  if (found == json.end()) return otherwise;
  if (found->is_number_unsigned()) return found->get<std::uint64_t>();
  throw ValueError("\"{}\": expected a whole number from 0, found {}", member, Dump(*found));
}

}  // namespace

bool MayStandInFile(std::uint32_t parameter_type) {
  bool may = false;
  WithLayout(NuvValueType(parameter_type), [&](auto) { may = true; });
  return may;
}

CNuvObject ArrayFromFile(const Json& json, std::uint32_t parameter_type) {
  const auto name = json.find("file");
  if (name == json.end() || !name->is_string() || !json.contains("count")) {
    throw ValueError("expected a list, or {\"file\", \"offset\", \"count\"}");
  }
  const std::uint64_t count = WholeNumber(json, "count", 0);
  const std::uint64_t offset = WholeNumber(json, "offset", 0);
  const auto& path = name->get_ref<const std::string&>();
  const OpenFile file = Open(path, "rb");
  if (file == nullptr) throw ValueError("cannot read the file \"{}\"", path);
  const std::uint64_t size = std::filesystem::file_size(PathFromUtf8(path));
  CNuvObject value;
  WithLayout(NuvValueType(parameter_type), [&](auto layout) {
    using Layout = decltype(layout);
    using Element = typename Layout::Element;
    if (offset > size || count > (size - offset) / sizeof(Element)) {
      throw ValueError("the file \"{}\" has {} bytes, too few for {} elements of {} from byte {}",
                       path, size, count, sizeof(Element), offset);
    }
    std::vector<Element> elements(count);
    if (std::fseek(file.get(), static_cast<long>(offset), SEEK_SET) != 0 ||
        std::fread(elements.data(), sizeof(Element), count, file.get()) != count) {
      throw ValueError("the file \"{}\" cannot be read to its end", path);
    }
    typename Layout::Vector array;
    array.Resize(count);
    for (std::size_t i = 0; i < count; ++i) array[i] = Layout::From(elements[i]);
    value = array;
  });
  return value;
}

ArrayFile::ArrayFile(const std::string& name) : name_(name), file_(Open(name, "r+b")) {
  if (file_ != nullptr) return;
  throw ValueError("\"outFile\": cannot write to \"{}\"; it must be a file that is there", name);
}

Json ArrayFile::Take(const CNuvObject& value) {
  Json place;
  WithLayout(value.GetType(), [&](auto layout) {
    using Layout = decltype(layout);
    using Element = typename Layout::Element;
    const auto& array = static_cast<const typename Layout::Vector&>(*value.Get());
    if (array.Size() < kFewest || file_ == nullptr) return;
    std::vector<Element> elements(array.Size());
    for (std::size_t i = 0; i < elements.size(); ++i) elements[i] = Layout::Of(array[i]);
    if (std::fwrite(elements.data(), sizeof(Element), elements.size(), file_.get()) !=
        elements.size()) {
      file_.reset();  // whatever fills the disk, results are not lost for it
      return;
    }
    place = {{"file", name_}, {"offset", size_}, {"count", elements.size()}};
    size_ += elements.size() * sizeof(Element);
  });
  return place.is_null() ? ToJson(value) : place;
}

}  // namespace nuvhost
