// ArgumentReader: what a step's constant parameters and inputs are fed, read from the program and
// checked against the instruction's descriptor.
#pragma once

#include <map>

#include "nuvhost/reading/checker.h"
#include "nuvhost/reading/program.h"

namespace nuvhost {

class ArgumentReader {
 public:
  /// `values` are the data that stand in the program itself.
  ArgumentReader(Checker& checker, Program& program,
                 const std::map<std::string, Located, std::less<>>& values)
      : checker_(checker), program_(program), values_(values) {}

  /// Reads a step's "const" and "in". Only the steps before it can be referred to; all their
  /// instructions that are known have been found.
  void Read(const Located& json, std::size_t step);
  /// Reads {"step": NAME, "result": NAME}, among the first `steps` steps.
  std::optional<StepResult> Reference(const Located& json, std::size_t steps);

 private:
  void ReadConstant(const Located& json, const ConstantRecord& record, CNuvObject& value);
  void ReadConstants(const Located& json, Step& step);
  void ReadInputs(const Located& json, Step& step);
  void ReadInputsByName(const Located& json, Step& step);
  void ReadInputsByPosition(const Located& json, Step& step);

  /// Each gives a default, or a value of no use, after a mistake.
  Argument ReadInput(const Located& json, const DescriptorRecord& descriptor, std::size_t input);
  Argument FromStep(const Located& json, std::uint32_t type, const std::string& input);
  Argument FromData(const Located& json, std::uint32_t type, const std::string& input);
  CNuvObject Literal(const Located& json, std::uint32_t type, const std::string& what);

  std::vector<ColumnName> Columns(const Located& json);
  /// The position of a parameter; nothing, and a mistake, where there is none of that name.
  template <class Finder>
  std::optional<std::size_t> Find(Finder find, const DescriptorRecord& descriptor,
                                  std::string_view name, std::size_t offset);

  Checker& checker_;
  Program& program_;
  const std::map<std::string, Located, std::less<>>& values_;
  std::size_t step_ = 0;
};

}  // namespace nuvhost
