#include "tests/instr/table.h"

namespace {

using nuvhost::Json;

constexpr const char* kCircle = "_Nuv_Geometric_Pt2BestCircle_";
constexpr const char* kCircleInf = "_Nuv_Geometric_CPt2BestCircleInf_";
constexpr const char* kLine = "_Nuv_Geometric_Pt2BestLn_";
constexpr const char* kLineInf = "_Nuv_Geometric_CPt2BestLnInf_";
constexpr const char* kLineMaxOut = "_Nuv_Geometric_Pt2BestLnMaxOut_";
constexpr const char* kAngle = "_Nuv_Geometric_Pt2BestAngle_";
constexpr const char* kRake = "_Nuv_Geometric_RakePt2BestLn_";

/// A call on results that hold something, and all of its answer.
struct FitRow {
  const char* identifier;
  const char* inputs;
  int status;
  const char* outputs;
  const char* message = "";
};

const char* const kCircleBefore = "[7,7,7,[7 7],[7 7],[7 7],[7 7],[7 7],[[7 7]],[[7 7]],7,7,7,7,7]";
const char* const kLineBefore = "[7,(7 7),[[7 7]],[[7 7]]]";

TEST(FitInstructions, Rows) {
  const char* const no_line = "[0,(0 0),[],[]]";
  const char* const no_circle = "[0,0,0,[0 0],[0 0],[0 0],[0 0],[0 0],[],[],0,0,0,0,0]";
  const char* const untouched = "[0,0,0,[0 0],[0 0],[0 0],[0 0],[0 0],[[7 7]],[[7 7]],0,0,0,0,0]";
  const char* const round =
      "[2,4,0,[5 5],[4 4],[6 4],[6 6],[4 6],[],[[6 5],[5 6],[4 5],[5 4]],2,2,100,0,0]";
  const char* const negative = "Negative tolerance is not a valid input.";
  const char* const few = "Not enough points in the biggest cluster; increase linear tolerance.";
  const FitRow rows[] = {
      {kCircle, "[0,[[6 5],[5 6],[4 5],[5 4]]]", 0, round},
      {kCircle, "[0,[[2 0],[0 2],[-2 0],[0 -2],[0.6 0.8],[-0.6 0.8],[-0.6 -0.8],[0.6 -0.8]]]", 0,
       "[3,8,0.5,[0 0],[-1.5 -1.5],[1.5 -1.5],[1.5 1.5],[-1.5 1.5],[],"
       "[[2 0],[0 2],[-2 0],[0 -2],[0.6 0.8],[-0.6 0.8],[-0.6 -0.8],[0.6 -0.8]],2,4,50,"
       "33.333333333333336,0.5]"},
      // Clustering of gaps, of which the isolated point has the only large one.
      {kCircle, "[0,[[6 5],[5 6],[4 5],[5 4],[30 30]],true,0.5]", 0,
       "[2,4,0,[5 5],[4 4],[6 4],[6 6],[4 6],[[30 30]],[[6 5],[5 6],[4 5],[5 4]],2,2,100,0,0]"},
      // What preprocessing removed comes behind what the fit left out.
      {kCircle, "[20,[[90 90],[6 5],[5 6],[4 5],[5 4],[5 6.5]],true,2]", 0,
       "[2,4,0,[5 5],[4 4],[6 4],[6 6],[4 6],[[5 6.5],[90 90]],[[6 5],[5 6],[4 5],[5 4]],2,2,100,"
       "0,0]"},
      {kCircle, "[0,[[6 5],[5 6]],true,-1]", 0, untouched},
      {kCircle, "[0,[[6 5],[5 6],[4 5]],true,-1]", 3, untouched, negative},
      {kCircle, "[100,[[6 5],[5 6],[4 5]]]", 3, no_circle},
      {kCircle, "[-1,[[6 5],[5 6],[4 5],[90 90]],true,1]", 3,
       "[0,0,0,[0 0],[0 0],[0 0],[0 0],[0 0],[[90 90]],[],0,0,0,0,0]"},
      {kCircle, "[-0.5,[[6 5],[5 6],[4 5],[5 4]],false,-1]", 0, round},
      {kCircle, R"(["NaN",[[6 5],[5 6],[4 5],[5 4]]])", 0, round},
      {kCircle, "[4294967296,[[6 5],[5 6],[4 5],[5 4]]]", 0, round},
      {kCircle, "[0,[[1 1],[2 2],[3 3]]]", 3, no_circle},
      // Squares of the distances overflow.
      {kCircle, "[0,[[1e200 0],[0 1e200],[-1e200 0],[0 -1e200]]]", 0,
       "[2e200,4,0,[0 0],[-1e200 -1e200],[1e200 -1e200],[1e200 1e200],[-1e200 1e200],[],"
       "[[1e200 0],[0 1e200],[-1e200 0],[0 -1e200]],2e200,2e200,100,0,0]"},
      {kCircleInf, "[0,false,1,-1,[6 5],[5 6],[4 5],[5 4]]", 0, round},
      {kCircleInf, "[0,true,-1,-1,[6 5],[5 6]]", 0, untouched},
      {kCircleInf, "[0,true,-1,-1,[6 5],[5 6],[4 5]]", 3, untouched, negative},

      {kLine, "[0,[[1 0],[0 1],[-1 0],[0 1]]]", 0, "[4,(0 0.5),[],[[1 0],[0 1],[-1 0],[0 1]]]"},
      {kLine, "[20.9,[[0 2],[1 2],[5 9],[2 2],[3 2]]]", 0,
       "[4,(0 2),[[5 9]],[[0 2],[1 2],[2 2],[3 2]]]"},
      // The line does not report the points that preprocessing removes.
      {kLine, "[0,[[0 2],[1 2],[50 90],[2 2],[3 2]],true,5]", 0,
       "[4,(0 2),[],[[0 2],[1 2],[2 2],[3 2]]]"},
      // A gap is the one to the nearer neighbour.
      {kLine, "[0,[[0 2],[1 2],[11 2],[12 2],[50 2]],true,5]", 0,
       "[4,(0 2),[],[[0 2],[1 2],[11 2],[12 2]]]"},
      {kLine, "[0,[],true,1]", 0, no_line},
      {kLine, "[0,[],true,-1]", 3, no_line, negative},
      {kLine, "[0,[[1 1]],true,1]", 3, no_line},
      {kLine, "[0,[[1 1],[1 1]]]", 3, no_line},
      {kLineInf, "[0,false,1,[0 2],[1 2]]", 0, "[2,(0 2),[],[[0 2],[1 2]]]"},
      {kLineInf, "[0,true,-1,[0 2],[1 2]]", 3, no_line, negative},

      {kRake, "[0,[[0 0],[1 0],[2 0],[3 5],[4 0]],3,0.1]", 0, "[3,(0 0),[],[[0 0],[1 0],[2 0]]]"},
      // Seen from the end the run is straighter; its points come from there.
      {kRake, "[0,[[0 3],[1 2],[2 2],[3 2],[4 2]],3,0.1]", 0,
       "[4,(0 2),[],[[4 2],[3 2],[2 2],[1 2]]]"},
      // Directions of pi and -pi are one; of equally long runs the first is taken.
      {kRake, "[0,[[0 0],[-1 0],[-2 -0.0],[-3 0]],3,0.1]", 0,
       "[4,(0 0),[],[[0 0],[-1 0],[-2 0],[-3 0]]]"},
      {kRake, "[100,[[0 2],[1 2],[2 2]],3,0.1]", 0, no_line},
      {kRake, "[0,[],3,0.1]", 0, no_line},
      {kRake, "[0,[[1 1]],3,0.1]", 0, no_line, few},
      {kRake, "[0,[[1 1],[2 2]],3,0.1]", 0, no_line, few},
      {kRake, "[0,[],-1,-1]", 0, no_line, "Negative linear tolerance is not a valid input."},
      {kRake, "[0,[],1,-1]", 0, no_line, "Negative angular tolerance is not a valid input."},

      {kLineMaxOut, "[[[0 1],[10 -1],[20 -1],[30 1],[50 99]],20]", 0,
       "[4,-1,1,[10 -1],[0 1],(0 0),[[50 99]]]"},
      {kLineMaxOut, "[[],0]", 3, "[0,0,0,[0 0],[0 0],(0 0),[]]"},
      {kAngle, "[[0 0],[0 -3]]", 0, "[1.5707963267948966]"},
      {kAngle, "[[0 0],[-5 0]]", 0, "[0]"},
  };
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const FitRow& row : rows) {
    SCOPED_TRACE(std::string(row.identifier) + " " + row.inputs);
    const bool circle = row.identifier == kCircle || row.identifier == kCircleInf;
    const bool max_out = row.identifier == kLineMaxOut;
    const bool angle = row.identifier == kAngle;
    std::string before = circle    ? kCircleBefore
                         : max_out ? "[7,7,7,[7 7],[7 7],(7 7),[[7 7]]]"
                         : angle   ? "[7]"
                                   : kLineBefore;
    const Json answer =
        Exec(session, std::string(R"({"instr":")") + row.identifier + R"(","in":)" +
                          WithFigures(row.inputs) + R"(,"prev":)" + WithFigures(before) + "}");
    ASSERT_FALSE(answer.contains("error")) << answer.dump();
    EXPECT_EQ(answer["status"], row.status);
    // Numbers compare by value, so that the sign of a zero does not count.
    EXPECT_EQ(answer["out"], Json::parse(WithFigures(row.outputs)));
    const char* title = row.identifier == kCircle      ? "PtsToBestCircle"
                        : row.identifier == kCircleInf ? "PtsToBestCircleInf"
                        : row.identifier == kLineInf   ? "PtsToBestLnInf"
                                                       : "PtsToBestLine";
    const Json message = {{"severity", 2}, {"source", title}, {"text", row.message}};
    EXPECT_EQ(answer.value("messages", Json::array()),
              *row.message == '\0' ? Json::array() : Json::array({message}));
    const Json marks =
        circle || angle ? Json::array() : Json::array({Json::array({max_out ? 6 : 2, 65535})});
    EXPECT_EQ(answer.value("marks", Json::array()), marks);
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

TEST(FitInstructions, AnglesComeAndGoInTheUsersUnit) {
  nuvhost::ExecSession session(BuiltCatalogue());
  const std::string rake = std::string(R"({"instr":")") + kRake + R"(","in":[0,)" +
                           WithFigures("[[0 0],[1 0],[2 0.2],[3 0.3]]");
  // From the first point the directions are 0, 0, 0.0997 and 0.0997 radians, from the last one
  // 3.042, 3.042, 2.993 and 3.042.
  EXPECT_EQ(Exec(session, rake + ",2,1]}")["out"][0], 4);
  Exec(session, R"({"set":{"angleUnit":"degrees"}})");
  EXPECT_EQ(Exec(session, rake + ",2,1]}")["out"][0], 3);
  EXPECT_EQ(Exec(session, rake + ",2,-0.001]}")["messages"][0]["text"],
            "Negative angular tolerance is not a valid input.");
  const std::string angle = std::string(R"({"instr":")") + kAngle + R"(","in":)";
  EXPECT_EQ(Exec(session, angle + WithFigures("[[0 0],[0 7]]}"))["out"][0], 90);
  EXPECT_NEAR(Exec(session, angle + WithFigures("[[1 1],[2 2]]}"))["out"][0], -45.0, 1e-13);
  Exec(session, R"({"set":{"angleUnit":"radians"}})");
}

}  // namespace
