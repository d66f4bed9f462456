// Geometric instructions: their rules and their units.

#include "tests/instr/table.h"

namespace {

TEST(Geometric, Rows) {
  const InstructionRow rows[] = {
      {"_Nuv_Geometric_PointSet_", R"([["NaN" -0.0]])", R"([["NaN" -0.0]])"},
      {"_Nuv_Geometric_LineSet_", "[(9 -1)]", "[(9 -1)]"},
      {"_Nuv_Geometric_Pt2PtDistance_", "[[1 1],[4 5]]", "[5,3,4]"},
      {"_Nuv_Geometric_Pt2PtDistance_", "[[4 5],[1 1]]", "[5,-3,-4]"},
      {"_Nuv_Geometric_PtToPtsDistance_", "[[4 5],[[1 1],[4 6]]]", "[[5,1],[-3,0],[-4,1]]"},
      {"_Nuv_Geometric_PtToPtsDistance_", "[[4 5],[]]", "[[],[],[]]"},
      {"_Nuv_Geometric_PtsToPtsDistance_", "[[[4 5]],[[1 1]]]", "[[5],[3],[4]]"},
      {"_Nuv_Geometric_PtsToPtsDistance_", "[[[4 5]],[[1 1],[0 0]]]", "[[5],[3],[4]]"},
      {"_Nuv_Geometric_Pt2PtDistPitch_", "[[1 1],[1 5]]", "[1.5707963267948966,4]"},
      {"_Nuv_Geometric_Pt2LnDistance_", "[[3 9],(0 5)]", "[4,[3 5],(1.5707963267948966 -3)]"},
      {"_Nuv_Geometric_Pt2LnDistance_", "[[3 5],(0 5)]", "[0,[3 5],(1.5707963267948966 -3)]"},
      {"_Nuv_Geometric_Pt2LnDistance_", R"([[3 5],(0 "Infinity")])",
       "[0,[0 0],(1.5707963267948966 -3)]"},
      {"_Nuv_Geometric_Pts2LnDistance_", R"([[[9 7],[0 3],[1 "NaN"],[5 1]],(0 5)])",
       R"([[2,2,"NaN",4],2,4,0,3])"},
      {"_Nuv_Geometric_Pts2LnDistance_", "[[],(0 5)]",
       "[[],1.7976931348623157e+308,-1.7976931348623157e+308,-1,-1]"},
      {"_Nuv_Geometric_Pts2LnDistance_", R"([[[0 "Infinity"]],(0 5)])",
       R"([["Infinity"],1.7976931348623157e+308,"Infinity",-1,0])"},
      {"_Nuv_Geometric_CPts2LnDistInf_", "[(0 5),[9 8],[0 3],[0 7]]", "[[3,2,2],2,3,1,0]"},
      {"_Nuv_Geometric_PtRotate_", "[[2 1],1.5707963267948966,[1 1]]", "[[1 2]]"},
      {"_Nuv_Geometric_AngleBis_", "[[9 2],[1 2],[-3 2]]", "[(1.5707963267948966 -1)]"},
      {"_Nuv_Geometric_LnBis_", "[(0 2),(0 6)]", "[(0 4)]"},
      {"_Nuv_Geometric_Ln2LnDist_", "[(0 2),(0 -6),(1.5707963267948966 5)]", "[8]"},
      {"_Nuv_Geometric_LnPerp_", "[(0 99),[3 4]]", "[(1.5707963267948966 -3)]"},
      {"_Nuv_Geometric_LnPara_", "[(0 99),[3 4]]", "[(0 4)]"},
      {"_Nuv_Geometric_LnInters_", "[(0 4),(1.5707963267948966 -3)]", "[[3 4]]"},
      {"_Nuv_Geometric_LnNorm_", "[(-1.5707963267948966 3)]", "[(1.5707963267948966 -3)]"},
      {"_Nuv_Geometric_NormAngle_", "[-1.5707963267948966]", "[1.5707963267948966]"},
      {"_Nuv_Geometric_NormAngle_", R"(["Infinity"])", R"(["NaN"])"},
      {"_Nuv_Geometric_CircBndBox_", "[10,[0 1]]", "[[-10 -9],[10 -9],[-10 11],[10 11]]"},
      {"_Nuv_Geometric_PtToXY_", "[[3 4]]", "[3,4]"},
      {"_Nuv_Geometric_XYToPt_", "[3,4]", "[[3 4]]"},
      {"_Nuv_Geometric_LnToAD_", "[(3 4)]", "[3,4]"},
      {"_Nuv_Geometric_ADToLn_", "[3,4]", "[(3 4)]"},
      {"_Nuv_Geometric_MiddlePt_", "[[3 4],[6 -4]]", "[[4.5 0]]"},
      {"_Nuv_Geometric_LnToLnAngle_", "[(0.5 4),(0.25 0)]", "[0.25]"},
      {"_Nuv_Geometric_CircleLineIntersect_", "[[3 4],5,(0 7)]", "[2,[-1 7],[7 7]]"},
      {"_Nuv_Geometric_CircleLineIntersect_", "[[3 4],5,(0 9)]", "[1,[3 9],[0 0]]"},
      {"_Nuv_Geometric_CircleLineIntersect_", "[]", "[0,[0 0],[0 0]]"},
      {"_Nuv_Geometric_TwoPtsToLn_", "[[9 4],[3 4]]", "[(0 4)]"},
      {"_Nuv_Geometric_CMakeAnchor_", "[]", "[[50 0],[-50 0]]"},
      {"_Nuv_Geometric_MeanPt_", "[[[1 2],[2 6]]]", "[[1.5 4]]"},
      {"_Nuv_Geometric_MeanPtInf_", "[[1 2],[2 6]]", "[[1.5 4]]"},
      {"_Nuv_Geometric_PtsToGrid_", "[[[0 0],[10 0],[0 20],[10 20]],3,2]",
       "[[[0 0],[5 0],[10 0],[0 10],[5 10],[10 10]]]"},
      {"_Nuv_Geometric_PtsToGrid_", "[[[10.7 2],[0.5 2],[20.2 2],[5.5 2]],2.9,2]",
       "[[[5 2],[10.7 2],[5 2],[10.7 2]]]"},
      {"_Nuv_Geometric_PtsToGrid_",  // -3e9 moves forward; 4.5 never does
       "[[[1 -1e9],[9 -3e9],[4.5 -1e9],[0 -3e9]],2,2]",
       "[[[1 -2147483648],[4 -2147483648],[1 -1000000000],[4 -1000000000]]]"},
      {"_Nuv_Geometric_PtsToGrid_",  // an infinite step
       "[[[-1e308 2],[-1e308 2],[1e308 2],[1e308 2]],2,2]",
       R"([[[-1e+308 2],["Infinity" 2],["NaN" 2],["Infinity" 2]]])"},
  };
  CheckRows(rows);
}

// What fails writes its results all the same, but for the means; what complains about a grid does
// not fail.
TEST(Geometric, Failures) {
  const TranscriptRow rows[] = {
      {R"({"instr": "_Nuv_Geometric_AngleBis_", "prev": [(7 7)]})",
       R"({"status": 3, "out": [(0 0)]})"},
      {R"({"instr": "_Nuv_Geometric_Ln2LnDist_", "prev": [7]})", R"({"status": 3, "out": [0]})"},
      {R"({"instr": "_Nuv_Geometric_LnInters_", "prev": [[7 7]]})",
       R"({"status": 3, "out": [[0 0]]})"},
      {R"({"instr": "_Nuv_Geometric_CircInTriangle_", "prev": [[7 7], 7]})",
       R"({"status": 3, "out": [[0 0], 0], "annotations": [{"op": "circle", "center": [0 0],
           "radius": 0, "fill": false, "label": null, "color": 0}]})"},
      {R"({"instr": "_Nuv_Geometric_MeanPt_", "prev": [[7 7]]})",
       R"({"status": 3, "out": [[7 7]], "messages": [{"severity": 2, "source": "MeanPt",
           "text": "Algorithm needs at least one point."}]})"},
      {R"({"instr": "_Nuv_Geometric_MeanPtInf_", "count": 0, "prev": [[7 7]]})",
       R"({"status": 3, "out": [[7 7]]})"},
      {R"({"instr": "_Nuv_Geometric_CPts2LnDistInf_", "count": 1, "prev": [[7]]})",
       R"({"status": 0, "out": [[], 1.7976931348623157e+308, -1.7976931348623157e+308, -1, -1]})"},
      {R"({"instr": "_Nuv_Geometric_PtsToGrid_", "prev": [[[7 7]]]})",
       R"({"status": 0, "out": [[[7 7]]], "messages": [{"severity": 2, "source": "PtsToGrid",
           "text": "Boundaries array size must be 4."}]})"},
      {R"({"instr": "_Nuv_Geometric_PtsToGrid_", "prev": [[[7 7]]],
           "in": [[[0 0],[1 0],[0 2],[1 2]], 2, 1.9]})",
       R"({"status": 0, "out": [[[7 7]]], "messages": [{"severity": 2, "source": "PtsToGrid",
           "text": "Grid sizes must be greater than 1."}]})"},
      {R"({"instr": "_Nuv_Geometric_PtsToGrid_", "prev": [[[7 7]]],
           "in": [[[0 0],[1 0],[0 2],[1 2]], 2147483647, 2147483647]})",
       R"({"status": 3, "out": [[[7 7]]]})"},
  };
  CheckTranscript(rows);
}

