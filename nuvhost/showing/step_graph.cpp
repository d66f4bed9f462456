#include "nuvhost/showing/step_graph.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <numeric>

#include "nuvhost/showing/html_text.h"
#include "nuvhost/text/names.h"
#include "nuvhost/text/utf8.h"

namespace nuvhost {
namespace {

constexpr double kWidth = 168;
constexpr double kHeight = 46;
constexpr double kColumn = 232;  // from one layer's boxes to the next one's
constexpr double kGap = 14;
constexpr double kBorder = 4;
constexpr std::size_t kMostCharacters = 21;
constexpr int kSweeps = 12;

/// A text of few characters, cut off where it is longer.
std::string Shortened(const std::string& text) {
  std::size_t characters = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!BeginsCharacter(text[i]) || ++characters <= kMostCharacters) continue;
    return HtmlText(text.substr(0, i)) + "\u2026";
  }
  return HtmlText(text);
}

/// A place in a layer: a node's, or one that a line passes on its way between distant layers.
struct Place {
  std::size_t node;
  std::size_t layer;
  bool is_passed;
  double y = 0;  ///< of the middle
  std::vector<std::size_t> before;
  std::vector<std::size_t> behind;

  double Height() const { return is_passed ? 0 : kHeight; }
};

class Layout {
 public:
  explicit Layout(const std::vector<GraphNode>& nodes) : nodes_(nodes) {
    AssignLayers();
    MakePlaces();
    for (int sweep = 0; sweep < kSweeps; ++sweep) OrderLayers(sweep % 2 == 0);
    for (int sweep = 0; sweep < kSweeps; ++sweep) {
      for (std::vector<std::size_t>& layer : layers_) Align(layer);
    }
    double top = 0;
    for (const Place& place : places_) top = std::min(top, place.y - place.Height() / 2);
    for (Place& place : places_) {
      place.y += kBorder - top;
      bottom_ = std::max(bottom_, place.y + place.Height() / 2);
    }
  }

  std::string Svg() const {
    const double width = kColumn * static_cast<double>(layers_.size() - 1) + kWidth + 2 * kBorder;
    std::string svg = fmt::format(
        "<svg class=\"graph\" width=\"{0:.0f}\" height=\"{1:.0f}\" viewBox=\"0 0 {0:.0f} {1:.0f}\" "
        "role=\"img\" aria-label=\"The program's steps and what flows between them\">\n",
        width, bottom_ + kBorder);
    for (const Place& place : places_) svg += Lines(place);
    for (const Place& place : places_) svg += Box(place);
    return svg + "</svg>\n";
  }

