// DataReferences: {"data": NAME} and what of the data is meant, checked against the data that the
// program names.
#pragma once

#include <functional>
#include <map>

#include "nuvhost/reading/checker.h"
#include "nuvhost/reading/expression.h"
#include "nuvhost/reading/program.h"

namespace nuvhost {

/// Data that stand in the program itself, by name.
using LiteralData = std::map<std::string, Located, std::less<>>;

class DataReferences {
 public:
  DataReferences(Checker& checker, Program& program, const LiteralData& values)
      : checker_(checker), program_(program), values_(values) {}

  /// A reference for an input of a type, which `input` names. Of no use after a mistake.
  Argument Read(const Located& json, std::uint32_t type, const std::string& input);

  bool Has(const std::string& name) const;
  /// The names of all data.
  std::vector<std::string_view> Names() const;
  /// A number or boolean that stands in the program, or the one number in a file or in a column of
  /// it, for the expression at `offset` that `place` names. Throws ExpressionError.
  Operand InExpression(const ExpressionName& name, std::size_t offset, const std::string& place);

 private:
  std::vector<ColumnName> Columns(const Located& json);
  std::vector<std::pair<std::string, Json>> Where(const Located& json);
  /// Whether the use's columns and row are what its type needs.
  bool Fits(const Located& json, const DataUse& use, const std::string& data);
  UseNumber Add(DataUse use);

  Checker& checker_;
  Program& program_;
  const LiteralData& values_;
};

}  // namespace nuvhost
