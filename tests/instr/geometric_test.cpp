// Geometric instructions: their rules and their units.

#include <algorithm>
#include <cmath>
#include <vector>

#include "host/integer.h"
#include "reference_host/services/call_context.h"
#include "tests/instr/random_rounds.h"
#include "tests/instr/table.h"

namespace {

TEST(Geometric, Rows) {
  const InstructionRow rows[] = {
      {"_Nuv_Geometric_PointSet_", R"([{"x":"NaN","y":-0.0}])", R"([{"x":"NaN","y":-0.0}])"},
      {"_Nuv_Geometric_LineSet_", R"([{"a":9,"d":-1}])", R"([{"a":9,"d":-1}])"},
      {"_Nuv_Geometric_Pt2PtDistance_", R"([{"x":1,"y":1},{"x":4,"y":5}])", "[5,3,4]"},
      {"_Nuv_Geometric_Pt2PtDistance_", R"([{"x":4,"y":5},{"x":1,"y":1}])", "[5,-3,-4]"},
      {"_Nuv_Geometric_PtToPtsDistance_", R"([{"x":4,"y":5},[{"x":1,"y":1},{"x":4,"y":6}]])",
       "[[5,1],[-3,0],[-4,1]]"},
      {"_Nuv_Geometric_PtToPtsDistance_", R"([{"x":4,"y":5},[]])", "[[],[],[]]"},
      {"_Nuv_Geometric_PtsToPtsDistance_", R"([[{"x":4,"y":5}],[{"x":1,"y":1}]])", "[[5],[3],[4]]"},
      {"_Nuv_Geometric_PtsToPtsDistance_", R"([[{"x":4,"y":5}],[{"x":1,"y":1},{"x":0,"y":0}]])",
       "[[5],[3],[4]]"},
      {"_Nuv_Geometric_Pt2PtDistPitch_", R"([{"x":1,"y":1},{"x":1,"y":5}])",
       "[1.5707963267948966,4]"},
      {"_Nuv_Geometric_Pt2LnDistance_", R"([{"x":3,"y":9},{"a":0,"d":5}])",
       R"([4,{"x":3,"y":5},{"a":1.5707963267948966,"d":-3}])"},
      {"_Nuv_Geometric_Pt2LnDistance_", R"([{"x":3,"y":5},{"a":0,"d":5}])",
       R"([0,{"x":3,"y":5},{"a":1.5707963267948966,"d":-3}])"},
      {"_Nuv_Geometric_Pt2LnDistance_", R"([{"x":3,"y":5},{"a":0,"d":"Infinity"}])",
       R"([0,{"x":0,"y":0},{"a":1.5707963267948966,"d":-3}])"},
      {"_Nuv_Geometric_Pts2LnDistance_",
       R"([[{"x":9,"y":7},{"x":0,"y":3},{"x":1,"y":"NaN"},{"x":5,"y":1}],{"a":0,"d":5}])",
       R"([[2,2,"NaN",4],2,4,0,3])"},
      {"_Nuv_Geometric_Pts2LnDistance_", R"([[],{"a":0,"d":5}])",
       "[[],1.7976931348623157e+308,-1.7976931348623157e+308,-1,-1]"},
      {"_Nuv_Geometric_Pts2LnDistance_", R"([[{"x":0,"y":"Infinity"}],{"a":0,"d":5}])",
       R"([["Infinity"],1.7976931348623157e+308,"Infinity",-1,0])"},
      {"_Nuv_Geometric_CPts2LnDistInf_",
       R"([{"a":0,"d":5},{"x":9,"y":8},{"x":0,"y":3},{"x":0,"y":7}])", "[[3,2,2],2,3,1,0]"},
      {"_Nuv_Geometric_PtRotate_", R"([{"x":2,"y":1},1.5707963267948966,{"x":1,"y":1}])",
       R"([{"x":1,"y":2}])"},
      {"_Nuv_Geometric_AngleBis_", R"([{"x":9,"y":2},{"x":1,"y":2},{"x":-3,"y":2}])",
       R"([{"a":1.5707963267948966,"d":-1}])"},
      {"_Nuv_Geometric_LnBis_", R"([{"a":0,"d":2},{"a":0,"d":6}])", R"([{"a":0,"d":4}])"},
      {"_Nuv_Geometric_Ln2LnDist_",
       R"([{"a":0,"d":2},{"a":0,"d":-6},{"a":1.5707963267948966,"d":5}])", "[8]"},
      {"_Nuv_Geometric_LnPerp_", R"([{"a":0,"d":99},{"x":3,"y":4}])",
       R"([{"a":1.5707963267948966,"d":-3}])"},
      {"_Nuv_Geometric_LnPara_", R"([{"a":0,"d":99},{"x":3,"y":4}])", R"([{"a":0,"d":4}])"},
      {"_Nuv_Geometric_LnInters_", R"([{"a":0,"d":4},{"a":1.5707963267948966,"d":-3}])",
       R"([{"x":3,"y":4}])"},
      {"_Nuv_Geometric_LnNorm_", R"([{"a":-1.5707963267948966,"d":3}])",
       R"([{"a":1.5707963267948966,"d":-3}])"},
      {"_Nuv_Geometric_NormAngle_", "[-1.5707963267948966]", "[1.5707963267948966]"},
      {"_Nuv_Geometric_NormAngle_", R"(["Infinity"])", R"(["NaN"])"},
      {"_Nuv_Geometric_CircBndBox_", R"([10,{"x":0,"y":1}])",
       R"([{"x":-10,"y":-9},{"x":10,"y":-9},{"x":-10,"y":11},{"x":10,"y":11}])"},
      {"_Nuv_Geometric_PtToXY_", R"([{"x":3,"y":4}])", "[3,4]"},
      {"_Nuv_Geometric_XYToPt_", "[3,4]", R"([{"x":3,"y":4}])"},
      {"_Nuv_Geometric_LnToAD_", R"([{"a":3,"d":4}])", "[3,4]"},
      {"_Nuv_Geometric_ADToLn_", "[3,4]", R"([{"a":3,"d":4}])"},
      {"_Nuv_Geometric_MiddlePt_", R"([{"x":3,"y":4},{"x":6,"y":-4}])", R"([{"x":4.5,"y":0}])"},
      {"_Nuv_Geometric_LnToLnAngle_", R"([{"a":0.5,"d":4},{"a":0.25,"d":0}])", "[0.25]"},
      {"_Nuv_Geometric_CircleLineIntersect_", R"([{"x":3,"y":4},5,{"a":0,"d":7}])",
       R"([2,{"x":-1,"y":7},{"x":7,"y":7}])"},
      {"_Nuv_Geometric_CircleLineIntersect_", R"([{"x":3,"y":4},5,{"a":0,"d":9}])",
       R"([1,{"x":3,"y":9},{"x":0,"y":0}])"},
      {"_Nuv_Geometric_CircleLineIntersect_", "[]", R"([0,{"x":0,"y":0},{"x":0,"y":0}])"},
      {"_Nuv_Geometric_TwoPtsToLn_", R"([{"x":9,"y":4},{"x":3,"y":4}])", R"([{"a":0,"d":4}])"},
      {"_Nuv_Geometric_CMakeAnchor_", "[]", R"([{"x":50,"y":0},{"x":-50,"y":0}])"},
      {"_Nuv_Geometric_MeanPt_", R"([[{"x":1,"y":2},{"x":2,"y":6}]])", R"([{"x":1.5,"y":4}])"},
      {"_Nuv_Geometric_MeanPtInf_", R"([{"x":1,"y":2},{"x":2,"y":6}])", R"([{"x":1.5,"y":4}])"},
      {"_Nuv_Geometric_PtsToGrid_",
       R"([[{"x":0,"y":0},{"x":10,"y":0},{"x":0,"y":20},{"x":10,"y":20}],3,2])",
       R"([[{"x":0,"y":0},{"x":5,"y":0},{"x":10,"y":0},{"x":0,"y":10},{"x":5,"y":10},)"
       R"({"x":10,"y":10}]])"},
      {"_Nuv_Geometric_PtsToGrid_",
       R"([[{"x":10.7,"y":2},{"x":0.5,"y":2},{"x":20.2,"y":2},{"x":5.5,"y":2}],2.9,2])",
       R"([[{"x":5,"y":2},{"x":10.7,"y":2},{"x":5,"y":2},{"x":10.7,"y":2}]])"},
      {"_Nuv_Geometric_PtsToGrid_",  // -3e9 moves forward; 4.5 never does
       R"([[{"x":1,"y":-1e9},{"x":9,"y":-3e9},{"x":4.5,"y":-1e9},{"x":0,"y":-3e9}],2,2])",
       R"([[{"x":1,"y":-2147483648},{"x":4,"y":-2147483648},)"
       R"({"x":1,"y":-1000000000},{"x":4,"y":-1000000000}]])"},
  };
  CheckRows(rows);
}

// What fails writes its results all the same, but for the means; what complains about a grid does
// not fail.
TEST(Geometric, Failures) {
  const TranscriptRow rows[] = {
      {R"({"instr": "_Nuv_Geometric_AngleBis_", "prev": [{"a": 7, "d": 7}]})",
       R"({"status": 3, "out": [{"a": 0, "d": 0}]})"},
      {R"({"instr": "_Nuv_Geometric_Ln2LnDist_", "prev": [7]})", R"({"status": 3, "out": [0]})"},
      {R"({"instr": "_Nuv_Geometric_LnInters_", "prev": [{"x": 7, "y": 7}]})",
       R"({"status": 3, "out": [{"x": 0, "y": 0}]})"},
      {R"({"instr": "_Nuv_Geometric_CircInTriangle_", "prev": [{"x": 7, "y": 7}, 7]})",
       R"({"status": 3, "out": [{"x": 0, "y": 0}, 0], "annotations": [{"op": "circle",
           "center": {"x": 0, "y": 0}, "radius": 0, "fill": false, "label": null, "color": 0}]})"},
      {R"({"instr": "_Nuv_Geometric_MeanPt_", "prev": [{"x": 7, "y": 7}]})",
       R"({"status": 3, "out": [{"x": 7, "y": 7}], "messages": [{"severity": 2,
           "source": "MeanPt", "text": "Algorithm needs at least one point."}]})"},
      {R"({"instr": "_Nuv_Geometric_MeanPtInf_", "count": 0, "prev": [{"x": 7, "y": 7}]})",
       R"({"status": 3, "out": [{"x": 7, "y": 7}]})"},
      {R"({"instr": "_Nuv_Geometric_CPts2LnDistInf_", "count": 1, "prev": [[7]]})",
       R"({"status": 0, "out": [[], 1.7976931348623157e+308, -1.7976931348623157e+308, -1, -1]})"},
      {R"({"instr": "_Nuv_Geometric_PtsToGrid_", "prev": [[{"x": 7, "y": 7}]]})",
       R"({"status": 0, "out": [[{"x": 7, "y": 7}]], "messages": [{"severity": 2,
           "source": "PtsToGrid", "text": "Boundaries array size must be 4."}]})"},
      {R"({"instr": "_Nuv_Geometric_PtsToGrid_", "prev": [[{"x": 7, "y": 7}]],
           "in": [[{"x":0,"y":0},{"x":1,"y":0},{"x":0,"y":2},{"x":1,"y":2}], 2, 1.9]})",
       R"({"status": 0, "out": [[{"x": 7, "y": 7}]], "messages": [{"severity": 2,
           "source": "PtsToGrid", "text": "Grid sizes must be greater than 1."}]})"},
      {R"({"instr": "_Nuv_Geometric_PtsToGrid_", "prev": [[{"x": 7, "y": 7}]],
           "in": [[{"x":0,"y":0},{"x":1,"y":0},{"x":0,"y":2},{"x":1,"y":2}], 2147483647,
                  2147483647]})",
       R"({"status": 3, "out": [[{"x": 7, "y": 7}]]})"},
  };
  CheckTranscript(rows);
}