 private:
  /// Behind all that a node takes something from; one that takes nothing, just before the first
  /// that takes something from it.
  void AssignLayers() {
    layer_of_.resize(nodes_.size());
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
      for (const std::size_t from : nodes_[i].from) {
        layer_of_[i] = std::max(layer_of_[i], layer_of_[from] + 1);
      }
    }
    std::vector<std::size_t> first_taker(nodes_.size(), nodes_.size());
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
      for (const std::size_t from : nodes_[i].from) {
        first_taker[from] = std::min(first_taker[from], layer_of_[i]);
      }
    }
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
      if (!nodes_[i].from.empty() || first_taker[i] == nodes_.size()) continue;
      layer_of_[i] = first_taker[i] - 1;
    }
    layers_.resize(1 + *std::ranges::max_element(layer_of_));
  }

  std::size_t AddPlace(std::size_t node, bool is_passed, std::size_t layer) {
    places_.push_back({node, layer, is_passed, 0, {}, {}});
    layers_[layer].push_back(places_.size() - 1);
    return places_.size() - 1;
  }

  /// A node's lines share their way as far as they go together.
  void MakePlaces() {
    std::map<std::pair<std::size_t, std::size_t>, std::size_t> at;  // by node and layer
    for (std::size_t i = 0; i < nodes_.size(); ++i)
      at[{i, layer_of_[i]}] = AddPlace(i, false, layer_of_[i]);
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
      for (const std::size_t from : nodes_[i].from) {
        std::size_t last = at[{from, layer_of_[from]}];
        for (std::size_t layer = layer_of_[from] + 1; layer <= layer_of_[i]; ++layer) {
          const bool is_end = layer == layer_of_[i];
          const auto key = std::pair(is_end ? i : from, layer);
          if (!at.contains(key)) at[key] = AddPlace(from, true, layer);
          const std::size_t next = at[key];
          if (std::ranges::find(places_[last].behind, next) == places_[last].behind.end()) {
            places_[last].behind.push_back(next);
            places_[next].before.push_back(last);
          }
          last = next;
        }
      }
    }
    rank_.resize(places_.size());
    for (const std::vector<std::size_t>& layer : layers_) Rank(layer);
  }

  void Rank(const std::vector<std::size_t>& layer) {
    for (std::size_t i = 0; i < layer.size(); ++i) rank_[layer[i]] = static_cast<double>(i);
  }

  void OrderLayers(bool forward) {
    for (std::size_t i = 0; i < layers_.size(); ++i) {
      std::vector<std::size_t>& layer = layers_[forward ? i : layers_.size() - 1 - i];
      std::map<std::size_t, double> centre;
      for (const std::size_t place : layer) {
        const auto& beside = forward ? places_[place].before : places_[place].behind;
        double sum = 0;
        for (const std::size_t other : beside) sum += rank_[other];
        centre[place] = beside.empty() ? rank_[place] : sum / static_cast<double>(beside.size());
      }
      std::ranges::stable_sort(layer, {}, [&](std::size_t place) { return centre[place]; });
      Rank(layer);
    }
  }

  /// Moves a layer's places towards the middle of their neighbours, apart as they must be.
  void Align(std::vector<std::size_t>& layer) {
    double shift = 0;
    double lowest = 0;
    for (std::size_t i = 0; i < layer.size(); ++i) {
      Place& place = places_[layer[i]];
      double sum = 0;
      for (const std::size_t other : place.before) sum += places_[other].y;
      for (const std::size_t other : place.behind) sum += places_[other].y;
      const std::size_t count = place.before.size() + place.behind.size();
      const double wanted = count == 0 ? place.y : sum / static_cast<double>(count);
      const double half = place.Height() / 2;
      place.y = i == 0 ? wanted : std::max(wanted, lowest + kGap + half);
      lowest = place.y + half;
      shift += wanted - place.y;
    }
    for (const std::size_t place : layer)
      places_[place].y += shift / static_cast<double>(layer.size());
  }

  static double Left(const Place& place) {
    return kBorder + kColumn * static_cast<double>(place.layer);
  }

  std::string Lines(const Place& place) const {
    std::string path;
    const double left = Left(place);
    if (place.is_passed) path = fmt::format("M{:.1f} {:.1f}h{:.1f}", left, place.y, kWidth);
    for (const std::size_t other : place.behind) {
      const double half = (kColumn - kWidth) / 2;
      path +=
          fmt::format("M{:.1f} {:.1f}c{:.1f} 0 {:.1f} {:.1f} {:.1f} {:.1f}", left + kWidth, place.y,
                      half, half, places_[other].y - place.y, 2 * half, places_[other].y - place.y);
    }
    return path.empty() ? "" : "<path class=\"edge\" d=\"" + path + "\"/>\n";
  }

  std::string Box(const Place& place) const {
    if (place.is_passed) return "";
    const GraphNode& node = nodes_[place.node];
    const double left = Left(place);
    const double top = place.y - kHeight / 2;
    return fmt::format(
        "<g class=\"node{}{}\"><title>{}</title><rect x=\"{:.1f}\" y=\"{:.1f}\" width=\"{}\" "
        "height=\"{}\" rx=\"{}\"/><text class=\"name\" x=\"{:.1f}\" y=\"{:.1f}\">{}</text>"
        "<text class=\"detail\" x=\"{:.1f}\" y=\"{:.1f}\">{}</text></g>\n",
        node.is_data ? " data" : "", node.is_judged ? " judged" : "",
        HtmlText(node.name + " \u2013 " + node.detail), left, top, kWidth, kHeight,
        node.is_data ? kHeight / 2 : 5, left + kWidth / 2, top + 20, Shortened(node.name),
        left + kWidth / 2, top + 36, Shortened(node.detail));
  }

  const std::vector<GraphNode>& nodes_;
  std::vector<std::size_t> layer_of_;
  std::vector<Place> places_;
  std::vector<std::vector<std::size_t>> layers_;  ///< of places, from above
  std::vector<double> rank_;                      ///< of each place in its layer
  double bottom_ = 0;
};

}  // namespace

std::vector<GraphNode> GraphOf(const Program& program) {
  std::vector<GraphNode> nodes;
  std::map<std::size_t, std::size_t> data;  // nodes by datum
  for (const DataUse& use : program.uses) {
    if (data.contains(use.datum)) continue;
    data[use.datum] = nodes.size();
    const Datum& datum = program.data[use.datum];
    nodes.push_back({datum.name, datum.file, true, false, {}});
  }
  const std::size_t first = nodes.size();
  for (const Step& step : program.steps) {
    GraphNode node{step.name, NameFromText(step.instruction->descriptor->name), false, false, {}};
    for (const Argument& argument : step.inputs) {
      std::optional<std::size_t> from;
      if (const auto* use = std::get_if<UseNumber>(&argument)) {
        from = data[program.uses[use->use].datum];
      } else if (const auto* result = std::get_if<StepResult>(&argument)) {
        from = first + result->step;
      }
      if (from && std::ranges::find(node.from, *from) == node.from.end())
        node.from.push_back(*from);
    }
    nodes.push_back(std::move(node));
  }
  for (const ReportRow& row : program.report) {
    if (row.limits.Judge()) nodes[first + row.value.step].is_judged = true;
  }
  return nodes;
}

std::string DrawGraph(const std::vector<GraphNode>& nodes) {
  return nodes.empty() ? "" : Layout(nodes).Svg();
}

}  // namespace nuvhost
