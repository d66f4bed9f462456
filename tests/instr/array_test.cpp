// The instructions that every element type has, over the five types with one set of rows.

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "host/setting.h"
#include "reference_host/services/call_context.h"
#include "tests/instr/any_arrays.h"
#include "tests/instr/table.h"

namespace {

using nuvhost::Json;

/// An element type: its letter in the identifiers, its default element, and four values.
struct Kind {
  char letter;
  const char* zero;
  const char* values[4];
};

const Kind kKinds[] = {
    {'B', "false", {"true", "true", "false", "true"}},
    {'N', "0", {"1.5", "-0.0", "\"NaN\"", "1e300"}},
    {'S', R"("")", {R"("a")", R"("a longer text than fits inline")", R"("\u00ff")", R"(" ")"}},
    {'P',
     R"({"x":0,"y":0})",
     {R"({"x":1,"y":2})", R"({"x":2,"y":1})", R"({"x":"NaN","y":0})", R"({"x":-1,"y":1})"}},
    {'L',
     R"({"a":0,"d":0})",
     {R"({"a":1,"d":2})", R"({"a":2,"d":1})", R"({"a":0,"d":"NaN"})", R"({"a":-1,"d":1})"}},
};

std::string Identifier(const Kind& kind, const std::string& member) {
  if (kind.letter == 'P' && member == "ConcatArr") return "_Nuv_Array_CArrConcatArr_";
  return std::string("_Nuv_Array_C") + kind.letter + "Arr" + member + "_";
}

/// A row's list in the values of a kind.
Json InValues(const Kind& kind, const std::string& text) {
  std::string json;
  bool quoted = false;
  for (const char character : text) {
    quoted ^= character == '"';
    if (quoted) {
      json += character;
    } else if (character >= 'a' && character <= 'd') {
      json += kind.values[character - 'a'];
    } else if (character == 'z') {
      json += kind.zero;
    } else {
      json += character;
    }
  }
  return Json::parse(json);
}

struct ArrayRow {
  const char* member;
  const char* inputs;
  const char* output;  // null for a failure that leaves the result as it was
};

// "z" is the default element, "a" to "d" are values. docs/instructions has the other limits, each
// with some types, and laws_test.cpp what ties these to each other and to the rest.
const ArrayRow kRows[] = {
    {"SetAt", "[[a,b,c],2.9,d]", "[a,b,d]"},
    {"Resize", "[[a,b],4]", "[a,b,z,z]"},
    {"Resize", "[[a],3e9]", nullptr},
    {"InsertRep", "[[a,b],0,-2147483648,c]", nullptr},
    {"Create", "[5]", "[d,d,z,z,z]"},  // the result held two elements
    {"Create", "[1]", "[d]"},
    {"CreateInf", "[a,b,c,d]", "[a,b,c,d]"},
    {"CreateRep", "[3,b]", "[b,b,b]"},
    {"GetRange", "[[a,b,c],-0.5,2147483647]", "[a,b,c]"},
};

struct Answered {
  int status;
  Json output;
};

Answered Ask(nuvhost::ExecSession& session, const std::string& identifier, const Json& inputs,
             const Json& previous) {
  const Json request = {{"instr", identifier}, {"in", inputs}, {"prev", Json::array({previous})}};
  const Json answer = Exec(session, request.dump());
  EXPECT_FALSE(answer.contains("error") || answer.contains("messages")) << answer.dump();
  return {answer.value("status", -1), answer["out"][0]};
}

TEST(Arrays, EveryElementTypeKeepsEveryRow) {
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const Kind& kind : kKinds) {
    for (const ArrayRow& row : kRows) {
      SCOPED_TRACE(Identifier(kind, row.member) + " " + row.inputs);
      const std::string member = row.member;
      const Json previous = InValues(kind, "[d,d]");
      const Answered answer =
          Ask(session, Identifier(kind, member), InValues(kind, row.inputs), previous);
      EXPECT_EQ(answer.status, row.output == nullptr ? 3 : 0);
      EXPECT_EQ(answer.output.dump(),
                (row.output == nullptr ? previous : InValues(kind, row.output)).dump());
    }
  }
}

// What empties its result first leaves it empty when it fails; and the end of an array is a start
// for numbers alone.
TEST(Arrays, FailuresThatEmptyTheResult) {
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const Kind& kind : kKinds) {
    const auto status = [&](const char* member, const char* inputs) {
      const Answered answer =
          Ask(session, Identifier(kind, member), InValues(kind, inputs), InValues(kind, "[d,d]"));
      EXPECT_EQ(answer.output.dump(), "[]") << kind.letter << member << inputs;
      return answer.status;
    };
    for (const char* inputs : {"[[a,b],3,1]", "[[a,b],-1,1]", "[[a,b],0,-1]", "[[a,b],3,0]",
                               R"([[a,b],"NaN",1])", R"([[a,b],"Infinity",0])", "[[a,b],1e19,0]"}) {
      EXPECT_EQ(status("GetRange", inputs), 3) << kind.letter << inputs;
    }
    EXPECT_EQ(status("GetRange", "[[a,b],2,5]"), kind.letter == 'N' ? 0 : 3);
    EXPECT_EQ(status("GetRange", "[[],0,1]"), kind.letter == 'N' ? 0 : 3);
    EXPECT_EQ(status("CreateRep", "[-1,a]"), 3);
    EXPECT_EQ(status("CreateRep", "[2147483647,a]"), 3);

    CNuvSetting::Inst().SetVectorLimit(3);
    EXPECT_EQ(status("ConcatArr", "[[a,b],[c,d]]"), 3);
    CNuvSetting::Inst().SetVectorLimit(0);
  }
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
