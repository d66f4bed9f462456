// The graph of a program: its data and steps as boxes, and what flows between them.
#pragma once

#include <string>
#include <vector>

#include "nuvhost/reading/program.h"

namespace nuvhost {

/// A box of the graph.
struct GraphNode {
  std::string name;
  std::string detail;  ///< the instruction, or the data's file
  bool is_data = false;
  bool is_judged = false;         ///< a row with limits takes its value from here
  std::vector<std::size_t> from;  ///< earlier nodes that it takes something from
};

/// The data files that are used, and the steps in their order.
std::vector<GraphNode> GraphOf(const Program& program);

/// The graph as an SVG element for a page that styles its classes "edge", "node", "data", "judged",
/// "name" and "detail". Boxes stand in layers from left to right, each behind all that it takes
/// something from, ordered so that few lines cross (the barycentre method: Sugiyama, Tagawa and
/// Toda, 1981). Equal graphs give equal bytes.
std::string DrawGraph(const std::vector<GraphNode>& nodes);

}  // namespace nuvhost
