// ArgumentReader: what a step's constant parameters and inputs are fed, read from the program and
// checked against the instruction's descriptor.
#pragma once

#include "nuvhost/reading/checker.h"
#include "nuvhost/reading/data_references.h"
#include "nuvhost/reading/program.h"

namespace nuvhost {

class ArgumentReader {
 public:
  /// `values` are the data that stand in the program itself.
  ArgumentReader(const Catalogue& catalogue, Checker& checker, Program& program,
                 const LiteralData& values)
      : catalogue_(catalogue),
        checker_(checker),
        program_(program),
        data_(checker, program, values) {}

  /// Reads a step's "const" and "in". Only the steps before it can be referred to; all written
  /// steps are there, and their instructions that are known have been found. The steps that its
  /// expressions stand for go to the end of the program's.
  void Read(const Located& json, std::size_t step);
  /// Reads the value of the report row of that label: a reference to any step, or an expression.
  std::optional<StepResult> ReportValue(const Located& json, const std::string& label);

 private:
  void ReadConstant(const Located& json, const ConstantRecord& record, CNuvObject& value);
  void ReadConstants(const Located& json, Step& step);
  void ReadInputs(const Located& json, std::size_t step);
  void ReadInputsByName(const Located& json, std::vector<Argument>& inputs,
                        std::vector<bool>& given);
  void ReadInputsByPosition(const Located& json, std::vector<Argument>& inputs,
                            std::vector<bool>& given);
  void CheckGiven(const Located& json, const std::vector<bool>& given);

  /// Each gives a default, or a value of no use, after a mistake.
  Argument ReadInput(const Located& json, std::size_t input);
  Argument FromStep(const Located& json, std::uint32_t type, const std::string& input);
  Argument FromExpression(const Located& json, std::uint32_t type, const std::string& input);

  std::optional<StepResult> Reference(const Located& json);
  /// The position of a step that can be referred to. Throws ValueError.
  std::size_t FindStep(const std::string& name) const;
  std::uint32_t TypeOf(const StepResult& result) const;
  /// What an expression gives, after a mistake nothing.
  std::optional<Operand> ReadOperand(const Located& json, const Generated& generated);
  Operand Resolve(const ExpressionName& name, std::size_t offset, const std::string& place);
  std::vector<std::string_view> Names() const;

  /// The position of a parameter; nothing, and a mistake, where there is none of that name.
  template <class Finder>
  std::optional<std::size_t> Find(Finder find, const DescriptorRecord& descriptor,
                                  std::string_view name, std::size_t offset);
  const DescriptorRecord& Descriptor() const {
    return *program_.steps[step_].instruction->descriptor;
  }

  const Catalogue& catalogue_;
  Checker& checker_;
  Program& program_;
  DataReferences data_;
  std::size_t step_ = 0;  ///< the written steps before it can be referred to
};

}  // namespace nuvhost