TEST(Geometric, SomeDrawWhatTheyFound) {
  const TranscriptRow rows[] = {
      {R"({"instr": "_Nuv_Geometric_CircInTriangle_",
           "in": [{"x": 0, "y": 0}, {"x": 4, "y": 0}, {"x": 0, "y": 3}]})",
       R"({"status": 0, "out": [{"x": 1, "y": 1}, 2], "annotations": [{"op": "circle",
           "center": {"x": 1, "y": 1}, "radius": 1, "fill": false, "label": null, "color": 0}]})"},
      {R"({"instr": "_Nuv_Geometric_Pt2LnDistance_", "const": [true],
           "in": [{"x": 3, "y": 2.8125}, {"a": 0, "d": 3}]})",  // a tie, rounded to even
       R"({"status": 0, "out": [0.1875, {"x": 3, "y": 3}, {"a": 1.5707963267948966, "d": -3}],
           "annotations": [{"op": "segment", "start": {"x": 3, "y": 2.8125},
           "end": {"x": 3, "y": 3}, "label": "0.188", "color": 0}]})"},
      {R"({"instr": "_Nuv_Geometric_Pt2LnDistance_", "const": [true],
           "in": [{"x": 0, "y": 1e20}, {"a": 0, "d": 0}]})",
       R"({"status": 0, "out": [1e20, {"x": 0, "y": 0}, {"a": 1.5707963267948966, "d": 0}],
           "annotations": [{"op": "segment", "start": {"x": 0, "y": 1e20},
           "end": {"x": 0, "y": 0}, "label": "100000000000000000000.000",
           "color": 0}]})"},
  };
  CheckTranscript(rows);
}