TEST(Geometric, SomeDrawWhatTheyFound) {
  const TranscriptRow rows[] = {
      {R"({"instr": "_Nuv_Geometric_CircInTriangle_", "in": [[0 0], [4 0], [0 3]]})",
       R"({"status": 0, "out": [[1 1], 2], "annotations": [{"op": "circle", "center": [1 1],
           "radius": 1, "fill": false, "label": null, "color": 0}]})"},
      {R"({"instr": "_Nuv_Geometric_Pt2LnDistance_", "const": [true], "in": [[3 2.8125], (0 3)]})",  // a tie
       R"({"status": 0, "out": [0.1875, [3 3], (1.5707963267948966 -3)],
           "annotations": [{"op": "segment", "start": [3 2.8125], "end": [3 3], "label": "0.188",
           "color": 0}]})"},
      {R"({"instr": "_Nuv_Geometric_Pt2LnDistance_", "const": [true], "in": [[0 1e20], (0 0)]})",
       R"({"status": 0, "out": [1e20, [0 0], (1.5707963267948966 0)],
           "annotations": [{"op": "segment", "start": [0 1e20], "end": [0 0],
           "label": "100000000000000000000.000", "color": 0}]})"},
  };
  CheckTranscript(rows);
}

// Angles that stand alone have the preferred unit; those inside lines are radians.
TEST(Geometric, Degrees) {
  const InstructionRow rows[] = {
      {"_Nuv_Geometric_Pt2PtDistPitch_", "[[1 1],[1 5]]", "[90,4]"},
      {"_Nuv_Geometric_PtRotate_", "[[2 1],90,[1 1]]", "[[1 2]]"},
      {"_Nuv_Geometric_NormAngle_", "[-90]", "[90]"},
      {"_Nuv_Geometric_NormAngle_", "[180]", "[0]"},
      {"_Nuv_Geometric_LnToLnAngle_", "[(1.5707963267948966 0),(0 0)]", "[90]"},
      {"_Nuv_Geometric_LnToAD_", "[(3.141592653589793 2)]", "[180,2]"},
      {"_Nuv_Geometric_ADToLn_", "[180,2]", "[(3.141592653589793 2)]"},
      {"_Nuv_Geometric_CMakeAnchor_", "[[1 2],180,5]",
       "[[-4 2.0000000000000004],[6 1.9999999999999993]]"},
      {"_Nuv_Geometric_LnPerp_", "[(0 9),[3 4]]", "[(1.5707963267948966 -3)]"},
  };
  nuvhost::ExecSession session(BuiltCatalogue());
  Exec(session, R"({"set": {"angleUnit": "degrees"}})");
  CheckRows(rows);
  Exec(session, R"({"set": {"angleUnit": "radians"}})");
}

}  // namespace
