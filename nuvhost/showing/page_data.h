// PageData: what the report page shows, from wherever it comes: a run or results files.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "nuvhost/reading/limits.h"
#include "nuvhost/running/step_runner.h"
#include "nuvhost/showing/step_graph.h"

namespace nuvhost {

/// A row of the report that has limits. All texts here are UTF-8, and escaped where they are shown.
struct Characteristic {
  std::string label;
  std::string unit;
  std::optional<int> decimals = {};
  Limits limits = {};
  bool operator==(const Characteristic&) const = default;
};

/// What came of a characteristic in one part: its number, 1 and 0 for yes and no; nothing where
/// there is none, which is neither good nor bad.
struct PartValue {
  std::optional<double> number;
  bool holds = true;
};

struct PartResult {
  std::string name;
  RunOutcome::State state = RunOutcome::State::kGood;
  std::vector<std::string> errors;
  std::vector<PartValue> values;  ///< one for each characteristic
  std::string picture;            ///< as the page embeds it; empty for none
};

/// Of a characteristic's finite numbers; what they are too few for, or do not have, is nothing.
struct Statistics {
  std::size_t count = 0;
  std::size_t good = 0;  ///< parts
  std::size_t bad = 0;   ///< parts, also with numbers that are not finite
  std::optional<double> mean;
  std::optional<double> deviation;  ///< standard deviation of the sample, by n - 1
  std::optional<double> least;
  std::optional<double> most;
  std::optional<double> cp;   ///< only between two limits
  std::optional<double> cpk;  ///< to the nearer limit
};

struct PageData {
  std::string title;
  std::string program;
  std::vector<Characteristic> characteristics;
  std::vector<PartResult> parts;
  std::vector<Statistics> statistics;  ///< one for each characteristic, by Summarise
  std::vector<GraphNode> graph;        ///< of the program; empty where it is not known
  std::vector<std::string> shared;     ///< elements that pictures refer to: images and filters

  /// Whether a part is not good, and told of first.
  static bool IsNotGood(const PartResult& part);
  /// Makes a picture that DrawSvg drew one for the page: an image is held once, however many
  /// pictures lie over it.
  std::string Embedded(std::string svg);
};

}  // namespace nuvhost
