#include "nuvhost/checking/fuzz_call.h"

#include <algorithm>
#include <bit>
#include <limits>

#include "nuvhost/text/utf8.h"
#include "nuvhost/values/json_value.h"

namespace nuvhost::check {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNumbers[] = {0,
                               -0.0,
                               1,
                               -1,
                               2,
                               3,
                               0.5,
                               -0.5,
                               1e-300,
                               1e300,
                               -1e300,
                               kInfinity,
                               -kInfinity,
                               std::numeric_limits<double>::quiet_NaN(),
                               std::numeric_limits<double>::denorm_min(),
                               std::numeric_limits<double>::max(),
                               2147483647.0,
                               2147483648.0,
                               -2147483648.0,
                               -2147483649.0,
                               9007199254740993.0,
                               3.141592653589793};
// A percent sign asks for one number at most: a formatting instruction may hand a text on to the C
// runtime with the one that it has.
constexpr const char* kPieces[] = {"a",   "Z",  " ",    "\n", "\xFF",        "%%", "0",  "12",
                                   "-3.", "e5", "1e9 ", "x,", "***Empty***", "\"", "\\", "%%s"};
constexpr const char* kFormats[] = {"%g", "%5.1f", "%+e", "%-12.4f", "%.0f"};
constexpr std::size_t kSizes[] = {0, 1, 2, 3, 4, 5, 7, 12, 100};

double AnyNumber(Random& random) {
  switch (random.Below(5)) {
    case 0: return std::bit_cast<double>(random.Next());
    case 1:
    case 2: return static_cast<double>(random.Below(40)) - 8;
    case 3: return static_cast<double>(random.Below(2000001)) / 1000 - 1000;
    default: return kNumbers[random.Below(std::size(kNumbers))];
  }
}

std::string AnyText(Random& random) {
  std::string text;
  for (std::size_t pieces = random.Below(8); pieces > 0; --pieces) {
    text += kPieces[random.Below(std::size(kPieces))];
  }
  if (random.OneIn(4)) text += kFormats[random.Below(std::size(kFormats))];
  if (random.OneIn(16)) text.append(4096, 'x');
  return text;
}

template <class Vector, class Make>
Vector AnyArray(Random& random, Make make) {
  Vector array;
  array.Resize(kSizes[random.Below(std::size(kSizes))]);
  for (std::size_t i = 0; i < array.Size(); ++i) array[i] = make();
  return array;
}

CNuvObject AnyValue(std::uint32_t parameter_type, Random& random) {
  const auto number = [&] { return AnyNumber(random); };
  const auto point = [&] {
    const double x = number();
    return CNuvPoint(x, number());
  };
  const auto line = [&] {
    const double a = number();
    return CNuvLine(a, number());
  };
  CNuvObject value;
  switch (parameter_type) {
    case NUV_PARAM_BOOLEAN: value = random.OneIn(2); break;
    case NUV_PARAM_NUMBER: value = number(); break;
    case NUV_PARAM_STRING: value = AnyText(random).c_str(); break;
    case NUV_PARAM_POINT: value = point(); break;
    case NUV_PARAM_LINE: value = line(); break;
    case NUV_PARAM_BOOLEAN_ARRAY:
      value = AnyArray<CNuvBoolVector>(random, [&] { return random.OneIn(2); });
      break;
    case NUV_PARAM_NUMBER_ARRAY: value = AnyArray<CNuvDoubleVector>(random, number); break;
    case NUV_PARAM_STRING_ARRAY:
      value = AnyArray<CNuvStringVector>(random, [&] { return AnyText(random); });
      break;
    case NUV_PARAM_POINT_ARRAY: value = AnyArray<CNuvPointVector>(random, point); break;
    case NUV_PARAM_LINE_ARRAY: value = AnyArray<CNuvLineVector>(random, line); break;
    default: break;
  }
  return value;
}

/// A value that the user may choose: hosts offer no other.
CNuvObject AnyConstant(const ConstantRecord& constant, Random& random) {
  CNuvObject value = constant.default_value;
  if (constant.type == NUV_PARAM_BOOLEAN) {
    value = random.OneIn(2);
  } else if (constant.type == NUV_PARAM_CHOICE) {
    std::vector<std::int32_t> keys;
    for (auto* node = constant.choices.First(); node != nullptr; node = CChoiceMap::Next(node)) {
      keys.push_back(node->key);
    }
    if (!keys.empty()) value = keys[random.Below(keys.size())];
  } else if (constant.minimum.GetType() != NUV_OBJ_EMPTY &&
             constant.maximum.GetType() != NUV_OBJ_EMPTY) {
    const std::int64_t least = static_cast<int>(constant.minimum);
    const std::int64_t most = std::max<std::int64_t>(least, static_cast<int>(constant.maximum));
    const std::size_t count = static_cast<std::size_t>(most - least) + 1;
    value = static_cast<int>(least + static_cast<std::int64_t>(random.Below(count)));
  }
  return value;
}

}  // namespace

std::uint64_t Random::Next() {
  state_ += 0x9E3779B97F4A7C15;
  std::uint64_t mixed = state_;
  mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9;
  mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EB;
  return mixed ^ (mixed >> 31);
}

FuzzCall::FuzzCall(const DescriptorRecord& descriptor, Random& random) {
  for (const ConstantRecord& constant : descriptor.constants) {
    constants_.push_back(AnyConstant(constant, random));
  }
  const std::size_t declared = descriptor.inputs.Size();
  const bool repeats = descriptor.repeatable != 0 && declared > 0;
  const std::size_t inputs = declared + (repeats ? random.Below(8) : 0);
  for (std::size_t i = 0; i < inputs; ++i) {
    inputs_.push_back(AnyValue(descriptor.inputs[std::min(i, declared - 1)].type, random));
  }
  if (repeats && random.OneIn(8)) count_ = static_cast<std::int32_t>(random.Below(declared));
  if (!random.OneIn(4)) return;
  for (const ResultRecord& result : descriptor.results) {
    results_.push_back(AnyValue(result.type, random));
  }
}

Case FuzzCall::AsCase() const {
  return {"random values", [this](CallContext& context) {
            context.constants = constants_;
            context.inputs = inputs_;
            context.input_count = count_;
            if (!results_.empty()) context.results = results_;
          }};
}

std::string FuzzCall::ExecLine(const DescriptorRecord& descriptor) const {
  Json line{{"instr", Utf8FromText(descriptor.identifier)}};
  const auto add = [&](const char* member, const std::vector<CNuvObject>& values) {
    for (const CNuvObject& value : values) line[member].push_back(ToJson(value));
  };
  add("const", constants_);
  add("in", inputs_);
  add("prev", results_);
  if (count_) line["count"] = *count_;
  return Dump(line);
}

}  // namespace nuvhost::check