// Angles that stand alone have the preferred unit; those inside lines are radians.
TEST(Geometric, Degrees) {
  const TranscriptRow rows[] = {
      {R"({"set": {"angleUnit": "degrees"}})", "{}"},
      {R"({"instr": "_Nuv_Geometric_Pt2PtDistPitch_", "in": [{"x": 1, "y": 1}, {"x": 1, "y": 5}]})",
       R"({"status": 0, "out": [90, 4]})"},
      {R"({"instr": "_Nuv_Geometric_PtRotate_", "in": [{"x": 2, "y": 1}, 90, {"x": 1, "y": 1}]})",
       R"({"status": 0, "out": [{"x": 1, "y": 2}]})"},
      {R"({"instr": "_Nuv_Geometric_NormAngle_", "in": [-90]})", R"({"status": 0, "out": [90]})"},
      {R"({"instr": "_Nuv_Geometric_NormAngle_", "in": [180]})", R"({"status": 0, "out": [0]})"},
      {R"({"instr": "_Nuv_Geometric_LnToLnAngle_",
           "in": [{"a": 1.5707963267948966, "d": 0}, {"a": 0, "d": 0}]})",
       R"({"status": 0, "out": [90]})"},
      {R"({"instr": "_Nuv_Geometric_LnToAD_", "in": [{"a": 3.141592653589793, "d": 2}]})",
       R"({"status": 0, "out": [180, 2]})"},
      {R"({"instr": "_Nuv_Geometric_ADToLn_", "in": [180, 2]})",
       R"({"status": 0, "out": [{"a": 3.141592653589793, "d": 2}]})"},
      {R"({"instr": "_Nuv_Geometric_CMakeAnchor_", "in": [{"x": 1, "y": 2}, 180, 5]})",
       R"({"status": 0, "out": [{"x": -4, "y": 2.0000000000000004}, {"x": 6, "y": 1.9999999999999993}]})"},
      {R"({"instr": "_Nuv_Geometric_LnPerp_", "in": [{"a": 0, "d": 9}, {"x": 3, "y": 4}]})",
       R"({"status": 0, "out": [{"a": 1.5707963267948966, "d": -3}]})"},
      {R"({"set": {"angleUnit": "radians"}})", "{}"},
  };
  CheckTranscript(rows);
}

