"""The line and the circle of least squared distances, to 50 digits, from the exact coordinates."""

from dataclasses import dataclass
from decimal import Decimal

from measuring.exact import direction, sin_cos


@dataclass
class Line:
    angle: Decimal
    ends: list  # of the stretch on the line beside the points
    least: Decimal  # the least and the greatest signed distance of a point
    most: Decimal


def best_line(points):
    """Through the mean along the greatest scatter; its double angle is that of the vector
    (Σdx² − Σdy², 2 Σdx dy)."""
    points = [(Decimal(x), Decimal(y)) for x, y in points]
    mean_x, mean_y = (sum(values) / len(points) for values in zip(*points))
    offsets = [(x - mean_x, y - mean_y) for x, y in points]
    angle = direction(2 * sum(dx * dy for dx, dy in offsets),
                      sum(dx * dx - dy * dy for dx, dy in offsets)) / 2
    sine, cosine = sin_cos(angle)
    along = [dx * cosine + dy * sine for dx, dy in offsets]
    off = [dy * cosine - dx * sine for dx, dy in offsets]
    ends = [(mean_x + t * cosine, mean_y + t * sine) for t in (min(along), max(along))]
    return Line(angle, ends, min(off), max(off))


@dataclass
class Circle:
    x: Decimal
    y: Decimal
    radius: Decimal
    mean_error: Decimal  # the mean of the distances from it, without sign
    deviation: Decimal  # of the distances from the centre, over n


def newton_step(points, x, y):
    """From a centre toward the one with the least sum of squares, where the radius is the mean
    distance r: with the unit vectors u from the centre to the points, their mean m, and the mean
    point p, the gradient is c − p + r m, and the matrix of second derivatives
    I − m mᵀ − r · mean((I − u uᵀ) / d). None where the matrix is not positive definite."""
    n = len(points)
    offsets = [(px - x, py - y) for px, py in points]
    squares = [dx * dx + dy * dy for dx, dy in offsets]
    distances = [square.sqrt() for square in squares]
    radius = sum(distances) / n
    ux = sum(dx / d for (dx, _), d in zip(offsets, distances)) / n
    uy = sum(dy / d for (_, dy), d in zip(offsets, distances)) / n
    cubes = [square * d for square, d in zip(squares, distances)]
    xx = 1 - ux * ux - radius * sum(dy * dy / c for (_, dy), c in zip(offsets, cubes)) / n
    yy = 1 - uy * uy - radius * sum(dx * dx / c for (dx, _), c in zip(offsets, cubes)) / n
    xy = -ux * uy + radius * sum(dx * dy / c for (dx, dy), c in zip(offsets, cubes)) / n
    gx = radius * ux - sum(dx for dx, _ in offsets) / n
    gy = radius * uy - sum(dy for _, dy in offsets) / n
    determinant = xx * yy - xy * xy
    if determinant <= 0 or xx <= 0:
        return None
    return (gy * xy - gx * yy) / determinant, (gx * xy - gy * xx) / determinant


def best_circle(points, start):
    """By Newton's method from a centre near by; ends the program where that leads nowhere."""
    points = [(Decimal(x), Decimal(y)) for x, y in points]
    x, y = map(Decimal, start)
    for _ in range(30):
        step = newton_step(points, x, y)
        if step is None:
            break
        x, y = x + step[0], y + step[1]
        if abs(step[0]) + abs(step[1]) < Decimal("1e-25"):  # the next would be 1e-45
            distances = [((px - x) ** 2 + (py - y) ** 2).sqrt() for px, py in points]
            n = len(points)
            radius = sum(distances) / n
            errors = [d - radius for d in distances]
            return Circle(x, y, radius, sum(map(abs, errors)) / n,
                          (sum(e * e for e in errors) / n).sqrt())
    raise SystemExit(f"no least sum of squares near {start}")
