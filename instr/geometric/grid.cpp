// A grid of points inside four corners.

#include "host/integer.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

/// The two middle values of four.
struct Span {
  double first;
  double second;
};

/// Sorts the four coordinates into ascending order for the two in the middle.
/// Kept: a value loses its fraction whenever it moves toward the front, and comes out as the least
/// integer where it fits no 32 bits; saved programs have grids laid out by it.
Span MiddleOf(double (&values)[4]) {
  for (int i = 1; i < 4; ++i) {
    for (int j = i; j > 0 && values[j - 1] > values[j]; --j) {
      const std::int32_t smaller = NuvTruncate(values[j]);
      values[j] = values[j - 1];
      values[j - 1] = smaller;
    }
  }
  return {values[1], values[2]};
}

}  // namespace

/// Rows of points over the inner rectangle of the corners, the x coordinate varying fastest.
/// Kept: both steps are divided by the size along x, so that the last row reaches the far side only
/// where the sizes are equal; and after an error the status is still success, with the grid as it
/// was. Saved programs count on both.
struct CPtsToGrid final : Instruction<CPtsToGrid> {
  static constexpr Definition kDefinition{
      .category = "Geometric",
      .name = "PtsToGrid",
      .identifier = "_Nuv_Geometric_PtsToGrid_",
      .help = 460281,
      .description = "Generate a grid of points inside boudaries",
      .inputs = {Points("boundaries", "4 corners of the grid boudaries"),
                 Number("grid size X", 10.0, "Grid size on the X axis"),
                 Number("grid size Y", 10.0, "Grid size on the Y axis")},
      .results = {Points("grid")},
  };
  static Status Run(Call& call, const CNuvPointVector& corners, Truncated columns, Truncated rows) {
    if (corners.Size() != 4) {
      call.Fail("PtsToGrid", "Boundaries array size must be 4.");
      return Status::kSuccess;
    }
    if (columns < 2 || rows < 2) {
      call.Fail("PtsToGrid", "Grid sizes must be greater than 1.");
      return Status::kSuccess;
    }
    double x[] = {corners[0].x, corners[1].x, corners[2].x, corners[3].x};
    double y[] = {corners[0].y, corners[1].y, corners[2].y, corners[3].y};
    const Span across = MiddleOf(x);
    const Span down = MiddleOf(y);
    const double step_x = (across.second - across.first) / (columns - 1);
    const double step_y = (down.second - down.first) / (columns - 1);

    // The corners are read: the grid may be the same array.
    auto& grid = call.ArrayResult<CNuvPointVector>(0);
    grid.Resize(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows));
    CNuvPoint* point = grid.GetStorage();
    for (std::int32_t row = 0; row < rows; ++row) {
      const double row_y = down.first + row * step_y;
      for (std::int32_t column = 0; column < columns; ++column) {
        point->x = across.first + column * step_x;
        point->y = row_y;
        ++point;
      }
    }
    grid[0] = CNuvPoint(across.first, down.first);  // even where a step is infinite
    return Status::kSuccess;
  }
};

template struct Instructions<CPtsToGrid>;

}  // namespace formula
