// How the time of each instruction on arrays or texts grows: over sizes from 10 to 10,000,000, with
// the page faults of a call and the bytes that it works on.

#include <sys/resource.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <nlohmann/json.hpp>
#include <string_view>

#include "bench/ready_context.h"
#include "bench/rows.h"
#include "reference_host/services/call_context.h"

namespace bench {
namespace {

constexpr std::size_t kLargest = 10'000'000;
constexpr std::size_t kMostRepeated = 1'000'000;  // inputs, each an object of its own
constexpr double kTooLong = 1.0;  // seconds: after such a call no larger size is tried

CNuvObject MakeValue(NUV_OBJ_TYPE type, std::size_t n) {
  Random random(n);
  CNuvObject value(type);
  switch (type) {
    case NUV_OBJ_STRING: value = Words(random, n).c_str(); break;
    case NUV_OBJ_BOOL_VECTOR: {
      auto& array = static_cast<CNuvBoolVector&>(value);
      array.Resize(n);
      for (std::size_t i = 0; i < n; ++i) array[i] = random() % 2 != 0;
      break;
    }
    case NUV_OBJ_DOUBLE_VECTOR: return UniformNumbers(random, n, 100.0);
    case NUV_OBJ_STRING_VECTOR: {
      auto& array = static_cast<CNuvStringVector&>(value);
      array.Resize(n);
      for (std::size_t i = 0; i < n; ++i) {
        array[i] = CNuvString(("part " + std::to_string(random() % (2 * n))).c_str());
      }
      break;
    }
    case NUV_OBJ_POINT_VECTOR: return UniformPoints(random, n);
    case NUV_OBJ_LINE_VECTOR: {
      auto& array = static_cast<CNuvLineVector&>(value);
      array.Resize(n);
      for (std::size_t i = 0; i < n; ++i) {
        array[i] = CNuvLine(static_cast<double>(random() % (2 * n)), 1.0);
      }
      break;
    }
    default: break;
  }
  return value;
}

/// Values of the size that are the same in each call; those of one size at a time are kept.
class Values {
 public:
  CNuvObject& Get(NUV_OBJ_TYPE type, std::size_t n, std::size_t copy) {
    auto [at, is_new] = values_.try_emplace({type, n, copy});
    if (is_new) at->second = MakeValue(type, n);
    return at->second;
  }
  void Clear() { values_.clear(); }

