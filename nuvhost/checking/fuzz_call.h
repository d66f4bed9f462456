// FuzzCall: a call of an instruction with random values of the declared types.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/records.h"
#include "nuvhost/checking/hostile.h"

namespace nuvhost::check {

/// A stream of numbers that a seed determines on every platform: SplitMix64 (Steele, Lea and Flood,
/// "Fast splittable pseudorandom number generators", 2014).
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t Next();
  /// A number from 0 to `count` - 1; `count` is above 0.
  std::size_t Below(std::size_t count) { return static_cast<std::size_t>(Next() % count); }
  bool OneIn(std::size_t count) { return Below(count) == 0; }

 private:
  std::uint64_t state_;
};

/// The values of a call: constants as a user may choose them; inputs, of which a repeatable last
/// one comes any number of times, and what results hold beforehand of any value, many of them
/// hostile.
class FuzzCall {
 public:
  FuzzCall(const DescriptorRecord& descriptor, Random& random);

  Case AsCase() const;
  /// The request by which `nuvhost exec` makes the same call.
  std::string ExecLine(const DescriptorRecord& descriptor) const;

 private:
  std::vector<CNuvObject> constants_;
  std::vector<CNuvObject> inputs_;
  std::vector<CNuvObject> results_;  ///< none where they are empty
  std::optional<std::int32_t> count_;
};

}  // namespace nuvhost::check
