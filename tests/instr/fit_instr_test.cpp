#include <algorithm>
#include <cmath>
#include <random>
#include <utility>
#include <vector>

#include "host/geometry.h"
#include "tests/instr/random_rounds.h"
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

/// A text in which [x y] stands for a point.
std::string WithPoints(const std::string& text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t blank = text.find(' ', i);
    const std::size_t end = text.find(']', i);
    const bool point = text[i] == '[' && blank < end && text.find_first_of("[,", i + 1) > end;
    if (!point) {
      result += text[i];
      continue;
    }
    result += R"({"x":)" + text.substr(i + 1, blank - i - 1) + R"(,"y":)" +
              text.substr(blank + 1, end - blank - 1) + "}";
    i = end;
  }
  return result;
}

/// A call on results that hold something, and all of its answer.
struct FitRow {
  const char* identifier;
  const char* inputs;
  int status;
  const char* outputs;
  const char* message = "";
};

const char* const kCircleBefore = "[7,7,7,[7 7],[7 7],[7 7],[7 7],[7 7],[[7 7]],[[7 7]],7,7,7,7,7]";
const char* const kLineBefore = R"([7,{"a":7,"d":7},[[7 7]],[[7 7]]])";

TEST(FitInstructions, Rows) {
  const char* const no_line = R"([0,{"a":0,"d":0},[],[]])";
  const char* const no_circle = "[0,0,0,[0 0],[0 0],[0 0],[0 0],[0 0],[],[],0,0,0,0,0]";
  const char* const untouched = "[0,0,0,[0 0],[0 0],[0 0],[0 0],[0 0],[[7 7]],[[7 7]],0,0,0,0,0]";
  const char* const round =
      "[2,4,0,[5 5],[4 4],[6 4],[6 6],[4 6],[],[[6 5],[5 6],[4 5],[5 4]],2,2,100,0,0]";
  const char* const negative = "Negative tolerance is not a valid input.";
  const char* const few = "Not enough points in the biggest cluster; increase linear tolerance.";
  const FitRow rows[] = {
      {kCircle, "[0,[[6 5],[5 6],[4 5],[5 4]]]", 0, round},
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

      {kLine, "[0,[[1 0],[0 1],[-1 0],[0 1]]]", 0,
       R"([4,{"a":0,"d":0.5},[],[[1 0],[0 1],[-1 0],[0 1]]])"},
      {kLine, "[20.9,[[0 2],[1 2],[5 9],[2 2],[3 2]]]", 0,
       R"([4,{"a":0,"d":2},[[5 9]],[[0 2],[1 2],[2 2],[3 2]]])"},
      // The line does not report the points that preprocessing removes.
      {kLine, "[0,[[0 2],[1 2],[50 90],[2 2],[3 2]],true,5]", 0,
       R"([4,{"a":0,"d":2},[],[[0 2],[1 2],[2 2],[3 2]]])"},
      {kLine, "[0,[],true,1]", 0, no_line},
      {kLine, "[0,[],true,-1]", 3, no_line, negative},
      {kLine, "[0,[[1 1]],true,1]", 3, no_line},
      {kLine, "[0,[[1 1],[1 1]]]", 3, no_line},
      {kLineInf, "[0,false,1,[0 2],[1 2]]", 0, R"([2,{"a":0,"d":2},[],[[0 2],[1 2]]])"},
      {kLineInf, "[0,true,-1,[0 2],[1 2]]", 3, no_line, negative},

      {kRake, "[0,[[0 0],[1 0],[2 0],[3 5],[4 0]],3,0.1]", 0,
       R"([3,{"a":0,"d":0},[],[[0 0],[1 0],[2 0]]])"},
      // Seen from the end the run is straighter; its points come from there.
      {kRake, "[0,[[0 3],[1 2],[2 2],[3 2],[4 2]],3,0.1]", 0,
       R"([4,{"a":0,"d":2},[],[[4 2],[3 2],[2 2],[1 2]]])"},
      {kRake, "[100,[[0 2],[1 2],[2 2]],3,0.1]", 0, no_line},
      {kRake, "[0,[],3,0.1]", 0, no_line},
      {kRake, "[0,[[1 1]],3,0.1]", 0, no_line, few},
      {kRake, "[0,[[1 1],[2 2]],3,0.1]", 0, no_line, few},
      {kRake, "[0,[],-1,-1]", 0, no_line, "Negative linear tolerance is not a valid input."},
      {kRake, "[0,[],1,-1]", 0, no_line, "Negative angular tolerance is not a valid input."},

      {kLineMaxOut, "[[[0 1],[10 -1],[20 -1],[30 1],[50 99]],20]", 0,
       R"([4,-1,1,[10 -1],[0 1],{"a":0,"d":0},[[50 99]]])"},
      {kLineMaxOut, "[[],0]", 3, R"([0,0,0,[0 0],[0 0],{"a":0,"d":0},[]])"},
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
                         : max_out ? R"([7,7,7,[7 7],[7 7],{"a":7,"d":7},[[7 7]]])"
                         : angle   ? "[7]"
                                   : kLineBefore;
    const Json answer =
        Exec(session, std::string(R"({"instr":")") + row.identifier + R"(","in":)" +
                          WithPoints(row.inputs) + R"(,"prev":)" + WithPoints(before) + "}");
    ASSERT_FALSE(answer.contains("error")) << answer.dump();
    EXPECT_EQ(answer["status"], row.status);
    // Numbers compare by value, so that the sign of a zero does not count.
    EXPECT_EQ(answer["out"], Json::parse(WithPoints(row.outputs)));
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
    const char* identifier;
    const char* inputs;
    const char* center;
    int radius;
    int color;  // -1: not drawn
  } rows[] = {
      {kCircle, "[0,[[6 5],[5 6],[4 5],[5 4]]]", "[5 5]", 1, 65535},
      {kCircle, "[0,[[6 5],[5 6],[4 5],[5 4]],false,1,0]", "[5 5]", 1, 0},
      {kCircle, "[0,[[6 5],[5 6],[4 5],[5 4]],false,1,-1]", "[5 5]", 1, -1},
      {kCircle, "[0,[[6 5],[5 6],[4 5],[5 4]],false,1,-0.9]", "[5 5]", 1, 0},
      {kCircle, "[0,[[6 5],[5 6],[4 5],[5 4]],false,1,4294967295]", "[5 5]", 1, -1},
      {kCircle, "[100,[[6 5],[5 6],[4 5],[5 4]],false,1,255]", "[0 0]", 0, 255},
      {kCircle, "[0,[[6 5],[5 6]]]", "[0 0]", 0, -1},
      {kCircle, "[0,[[6 5],[5 6],[4 5]],true,-1]", "[0 0]", 0, -1},
      {kCircleInf, "[0,false,1,8,[6 5],[5 6],[4 5],[5 4]]", "[5 5]", 1, 8},
  };
  nuvhost::ExecSession session(BuiltCatalogue());
  for (const auto& row : rows) {
    SCOPED_TRACE(row.inputs);
    const Json answer = Exec(session, std::string(R"({"instr":")") + row.identifier + R"(","in":)" +
                                          WithPoints(row.inputs) + "}");
    const Json circle = {{"op", "circle"},       {"center", Json::parse(WithPoints(row.center))},
                         {"radius", row.radius}, {"fill", false},
                         {"label", nullptr},     {"color", row.color}};
    EXPECT_EQ(answer.value("annotations", Json::array()),
              row.color < 0 ? Json::array() : Json::array({circle}));
  }
}

TEST(FitInstructions, AnglesComeAndGoInTheUsersUnit) {
  nuvhost::ExecSession session(BuiltCatalogue());
  const std::string rake = std::string(R"({"instr":")") + kRake + R"(","in":[0,)" +
                           WithPoints("[[0 0],[1 0],[2 0.2],[3 0.3]]");
  // From the first point the directions are 0, 0, 0.0997 and 0.0997 radians, from the last one
  // 3.042, 3.042, 2.993 and 3.042.
  EXPECT_EQ(Exec(session, rake + ",2,1]}")["out"][0], 4);
  Exec(session, R"({"set":{"angleUnit":"degrees"}})");
  EXPECT_EQ(Exec(session, rake + ",2,1]}")["out"][0], 3);
  EXPECT_EQ(Exec(session, rake + ",2,-0.001]}")["messages"][0]["text"],
            "Negative angular tolerance is not a valid input.");
  const std::string angle = std::string(R"({"instr":")") + kAngle + R"(","in":)";
  EXPECT_EQ(Exec(session, angle + WithPoints("[[0 0],[0 7]]}"))["out"][0], 90);
  EXPECT_NEAR(Exec(session, angle + WithPoints("[[1 1],[2 2]]}"))["out"][0], -45.0, 1e-13);
  Exec(session, R"({"set":{"angleUnit":"radians"}})");
}

// The selection of points by a plain reading of what it is: items with an index, clusters with
// members in the order in which they joined.
using Item = std::pair<double, std::size_t>;

std::vector<std::size_t> PlainLargestCluster(const std::vector<Item>& items, double tolerance) {
  std::vector<std::vector<Item>> clusters;
  const auto center = [](const std::vector<Item>& cluster) {
    double sum = 0.0;
    for (const Item& item : cluster) sum += item.first;
    return sum / static_cast<double>(cluster.size());
  };
  for (const Item& item : items) {
    std::vector<Item>* chosen = nullptr;
    double least = tolerance;
    for (auto& cluster : clusters) {
      const double distance = std::fabs(center(cluster) - item.first);
      if (distance < least) {
        least = distance;
        chosen = &cluster;
      }
    }
    if (chosen == nullptr) chosen = &clusters.emplace_back();
    chosen->push_back(item);
  }
  std::vector<std::size_t> members;
  for (const auto& cluster : clusters) {
    if (cluster.size() <= members.size()) continue;
    members.clear();
    for (const Item& item : cluster) members.push_back(item.second);
  }
  return members;
}

std::vector<CNuvPoint> Picked(const std::vector<CNuvPoint>& points,
                              const std::vector<std::size_t>& members) {
  std::vector<CNuvPoint> picked;
  for (const std::size_t member : members) picked.push_back(points[member]);
  return picked;
}

std::vector<CNuvPoint> PlainPreprocessed(const std::vector<CNuvPoint>& p, double tolerance) {
  std::vector<Item> gaps;
  for (std::size_t i = 0; i < p.size(); ++i) {
    double gap = INFINITY;
    if (i + 1 < p.size()) gap = std::min(gap, CNuvGeometry::Point2PointDist(p[i], p[i + 1]));
    if (i > 0) gap = std::min(gap, CNuvGeometry::Point2PointDist(p[i - 1], p[i]));
    gaps.emplace_back(gap, i);
  }
  return Picked(p, PlainLargestCluster(gaps, tolerance));
}

std::vector<CNuvPoint> PlainStraight(const std::vector<CNuvPoint>& r, double tolerance) {
  const std::size_t m = r.size();
  const auto angle = [&](std::size_t from, std::size_t to) {
    return std::fabs(CNuvGeometry::Points2Angle(r[from], r[to]));
  };
  std::vector<Item> front = {{angle(0, 1), 0}, {angle(0, 1), 1}};
  for (std::size_t i = 2; i < m; ++i) front.emplace_back(angle(0, i), i);
  std::vector<Item> back = {{angle(m - 1, m - 2), m - 1}, {angle(m - 1, m - 2), m - 2}};
  for (std::size_t i = m - 2; i-- > 0;) back.emplace_back(angle(m - 1, i), i);
  const auto a = PlainLargestCluster(front, tolerance);
  const auto b = PlainLargestCluster(back, tolerance);
  return Picked(r, b.size() > a.size() ? b : a);
}

Json ToJson(const std::vector<CNuvPoint>& points) {
  Json list = Json::array();
  for (const CNuvPoint& p : points) list.push_back({{"x", p.x}, {"y", p.y}});
  return list;
}

TEST(FitInstructions, SelectionIsThePlainOne) {
  nuvhost::ExecSession session(BuiltCatalogue());
  std::mt19937_64 random(1);
  for (int round = RandomRounds(300); round > 0; --round) {
    std::vector<CNuvPoint> points;
    for (std::size_t count = 2 + random() % 20; count > 0; --count) {
      const auto x = static_cast<double>(points.size());
      const bool off = random() % 4 == 0;
      points.emplace_back(x + static_cast<double>(random() % 8) / 16.0,
                          off ? static_cast<double>(random() % 32) / 4.0 - 4.0 : 0.125 * x);
    }
    const double tolerance = static_cast<double>(random() % 12) / 8.0;
    const double angle = static_cast<double>(random() % 8) / 16.0;
    const std::vector<CNuvPoint> kept = PlainPreprocessed(points, tolerance);
    const auto call = [&](const char* identifier, const Json& inputs) {
      return Exec(session, Json{{"instr", identifier}, {"in", inputs}}.dump());
    };
    const Json line = call(kLine, {0, ToJson(points), true, tolerance});
    if (line["status"] == 0) {
      EXPECT_EQ(line["out"][3], ToJson(kept));
    } else {
      EXPECT_LT(kept.size(), 2U);
    }
    const Json rake = call(kRake, {0, ToJson(points), tolerance, angle});
    EXPECT_EQ(rake["status"], 0);
    EXPECT_EQ(rake.contains("messages"), kept.size() < 3);
    if (kept.size() < 3) continue;
    const std::vector<CNuvPoint> straight = PlainStraight(kept, angle);
    if (straight.size() >= 2) {
      EXPECT_EQ(rake["out"][3], ToJson(straight));
    } else {
      EXPECT_EQ(rake["out"][0], 0);
    }
  }
}

/// The points used are an input, too.
class SharingContext final : public IXInstrContext {
 public:
  SharingContext(std::vector<CNuvObject>& inputs, std::size_t shared, std::size_t results,
                 std::size_t result)
      : results_(results) {
    for (CNuvObject& input : inputs) inputs_.push_back(&input);
    for (CNuvObject& value : results_) result_pointers_.push_back(&value);
    result_pointers_[result] = &inputs[shared];
  }
  void* DeletingDestructor(std::uint32_t /*flags*/) override { return this; }
  CNuvObject** ConstantValues() override { return nullptr; }
  CNuvObject** InputValues() override { return inputs_.data(); }
  std::int32_t InputCount() override { return static_cast<std::int32_t>(inputs_.size()); }
  CNuvObject** ResultValues() override { return result_pointers_.data(); }
  CNuvObject* ConstantValue(std::int32_t /*index*/) override { return nullptr; }
  CNuvObject* ResultValue(std::int32_t index) override {
    return result_pointers_[static_cast<std::size_t>(index)];
  }
  void MarkResult(std::int32_t /*index*/, std::int32_t /*value*/) override {}
  void* Service(std::int32_t /*number*/) override { return nullptr; }

 private:
  std::vector<CNuvObject> results_;
  std::vector<CNuvObject*> inputs_;
  std::vector<CNuvObject*> result_pointers_;
};

TEST(FitInstructions, ResultMayBeTheInput) {
  const std::vector<CNuvPoint> points = {{0, 2}, {1, 2}, {5, 9}, {2, 2}, {3, 2}};
  const struct {
    const char* identifier;
    std::size_t input, results, outliers;
  } rows[] = {{kLine, 1, 4, 2}, {kRake, 1, 4, 2}, {kLineMaxOut, 0, 7, 6}, {kCircle, 1, 15, 8}};
  for (const auto& row : rows) {
    const nuvhost::CatalogueEntry& instruction = *BuiltCatalogue().FindIdentifier(row.identifier);
    for (const bool used : {false, true}) {
      if (used && row.identifier == kLineMaxOut) continue;
      std::vector<CNuvObject> inputs;
      for (const ParameterRecord& input : instruction.descriptor->inputs) {
        inputs.push_back(input.default_value);
      }
      auto& array = static_cast<CNuvPointVector&>(inputs[row.input]);
      for (const CNuvPoint& point : points) array.PushBack(point);
      for (CNuvObject& input : inputs) {
        if (input.GetType() == NUV_OBJ_DOUBLE && &input != inputs.data()) input = 9.0;
      }
      inputs[row.identifier == kLineMaxOut ? 1 : 0] = 20.0;
      if (row.identifier == kCircle) inputs[4] = -1.0;
      SharingContext context(inputs, row.input, row.results, row.outliers + (used ? 1 : 0));
      EXPECT_EQ(static_cast<int>(instruction.prototype->Execute(&context)), 0);
      const auto& left = static_cast<const CNuvPointVector&>(std::as_const(inputs[row.input]));
      EXPECT_EQ(left.Size(), used ? 4U : 1U) << row.identifier;
    }
  }
}

}  // namespace
