// The instructions that every element type has.

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "host/setting.h"
#include "reference_host/services/call_context.h"
#include "tests/instr/any_arrays.h"
#include "tests/instr/table.h"

namespace {

using nuvhost::Json;

// Other limits stand in docs/instructions and in tests/transcripts/exec_arrays.txt.
TEST(Arrays, AConcatenationThatIsTooLongEmptiesItsResult) {
  nuvhost::ExecSession session(BuiltCatalogue());
  const std::pair<std::string, Json> rows[] = {{"CBArr", true},
                                               {"CNArr", 1},
                                               {"CSArr", "a"},
                                               {"CArr", {{"x", 1}, {"y", 2}}},
                                               {"CLArr", {{"a", 1}, {"d", 2}}}};
  CNuvSetting::Inst().SetVectorLimit(3);
  for (const auto& [type, element] : rows) {
    const Json two = Json::array({element, element});
    const Json request{{"instr", "_Nuv_Array_" + type + "ConcatArr_"},
                       {"in", Json::array({two, two})},
                       {"prev", Json::array({two})}};
    EXPECT_EQ(session.Answer(request.dump()), R"({"status":3,"out":[[]]})") << type;
  }
  CNuvSetting::Inst().SetVectorLimit(0);
}

/// The elements are made of numbers of which many are equal, hostile ones among them.
template <class Vector, class Element>
void DifferenceAgreesWithLoops(const char* identifier, Element element) {
  const nuvhost::CatalogueEntry& instruction = BuiltCatalogue().Find(identifier);
  nuvhost::Services services;
  std::mt19937_64 random(6);
  nuvhost::CallContext call(*instruction.descriptor, services);
  for (int round = 0; round < RandomRounds(600); ++round) {
    for (CNuvObject& input : call.inputs) {
      auto& array = static_cast<Vector&>(input);
      array.Resize(0);
      const std::size_t size = random() % (random() % 2 == 0 ? 16 : 300);
      for (const double x : AnyArray(random, size, static_cast<unsigned>(random() % 8))) {
        array.PushBack(element(x));
      }
    }
    const auto& first = static_cast<const Vector&>(call.inputs[0]);
    const auto& second = static_cast<const Vector&>(call.inputs[1]);
    Vector expected;
    const auto* end = second.GetStorage() + second.Size();
    for (std::size_t i = 0; i < first.Size(); ++i) {
      if (std::find(second.GetStorage(), end, first[i]) == end) expected.PushBack(first[i]);
    }
    CNuvObject object;
    object = expected;
    ASSERT_EQ(call.Execute(*instruction.prototype), 0);
    ASSERT_EQ(nuvhost::ToJson(call.results[0]).dump(), nuvhost::ToJson(object).dump())
        << identifier << round;
  }
}

TEST(Arrays, DifferenceAgreesWithTwoLoops) {
  DifferenceAgreesWithLoops<CNuvDoubleVector>("_Nuv_Array_CNArrDiff_", [](double x) { return x; });
  DifferenceAgreesWithLoops<CNuvStringVector>("_Nuv_Array_CSArrDiff_", [n = 0U](double x) mutable {
    return CNuvString(std::to_string(x).substr(0, ++n % 12) + "\xff");
  });
  DifferenceAgreesWithLoops<CNuvPointVector>(
      "_Nuv_Array_CPArrDiff_", [](double x) { return CNuvPoint(std::fmod(x, 2.0), x); });
  DifferenceAgreesWithLoops<CNuvLineVector>(
      "_Nuv_Array_CLArrDiff_", [](double x) { return CNuvLine(x, std::fmod(x, 2.0)); });
}

}  // namespace
