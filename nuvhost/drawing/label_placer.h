// LabelPlacer: where labels go, so that they cover neither figures nor each other where there is
// room.
#pragma once

#include <cstdint>
#include <vector>

#include "nuvhost/drawing/view.h"

namespace nuvhost {

/// A grid over the view, fine as a quarter of a text's height, that knows what is drawn where. All
/// outlines and texts that stand at given places are marked first; labels are placed after them, in
/// turn, each at a cost that does not grow with what is there.
class LabelPlacer {
 public:
  explicit LabelPlacer(const View& view);

  void MarkSegment(const CNuvPoint& start, const CNuvPoint& end);
  void MarkOutline(const Box& box);
  /// The outline, whatever the radius's sign.
  void MarkCircle(const CNuvCircle& circle);
  void MarkText(const Box& text);

  /// The box of a label of that size near its figure's point: the first place that is free, looking
  /// from the upper right round the point and then farther away; or else the one that covers
  /// least. Within the view, where it fits there.
  Box Place(const CNuvPoint& point, double width, double height);

 private:
  /// Columns or rows of the grid; those beyond it are negative or too large.
  int CellOf(double offset) const;
  /// Marks the cells of a column that lie between two offsets from the view's upper border.
  void MarkColumn(int column, double from, double to);
  std::uint32_t Cost(const Box& box, std::uint32_t enough) const;

  template <class Visit>
  void ForCells(const Box& box, Visit visit) const;

  const View view_;
  const double cell_;
  const int columns_;
  const int rows_;
  std::vector<std::uint32_t> costs_;  ///< of covering each cell, row by row
};

}  // namespace nuvhost
