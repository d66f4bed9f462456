// Geometric instructions: what they draw, and what a failure leaves.

#include "tests/instr/table.h"

namespace {

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
      {R"({"instr": "_Nuv_Geometric_PtsToGrid_", "prev": [[[7 7]]],
           "in": [[[0 0],[1 0],[0 2],[1 2]], 2, 1.9]})",
       R"({"status": 0, "out": [[[7 7]]], "messages": [{"severity": 2, "source": "PtsToGrid",
           "text": "Grid sizes must be greater than 1."}]})"},
      {R"({"instr": "_Nuv_Geometric_PtsToGrid_", "in": [[[0 0],[1 0],[0 2],[1 2]], 1, 2]})",
       R"({"status": 0, "out": [[]], "messages": [{"severity": 2, "source": "PtsToGrid",
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

}  // namespace
