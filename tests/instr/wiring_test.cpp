// A host may wire a = f(a): an input and a result are then one object.

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "nuvhost/library/categories.h"
#include "tests/instr/any_arrays.h"
#include "tests/instr/table.h"

namespace {

using nuvhost::CallContext;

/// A call one of whose results is one of its own inputs.
class WiredContext final : public IXInstrContext {
 public:
  WiredContext(CallContext& call, nuvhost::Services& services, std::size_t result,
               std::size_t input)
      : services_(services) {
    for (CNuvObject& own : call.constants) constants_.push_back(&own);
    for (CNuvObject& own : call.inputs) inputs_.push_back(&own);
    for (CNuvObject& own : call.results) results_.push_back(&own);
    results_[result] = inputs_[input];
  }
  void* DeletingDestructor(std::uint32_t /*flags*/) override { return this; }
  CNuvObject** ConstantValues() override { return constants_.data(); }
  CNuvObject** InputValues() override { return inputs_.data(); }
  std::int32_t InputCount() override { return static_cast<std::int32_t>(inputs_.size()); }
  CNuvObject** ResultValues() override { return results_.data(); }
  CNuvObject* ConstantValue(std::int32_t index) override {
    return constants_[static_cast<std::size_t>(index)];
  }
  CNuvObject* ResultValue(std::int32_t index) override {
    return results_[static_cast<std::size_t>(index)];
  }
  void MarkResult(std::int32_t /*index*/, std::int32_t /*value*/) override {}
  void* Service(std::int32_t number) override { return services_.Find(number); }

 private:
  nuvhost::Services& services_;
  std::vector<CNuvObject*> constants_;
  std::vector<CNuvObject*> inputs_;
  std::vector<CNuvObject*> results_;
};

std::string AnyText(std::mt19937_64& random) {
  std::string text;
  for (std::uint64_t size = random() % 40; size > 0; --size) text += "ab %d"[random() % 5];
  return text;
}

/// A value that makes sense in most places. Points are often four, the corners of a grid.
void MakeAny(std::mt19937_64& random, CNuvObject& input) {
  const auto few = [&random] { return static_cast<double>(random() % 48); };
  const Array values = AnyArray(random, random() % 3 == 0 ? 4 : random() % 200, 5);
  switch (static_cast<int>(input.GetType())) {
    case NUV_OBJ_BOOL: input = random() % 2 == 0; break;
    case NUV_OBJ_DOUBLE: input = few(); break;
    case NUV_OBJ_STRING: input = AnyText(random).c_str(); break;
    case NUV_OBJ_POINT: input = CNuvPoint(few(), few()); break;
    case NUV_OBJ_LINE: input = CNuvLine(few() / 16.0, few()); break;
    case NUV_OBJ_BOOL_VECTOR:
      for (const double x : values) static_cast<CNuvBoolVector&>(input).PushBack(x > 3.0);
      break;
    case NUV_OBJ_DOUBLE_VECTOR:
      for (const double x : values) static_cast<CNuvDoubleVector&>(input).PushBack(x);
      break;
    case NUV_OBJ_STRING_VECTOR:
      for (std::size_t i = 0; i < values.size(); ++i) {
        static_cast<CNuvStringVector&>(input).PushBack(CNuvString(AnyText(random)));
      }
      break;
    case NUV_OBJ_POINT_VECTOR:
      for (const double x : values) {
        static_cast<CNuvPointVector&>(input).PushBack(CNuvPoint(x, few()));
      }
      break;
    case NUV_OBJ_LINE_VECTOR:
      for (const double x : values)
        static_cast<CNuvLineVector&>(input).PushBack(CNuvLine(x, few()));
      break;
    default: FAIL() << "a type without values";
  }
}

// Whichever input is a result, all results come out as they do apart.
TEST(Wiring, AResultMayBeAnInput) {
  nuvhost::Services services;
  std::mt19937_64 random(6);
  std::size_t compared = 0;
  for (const nuvhost::CatalogueEntry& instruction : BuiltCatalogue().Entries()) {
    const DescriptorRecord& descriptor = *instruction.descriptor;
    if (nuvhost::TouchesOuterWorld(descriptor.category)) continue;
    const std::size_t declared = descriptor.inputs.Size();
    const std::size_t inputs = declared + descriptor.repeatable;
    for (std::size_t pair = 0; pair < inputs * descriptor.results.Size(); ++pair) {
      const std::size_t result = pair / inputs;
      const std::size_t input = pair % inputs;
      const ParameterRecord& record = descriptor.inputs[std::min(input, declared - 1)];
      if (record.type != descriptor.results[result].type) continue;
      SCOPED_TRACE(testing::Message()
                   << descriptor.identifier << ": result " << result << " is input " << input);
      for (int round = 0; round < 12; ++round) {
        CallContext apart(descriptor, services);
        if (descriptor.repeatable != 0) apart.inputs.push_back(apart.inputs.back());
        for (CNuvObject& any : apart.inputs) MakeAny(random, any);
        CallContext wired(descriptor, services);
        wired.inputs = apart.inputs;
        const std::vector<CNuvObject> given = apart.inputs;
        apart.results[result] = apart.inputs[input];  // what is not written stays
        const std::int32_t status = apart.Execute(*instruction.prototype);
        WiredContext context(wired, services, result, input);
        ASSERT_EQ(static_cast<std::int32_t>(instruction.prototype->Execute(&context)), status);
        services.Take();
        ++compared;
        for (std::size_t i = 0; i < apart.results.size(); ++i) {
          ASSERT_EQ(nuvhost::ToJson(*context.ResultValue(static_cast<std::int32_t>(i))).dump(),
                    nuvhost::ToJson(apart.results[i]).dump())
              << i;
        }
        for (std::size_t i = 0; i < inputs; ++i) {  // other inputs are not changed
          if (i == input) continue;
          ASSERT_EQ(nuvhost::ToJson(wired.inputs[i]).dump(), nuvhost::ToJson(given[i]).dump());
        }
      }
    }
  }
  EXPECT_GT(compared, 1000U);
}

}  // namespace
