"""Whether scripts/bench tells what got slower, and how times grow, on runs with a known answer."""

import math
import random
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "scripts"))
sys.dont_write_bytecode = True

from benching import figures  # noqa: E402


def a_run(**ratios):
    """One row, by peers; 5 % of spread to both sides."""
    return [{"row": "Sort", "size": 1000, "peers": [
        {"name": name, "ratio": [ratio * 0.95, ratio, ratio * 1.05]}
        for name, ratio in ratios.items()]}]


def curve(time, fault_from=math.inf):
    return [{"size": n, "bytes": 8 * n, "seconds": time(n), "faults": n / 512 * (n >= fault_from)}
            for n in (10 ** k for k in range(1, 8))]


class Bench(unittest.TestCase):
    def test_regressions(self):
        before = a_run(plain=4.0, numpy=8.0)
        for ratios, is_slower in (((4.0, 8.0), False), ((3.7, 7.4), False), ((3.5, 7.0), True),
                                  ((3.5, 8.0), False),  # the one peer got faster
                                  ((8.0, 16.0), False)):
            found = figures.regressions(a_run(plain=ratios[0], numpy=ratios[1]), before)
            self.assertEqual(list(found), ["Sort/1000"] if is_slower else [], ratios)
        noisy = a_run(plain=3.0)
        noisy[0]["peers"][0]["ratio"][2] = 3.9  # the quartiles overlap
        self.assertEqual(figures.regressions(noisy, before), {})
        self.assertEqual(figures.regressions([dict(before[0], size=10)], before), {})

    def test_exponents(self):
        noise = random.Random(1)
        for time, expected, is_steep in (
                (lambda n: 2e-9 * n + 3e-8, 1.0, False), (lambda n: 1e-8, 0.0, False),
                (lambda n: 1e-9 * n * math.log(n), 1.09, False),
                (lambda n: 1e-9 * n ** 1.5, 1.5, True), (lambda n: 1e-10 * n * n, 2.0, True)):
            points = curve(lambda n: time(n) * noise.uniform(0.95, 1.05))
            self.assertAlmostEqual(figures.exponent(points), expected, delta=0.03)
            self.assertEqual(figures.is_steep(points, {}), is_steep, expected)

    def test_bends(self):
        points = curve(lambda n: 1e-9 * n * (1 if n < 10 ** 6 else 4), fault_from=10 ** 7)
        self.assertEqual(figures.bends(points, {"L1": 1 << 15}), [(10 ** 6, None)])
        self.assertEqual(figures.bends(points, {"L1": 1 << 15, "L2": 1 << 20}),
                         [(10 ** 6, "L2 outgrown")])
        late = curve(lambda n: 1e-9 * n * (1 if n < 10 ** 7 else 4), fault_from=10 ** 7)
        self.assertEqual(figures.bends(late, {}), [(10 ** 7, "19,531 page faults")])
        self.assertFalse(figures.is_steep(late, {}))


if __name__ == "__main__":
    unittest.main()
