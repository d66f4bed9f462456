#include "tests/instr/table.h"

namespace {

using nuvhost::Json;

constexpr const char* kCircle = "_Nuv_Geometric_Pt2BestCircle_";
constexpr const char* kCircleInf = "_Nuv_Geometric_CPt2BestCircleInf_";
constexpr const char* kLine = "_Nuv_Geometric_Pt2BestLn_";
constexpr const char* kLineInf = "_Nuv_Geometric_CPt2BestLnInf_";
constexpr const char* kLineMaxOut = "_Nuv_Geometric_Pt2BestLnMaxOut_";
constexpr const char* kRake = "_Nuv_Geometric_RakePt2BestLn_";

/// A call on results that hold something, and all of its answer.
struct FitRow {
  const char* identifier;
  const char* inputs;
  int status;
  const char* before;
  const char* outputs;
  const char* marks = "[]";
};

// Beyond what docs/instructions shows: what was in the results, and which of them are marked.
TEST(FitInstructions, Rows) {
  const char* const circle = "[7,7,7,[7 7],[7 7],[7 7],[7 7],[7 7],[[7 7]],[[7 7]],7,7,7,7,7]";
  const char* const line = "[7,(7 7),[[7 7]],[[7 7]]]";
  const char* const no_line = "[0,(0 0),[],[]]";
  const char* const no_circle = "[0,0,0,[0 0],[0 0],[0 0],[0 0],[0 0],[],[],0,0,0,0,0]";
  const char* const untouched = "[0,0,0,[0 0],[0 0],[0 0],[0 0],[0 0],[[7 7]],[[7 7]],0,0,0,0,0]";
  const FitRow rows[] = {
      {kCircle, "[0,[[6 5],[5 6]],true,-1]", 0, circle, untouched},
      {kCircle, "[0,[[6 5],[5 6],[4 5]],true,-1]", 3, circle, untouched},
      {kCircle, "[100,[[6 5],[5 6],[4 5]]]", 3, circle, no_circle},
      // Squares of the distances overflow.
      {kCircle, "[0,[[1e200 0],[0 1e200],[-1e200 0],[0 -1e200]]]", 0, circle,
       "[2e200,4,0,[0 0],[-1e200 -1e200],[1e200 -1e200],[1e200 1e200],[-1e200 1e200],[],"
       "[[1e200 0],[0 1e200],[-1e200 0],[0 -1e200]],2e200,2e200,100,0,0]"},
      {kCircleInf, "[0,true,-1,-1,[6 5],[5 6],[4 5]]", 3, circle, untouched},
      {kLine, "[0,[],true,1]", 0, line, no_line, "[[2,65535]]"},
      {kLine, "[0,[],true,-1]", 3, line, no_line, "[[2,65535]]"},
      {kLineInf, "[0,false,1,[0 2],[1 2]]", 0, line, "[2,(0 2),[],[[0 2],[1 2]]]", "[[2,65535]]"},
      {kRake, "[100,[[0 2],[1 2],[2 2]],3,0.1]", 0, line, no_line, "[[2,65535]]"},
      {kRake, "[0,[[1 1]],3,0.1]", 0, line, no_line, "[[2,65535]]"},
      {kLineMaxOut, "[[],0]", 3, "[7,7,7,[7 7],[7 7],(7 7),[[7 7]]]",
       "[0,0,0,[0 0],[0 0],(0 0),[]]", "[[6,65535]]"},
  };
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const FitRow& row : rows) {
    SCOPED_TRACE(std::string(row.identifier) + " " + row.inputs);
    const Json answer =
        Exec(session, std::string(R"({"instr":")") + row.identifier + R"(","in":)" +
                          WithFigures(row.inputs) + R"(,"prev":)" + WithFigures(row.before) + "}");
    EXPECT_EQ(answer["status"], row.status) << answer.dump();
    // Numbers compare by value, so that the sign of a zero does not count.
    EXPECT_EQ(answer["out"], Json::parse(WithFigures(row.outputs)));
    EXPECT_EQ(answer.value("marks", Json::array()), Json::parse(row.marks));
  }
}

TEST(FitInstructions, CircleIsDrawnWhateverTheFit) {
  const struct {
    const char* inputs;
    const char* center;
    int radius;
    int color;  // -1: not drawn
  } rows[] = {
      {"[0,[[6 5],[5 6],[4 5],[5 4]]]", "[5 5]", 1, 65535},
      {"[0,[[6 5],[5 6],[4 5],[5 4]],false,1,-1]", "[5 5]", 1, -1},
      {"[0,[[6 5],[5 6],[4 5],[5 4]],false,1,-0.9]", "[5 5]", 1, 0},
      {"[0,[[6 5],[5 6],[4 5],[5 4]],false,1,4294967295]", "[5 5]", 1, -1},
      {"[100,[[6 5],[5 6],[4 5],[5 4]],false,1,255]", "[0 0]", 0, 255},
      {"[0,[[6 5],[5 6]]]", "[0 0]", 0, -1},
      {"[0,[[6 5],[5 6],[4 5]],true,-1]", "[0 0]", 0, -1},
      {"[0,false,1,8,[6 5],[5 6],[4 5],[5 4]]", "[5 5]", 1, 8},
  };
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const auto& row : rows) {
    SCOPED_TRACE(row.inputs);
    const char* identifier = row.color == 8 ? kCircleInf : kCircle;
    const Json answer = Exec(session, std::string(R"({"instr":")") + identifier + R"(","in":)" +
                                          WithFigures(row.inputs) + "}");
    const Json circle = {{"op", "circle"},       {"center", Json::parse(WithFigures(row.center))},
                         {"radius", row.radius}, {"fill", false},
                         {"label", nullptr},     {"color", row.color}};
    EXPECT_EQ(answer.value("annotations", Json::array()),
              row.color < 0 ? Json::array() : Json::array({circle}));
  }
}

}  // namespace
