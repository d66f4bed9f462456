// Facts: what a descriptor says, in a form that can be compared and shown.
#pragma once

#include <string>
#include <vector>

#include "host/records.h"

namespace nuvhost::check {

/// One field of a descriptor: "inputs[0].name" and its content.
struct Fact {
  std::string field;
  std::string content;
};
using Facts = std::vector<Fact>;

/// The descriptor without its parameters, and with them.
Facts HeadFacts(const DescriptorRecord& descriptor);
Facts AllFacts(const DescriptorRecord& descriptor);

/// A value with its type: "-0.0 (type 3)".
std::string Shown(const CNuvObject& value);

/// The first field that differs, "help was 460000, is 0"; "" where all are the same.
std::string Difference(const Facts& before, const Facts& after);

}  // namespace nuvhost::check
