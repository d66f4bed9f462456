#include "nuvhost/checking/hostile.h"

#include <fmt/format.h>

#include <limits>
#include <optional>

#include "nuvhost/checking/trial.h"

namespace nuvhost::check {
namespace {

struct HostileNumber {
  const char* name;
  double value;
};

constexpr HostileNumber kHostileNumbers[] = {
    {"NaN", std::numeric_limits<double>::quiet_NaN()},
    {"infinity", std::numeric_limits<double>::infinity()},
    {"-infinity", -std::numeric_limits<double>::infinity()},
    {"-0.0", -0.0},
    {"1e300", 1e300},
    {"-1e300", -1e300},
    {"2147483647", 2147483647.0},
    {"-2147483648", -2147483648.0},
    {"1e-300", 1e-300},
};

struct HostileText {
  const char* name;
  std::string text;
};

/// Every character; the percent sign twice, so that it is one when formatted.
std::string AllBytes() {
  std::string bytes;
  for (int byte = 1; byte < 256; ++byte) bytes.append(byte == '%' ? 2 : 1, static_cast<char>(byte));
  return bytes;
}

/// A formatting instruction may hand a text on to the C runtime with the one number it has, so
/// the text with percent signs stays within that; what survives it is deadly when formatted again.
const std::vector<HostileText>& Texts() {
  static const std::vector<HostileText> texts = {
      {"the empty text", ""},
      {"a text of 4096 characters", std::string(4096, 'x')},
      {"a text with percent signs", "%5.1f%% %%s%%n"},
      {"a text of all 255 characters", AllBytes()},
  };
  return texts;
}

constexpr NUV_OBJ_TYPE kTypes[] = {
    NUV_OBJ_EMPTY,       NUV_OBJ_BOOL,          NUV_OBJ_DOUBLE,        NUV_OBJ_STRING,
    NUV_OBJ_POINT,       NUV_OBJ_LINE,          NUV_OBJ_CIRCLE,        NUV_OBJ_RECT,
    NUV_OBJ_BOOL_VECTOR, NUV_OBJ_DOUBLE_VECTOR, NUV_OBJ_STRING_VECTOR, NUV_OBJ_POINT_VECTOR,
    NUV_OBJ_LINE_VECTOR};

template <class Vector, class ElementAt>
Vector ArrayOf(std::size_t size, ElementAt element_at) {
  Vector array;
  array.Resize(size);
  for (std::size_t i = 0; i < size; ++i) array[i] = element_at(i);
  return array;
}

/// An array of the type; its elements are made of the numbers and the texts.
CNuvObject MakeArray(NUV_OBJ_TYPE type, std::size_t size,
                     const std::function<double(std::size_t)>& number,
                     const std::function<std::string(std::size_t)>& text) {
  CNuvObject value;
  switch (type) {
    case NUV_OBJ_BOOL_VECTOR:
      value = ArrayOf<CNuvBoolVector>(size, [](std::size_t i) { return i % 2 == 0; });
      break;
    case NUV_OBJ_DOUBLE_VECTOR: value = ArrayOf<CNuvDoubleVector>(size, number); break;
    case NUV_OBJ_STRING_VECTOR: value = ArrayOf<CNuvStringVector>(size, text); break;
    case NUV_OBJ_POINT_VECTOR:
      value = ArrayOf<CNuvPointVector>(
          size, [&](std::size_t i) { return CNuvPoint(number(i), number(i + 1)); });
      break;
    case NUV_OBJ_LINE_VECTOR:
      value = ArrayOf<CNuvLineVector>(
          size, [&](std::size_t i) { return CNuvLine(number(i), number(i + 1)); });
      break;
    default: break;
  }
  return value;
}

CNuvObject PlainArray(NUV_OBJ_TYPE type, std::size_t size) {
  return MakeArray(
      type, size, [](std::size_t i) { return static_cast<double>(i * i % 7); },
      [](std::size_t i) { return std::to_string(i); });
}

CNuvObject HostileArray(NUV_OBJ_TYPE type) {
  return MakeArray(
      type, 2 * std::size(kHostileNumbers),
      [](std::size_t i) { return kHostileNumbers[i % std::size(kHostileNumbers)].value; },
      [](std::size_t i) { return Texts()[i % Texts().size()].text; });
}

/// A number in whatever holds numbers.
std::optional<CNuvObject> NumberAs(NUV_OBJ_TYPE type, double number) {
  CNuvObject value;
  switch (type) {
    case NUV_OBJ_DOUBLE: value = number; break;
    case NUV_OBJ_POINT: value = CNuvPoint(number, number); break;
    case NUV_OBJ_LINE: value = CNuvLine(number, number); break;
    default: return std::nullopt;
  }
  return value;
}

bool IsArray(NUV_OBJ_TYPE type) {
  return type >= NUV_OBJ_BOOL_VECTOR;
}

/// Arrays get three elements, so that there is something to do.
void FillArrays(CallContext& context, const DescriptorRecord& descriptor) {
  for (std::size_t i = 0; i < descriptor.inputs.Size(); ++i) {
    const NUV_OBJ_TYPE type = NuvValueType(descriptor.inputs[i].type);
    if (IsArray(type)) context.inputs[i] = PlainArray(type, 3);
  }
}

/// For each input, adds a case that puts a value of `make` into it, and where there are several,
/// one that puts them in all at once. `make` knows an input's type and may have nothing for it.
template <class Make>
void AddInputCases(Cases& cases, const DescriptorRecord& descriptor, const std::string& what,
                   Make make) {
  struct Placed {
    std::size_t input;
    CNuvObject value;
  };
  std::vector<Placed> all;
  for (std::size_t i = 0; i < descriptor.inputs.Size(); ++i) {
    const std::optional<CNuvObject> value = make(NuvValueType(descriptor.inputs[i].type));
    if (value) all.push_back({i, *value});
  }
  const auto add = [&](const std::string& where, std::vector<Placed> placed) {
    cases.push_back(
        {fmt::format("{} in {}", what, where), [&descriptor, placed](CallContext& context) {
           FillArrays(context, descriptor);
           for (const Placed& one : placed) context.inputs[one.input] = one.value;
         }});
  };
  for (const Placed& one : all) {
    add(fmt::format("input {}, {}", one.input, Quoted(descriptor.inputs[one.input].name)), {one});
  }
  if (all.size() > 1) add("every such input", all);
}

}  // namespace

CNuvObject Sample(NUV_OBJ_TYPE type) {
  CNuvObject value(type);
  switch (type) {
    case NUV_OBJ_EMPTY: break;
    case NUV_OBJ_BOOL: value = true; break;
    case NUV_OBJ_DOUBLE: value = 2.5; break;
    case NUV_OBJ_STRING: value = "text"; break;
    case NUV_OBJ_POINT: value = CNuvPoint(3, 4); break;
    case NUV_OBJ_LINE: value = CNuvLine(0.5, 6); break;
    case NUV_OBJ_CIRCLE: value = CNuvCircle(1, 2, 3); break;
    case NUV_OBJ_RECT: value = CNuvRect(1, 2, 3, 4, 0.5); break;
    default: value = PlainArray(type, 3); break;
  }
  return value;
}

Cases DefaultCases(const DescriptorRecord& descriptor) {
  return {{"its defaults", [](CallContext&) {}},
          {"its defaults and arrays of three elements",
           [&descriptor](CallContext& context) { FillArrays(context, descriptor); }}};
}

Cases NumberCases(const DescriptorRecord& descriptor) {
  Cases cases;
  for (const HostileNumber& number : kHostileNumbers) {
    AddInputCases(cases, descriptor, number.name,
                  [&](NUV_OBJ_TYPE type) { return NumberAs(type, number.value); });
  }
  return cases;
}

Cases TextCases(const DescriptorRecord& descriptor) {
  Cases cases;
  for (const HostileText& text : Texts()) {
    AddInputCases(cases, descriptor, text.name,
                  [&](NUV_OBJ_TYPE type) -> std::optional<CNuvObject> {
                    if (type != NUV_OBJ_STRING) return std::nullopt;
                    CNuvObject value;
                    value = text.text.c_str();
                    return value;
                  });
  }
  return cases;
}

Cases ArrayCases(const DescriptorRecord& descriptor) {
  Cases cases;
  const auto add = [&](const std::string& what, const auto& make) {
    AddInputCases(cases, descriptor, what, [&](NUV_OBJ_TYPE type) -> std::optional<CNuvObject> {
      if (!IsArray(type)) return std::nullopt;
      return make(type);
    });
  };
  for (const std::size_t size : {0, 1, 2, 1000}) {
    add(fmt::format("an array of {} elements", size),
        [size](NUV_OBJ_TYPE type) { return PlainArray(type, size); });
  }
  add("an array of hostile elements", HostileArray);
  return cases;
}

Cases WrongTypeCases(const DescriptorRecord& descriptor) {
  Cases cases;
  for (const NUV_OBJ_TYPE type : kTypes) {
    AddInputCases(cases, descriptor, "a value of type " + std::to_string(type),
                  [type](NUV_OBJ_TYPE declared) -> std::optional<CNuvObject> {
                    if (type == declared) return std::nullopt;
                    return Sample(type);
                  });
  }
  return cases;
}

Cases ResultCases(const DescriptorRecord& descriptor) {
  Cases cases;
  if (descriptor.results.Empty()) return cases;
  for (const NUV_OBJ_TYPE type : kTypes) {
    cases.push_back({"results that hold values of type " + std::to_string(type),
                     [&descriptor, type](CallContext& context) {
                       FillArrays(context, descriptor);
                       for (CNuvObject& result : context.results) result = Sample(type);
                     }});
  }
  return cases;
}

Cases CountCases(const DescriptorRecord& descriptor) {
  if (descriptor.repeatable == 0 || descriptor.inputs.Empty()) return {};
  const std::size_t last = descriptor.inputs.Size() - 1;
  const NUV_OBJ_TYPE type = NuvValueType(descriptor.inputs[last].type);
  Cases cases;
  for (std::size_t count = 0; count <= last; ++count) {
    cases.push_back({"an input count of " + std::to_string(count), [count](CallContext& context) {
                       context.input_count = static_cast<std::int32_t>(count);
                     }});
  }
  const auto add_many = [&](const char* how, auto type_at) {
    cases.push_back({how, [last, type_at](CallContext& context) {
                       context.inputs.resize(1000);
                       for (std::size_t i = last; i < context.inputs.size(); ++i) {
                         context.inputs[i] = Sample(type_at(i));
                       }
                     }});
  };
  add_many("1000 inputs", [type](std::size_t) { return type; });
  add_many("1000 inputs of all types", [](std::size_t i) { return kTypes[i % std::size(kTypes)]; });
  return cases;
}

Cases ConstantCases(const DescriptorRecord& descriptor) {
  Cases cases;
  for (std::size_t i = 0; i < descriptor.constants.Size(); ++i) {
    const ConstantRecord& constant = descriptor.constants[i];
    const auto add = [&](const CNuvObject& value, const std::string& what) {
      cases.push_back({fmt::format("constant {} as {}", i, what),
                       [&descriptor, i, value](CallContext& context) {
                         FillArrays(context, descriptor);
                         context.constants[i] = value;
                       }});
    };
    CNuvObject value;
    for (auto* node = constant.choices.First(); node != nullptr; node = CChoiceMap::Next(node)) {
      value = node->key;
      add(value, Quoted(node->label.c_str()));
    }
    if (constant.minimum.GetType() != NUV_OBJ_EMPTY) add(constant.minimum, "its minimum");
    if (constant.maximum.GetType() != NUV_OBJ_EMPTY) add(constant.maximum, "its maximum");
    if (constant.type != NUV_PARAM_BOOLEAN) continue;
    value = true;
    add(value, "true");
    value = false;
    add(value, "false");
  }
  return cases;
}

}  // namespace nuvhost::check