 private:
  std::map<std::tuple<NUV_OBJ_TYPE, std::size_t, std::size_t>, CNuvObject> values_;
};

/// Positions and counts that make an instruction work on about half of what it is given.
double NumberFor(std::string_view name, double n, double otherwise) {
  for (const char* one :
       {"idx", "idxStart", "index", "at index", "pos", "start pos", "leading m", "trailing n"}) {
    if (name == one) return std::floor(n / 4);
  }
  for (const char* one : {"idxEnd", "count", "left n", "right n", "mid n"}) {
    if (name == one) return std::floor(n / 2);
  }
  for (const char* one : {"elem count", "new size", "char count", "grid size X", "Nth"}) {
    if (name == one) return n;
  }
  if (name == "grid size Y") return 2.0;
  if (name == "percent outliers") return 30.0;
  return otherwise != 0.0 ? otherwise : 1.0;
}

bool IsArray(const ParameterRecord& input) {
  return input.type >= NUV_PARAM_BOOLEAN_ARRAY;
}

/// Whether the last input is given n times, since nothing else has a size.
bool RepeatsInput(const DescriptorRecord& descriptor) {
  return descriptor.repeatable != 0 && std::ranges::none_of(descriptor.inputs, IsArray);
}

/// An instruction's inputs.
struct Arguments {
  std::deque<CNuvObject> own;
  std::vector<CNuvObject*> all;
  double bytes = 0.0;
};

double Bytes(const CNuvObject& value) {
  switch (value.GetType()) {
    case NUV_OBJ_STRING: return static_cast<double>(std::string_view(Text(value)).size());
    case NUV_OBJ_BOOL_VECTOR:
      return static_cast<double>(static_cast<const CNuvBoolVector&>(value).Size());
    case NUV_OBJ_DOUBLE_VECTOR: return static_cast<double>(Numbers(value).size_bytes());
    case NUV_OBJ_STRING_VECTOR:
      return static_cast<double>(Elements<CNuvStringVector>(value).size_bytes() * 2);
    case NUV_OBJ_POINT_VECTOR: return static_cast<double>(Points(value).size_bytes());
    case NUV_OBJ_LINE_VECTOR:
      return static_cast<double>(Elements<CNuvLineVector>(value).size_bytes());
    default: return 0.0;
  }
}

void Fill(const DescriptorRecord& descriptor, std::size_t n, Values& values, Arguments& arguments) {
  const std::string_view identifier = descriptor.identifier;
  const bool is_text = std::string_view(descriptor.category) == "String";
  std::size_t texts = 0;
  for (const ParameterRecord& input : descriptor.inputs) {
    const std::string_view name = input.name;
    const bool is_last = &input == &descriptor.inputs[descriptor.inputs.Size() - 1];
    const bool repeats = is_last && RepeatsInput(descriptor);
    CNuvObject& own = arguments.own.emplace_back(input.default_value);
    arguments.all.push_back(&own);
    if (name == "boundaries") {
      own = MakeValue(NUV_OBJ_POINT_VECTOR, 4);
      auto& corners = static_cast<CNuvPointVector&>(own);
      for (std::size_t i = 0; i < 4; ++i)
        corners[i] = CNuvPoint(i == 1 || i == 2 ? 1.0 : 0.0, i < 2 ? 0.0 : 1.0);
    } else if (IsArray(input)) {
      arguments.all.back() = &values.Get(NuvValueType(input.type), n, arguments.all.size() - 1);
    } else if (input.type == NUV_PARAM_STRING && is_text && !repeats) {
      if (texts++ == 0 || identifier == "_Nuv_String_CAddStr_") {
        arguments.all.back() = &values.Get(NUV_OBJ_STRING, n, 0);
      } else if (name == "string2") {
        own = values.Get(NUV_OBJ_STRING, n, 0);  // equal, but another
      } else {
        own = name == "what" ? " " : ", ";
      }
      if (identifier == "_Nuv_Number_CStringToNumber_") {
        own = std::string(n, '7').c_str();
        arguments.all.back() = &own;
      }
    } else if (input.type == NUV_PARAM_NUMBER) {
      own = NumberFor(name, static_cast<double>(n), static_cast<double>(input.default_value));
    }
    if (!repeats) continue;
    Random random(n);
    for (std::size_t i = 1; i < n; ++i) {
      CNuvObject& more = arguments.own.emplace_back(input.default_value);
      if (input.type == NUV_PARAM_POINT) {
        more = UniformPoints(random, 1);
        more = CNuvPoint(static_cast<const CNuvPointVector&>(std::as_const(more))[0]);
      }
      arguments.all.push_back(&more);
    }
  }
  for (const CNuvObject* one : arguments.all) arguments.bytes += Bytes(*one);
  arguments.bytes += static_cast<double>(arguments.own.size() * 40);
}

long Faults() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_minflt;
}

struct Point {
  double seconds = 0.0;
  double faults = 0.0;
  double bytes = 0.0;
};

/// The median of five times a millisecond of calls behind a first one; fewer where a call is long.
bool Measure(const nuvhost::CatalogueEntry& instruction, std::size_t n, Values& values,
             Point& point) {
  Arguments arguments;
  Fill(*instruction.descriptor, n, values, arguments);
  ReadyContext context(arguments.all, *instruction.descriptor, {});
  const auto time = [&](std::size_t calls, bool& good) {
    const double begin = Now();
    for (std::size_t i = 0; i < calls; ++i)
      good = instruction.prototype->Execute(&context) == Status::kSuccess;
    return (Now() - begin) / static_cast<double>(calls);
  };
  bool good = true;
  long faults = Faults();
  point.seconds = time(1, good);
  point.faults = static_cast<double>(Faults() - faults);
  point.bytes = arguments.bytes;
  for (const CNuvObject& result : context.Results()) point.bytes += Bytes(result);
  if (!good || point.seconds > kTooLong) return good;
  const std::size_t calls =
      static_cast<std::size_t>(std::clamp(1e-3 / std::max(point.seconds, 1e-8), 1.0, 1e5));
  const int rounds = point.seconds > 0.05 ? 1 : point.seconds > 0.01 ? 3 : 5;
  std::vector<double> times;
  faults = Faults();
  for (int i = 0; i < rounds; ++i) times.push_back(time(calls, good));
  point.faults = static_cast<double>(Faults() - faults) / static_cast<double>(calls * times.size());
  std::ranges::sort(times);
  point.seconds = times[times.size() / 2];
  return good;
}

bool HasSize(const nuvhost::CatalogueEntry& entry) {
  const DescriptorRecord& descriptor = *entry.descriptor;
  const std::string_view category = descriptor.category;
  if (category.starts_with("IO:")) return false;  // the world outside takes the time
  if (category == "String") {
    return std::string_view(descriptor.identifier) != "_Nuv_String_CNumberToString_";
  }
  return category.starts_with("Array:") || std::ranges::any_of(descriptor.inputs, IsArray) ||
         descriptor.repeatable != 0;
}

}  // namespace

void PrintGrowth() {
  struct Curve {
    const nuvhost::CatalogueEntry* entry;
    nlohmann::json points = nlohmann::json::array();
    bool is_over = false;
  };
  std::vector<Curve> curves;
  for (const nuvhost::CatalogueEntry& entry : Loaded().Entries()) {
    if (HasSize(entry)) curves.push_back({&entry});
  }
  Values values;
  for (std::size_t n = 10; n <= kLargest; n *= 10) {
    for (Curve& curve : curves) {
      curve.is_over |= n > kMostRepeated && RepeatsInput(*curve.entry->descriptor);
      if (curve.is_over) continue;
      Point point;
      const bool good = Measure(*curve.entry, n, values, point);
      curve.is_over = !good || point.seconds > kTooLong;
      if (good) {
        curve.points.push_back({{"size", n},
                                {"seconds", point.seconds},
                                {"faults", point.faults},
                                {"bytes", point.bytes}});
      }
    }
    values.Clear();
  }
  nlohmann::json json = {{"curves", nlohmann::json::array()}};
  for (const Curve& curve : curves) {
    const DescriptorRecord& descriptor = *curve.entry->descriptor;
    json["curves"].push_back({{"name", descriptor.name},
                              {"category", descriptor.category},
                              {"identifier", descriptor.identifier},
                              {"points", curve.points}});
  }
  std::puts(json.dump().c_str());
}

}  // namespace bench