/// The grid as its rule says it, point by point.
std::vector<CNuvPoint> PlainGrid(std::vector<double> x, std::vector<double> y, int nx, int ny) {
  for (std::vector<double>* values : {&x, &y}) {
    for (int i = 1; i < 4; ++i) {
      for (int j = i; j > 0 && (*values)[j - 1] > (*values)[j]; --j) {
        std::swap((*values)[j - 1], (*values)[j]);
        (*values)[j - 1] = NuvTruncate((*values)[j - 1]);
      }
    }
  }
  const double sx = (x[2] - x[1]) / (nx - 1);
  const double sy = (y[2] - y[1]) / (nx - 1);
  std::vector<CNuvPoint> grid = {CNuvPoint(x[1], y[1])};
  for (int k = 1; k < nx * ny; ++k) {
    grid.emplace_back(x[1] + (k % nx) * sx, y[1] + std::floor(static_cast<double>(k) / nx) * sy);
  }
  return grid;
}

TEST(Geometric, GridsAgreeWithTheirRule) {
  const nuvhost::CatalogueEntry& instruction = BuiltCatalogue().Find("_Nuv_Geometric_PtsToGrid_");
  nuvhost::Services services;
  nuvhost::CallContext call(*instruction.descriptor, services);
  std::mt19937_64 random(8);
  for (int round = 0; round < RandomRounds(2000); ++round) {
    auto& corners = static_cast<CNuvPointVector&>(call.inputs[0]);
    corners.Resize(4);
    std::vector<double> x(4);
    std::vector<double> y(4);
    for (std::size_t i = 0; i < 4; ++i) {
      x[i] = AnyNumber(random);
      y[i] = AnyNumber(random);
      corners[i] = CNuvPoint(x[i], y[i]);
    }
    const int nx = 2 + static_cast<int>(random() % 9);
    const int ny = 2 + static_cast<int>(random() % 9);
    call.inputs[1] = nx;
    call.inputs[2] = ny + 0.5;
    ASSERT_EQ(call.Execute(*instruction.prototype), 0);
    CNuvPointVector expected;
    for (const CNuvPoint& point : PlainGrid(x, y, nx, ny)) expected.PushBack(point);
    CNuvObject object;
    object = expected;
    ASSERT_EQ(nuvhost::ToJson(call.results[0]).dump(), nuvhost::ToJson(object).dump());
  }
}

}  // namespace
