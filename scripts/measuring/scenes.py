"""Seeded random numbers, samples and points, the same on every machine: they are made with the
four arithmetic operations and square roots alone, which IEEE 754 rounds exactly."""

import math
import random
from dataclasses import dataclass


class Source:
    def __init__(self, seed):
        self._random = random.Random(seed)

    def between(self, low, high):
        return low + (high - low) * self._random.random()

    def below(self, end):
        """A whole number."""
        return int(self._random.random() * end)

    def normal(self):
        """Mean 0 and standard deviation 1, nearly normal: twelve even ones."""
        return sum(self._random.random() for _ in range(12)) - 6.0

    def sign(self):
        return -1.0 if self._random.random() < 0.5 else 1.0

    def double(self, exponents=(0, 2046)):
        """Any finite double: even over its exponents, as bits, its significand and its sign."""
        exponent = exponents[0] + self.below(exponents[1] + 1 - exponents[0])
        significand = self._random.getrandbits(52)
        if exponent == 0:
            return self.sign() * math.ldexp(float(significand), -1074)
        return self.sign() * math.ldexp(1.0 + math.ldexp(float(significand), -52), exponent - 1023)


def turned(half_tangent):
    """The unit vector at twice the angle that has this tangent."""
    square = half_tangent * half_tangent
    return (1.0 - square) / (1.0 + square), 2.0 * half_tangent / (1.0 + square)


@dataclass
class Kind:
    """Points near a line of length 100 or a circle of diameter 100."""
    name: str
    noise: float
    away: float = 1000.0  # its middle's coordinates are half of it to all of it, of either sign
    count: int = 60
    quarter: float = 1.0  # of an arc: the tangent of a quarter of its angle

    def middle(self, source):
        return [source.sign() * source.between(0.5, 1.0) * self.away for _ in range(2)]


def line_points(source, kind):
    x, y = kind.middle(source)
    cosine, sine = turned(source.between(-1.0, 1.0))
    points = []
    for _ in range(kind.count):
        along, off = source.between(-50.0, 50.0), kind.noise * source.normal()
        points.append((x + along * cosine - off * sine, y + along * sine + off * cosine))
    return points


def circle_points(source, kind):
    """The points and their circle's centre."""
    x, y = kind.middle(source)
    cosine, sine = turned(source.between(-1.0, 1.0))
    points = []
    for _ in range(kind.count):
        u, v = turned(source.between(-kind.quarter, kind.quarter))
        if kind.quarter == 1.0 and source.sign() < 0:
            u = -u
        radius = 50.0 + kind.noise * source.normal()
        points.append((x + radius * (u * cosine - v * sine), y + radius * (u * sine + v * cosine)))
    return points, (x, y)
