"""NumPy's part of the comparison: reads "SIZE POOL ROW", answers whether there is such a row; then
numbers of calls, answers how many seconds they take. Inputs and outputs are taken in turn.
"""

import sys
import time

import numpy as np

random = np.random.default_rng(1)


def numbers(n):
    return random.random(n), np.empty(n)


def whole(n):
    return random.integers(0, 10 * n, n) / 8, random.integers(0, 10 * n, n) / 8


def extrema(a, _):
    return a.max(), a.argmax(), a.min(), a.argmin()


def multiply_add(a, out):
    np.multiply(a, 1.5, out)
    np.add(out, 2.5, out)


ROWS = {  # what makes the inputs of one call, and the call
    "Add": (lambda n: (*numbers(n), random.random(n)), lambda a, out, b: np.add(a, b, out)),
    "ConstMulAdd": (numbers, multiply_add),
    "Threshold": (numbers, lambda a, _: np.where(a >= 0.5, 2.0, 1.0)),
    "Reverse": (numbers, lambda a, out: np.copyto(out, a[::-1])),
    "Extrema": (numbers, extrema),
    "MeanAndVariance": (numbers, lambda a, _: (a.mean(), a.var())),
    "Sort": (numbers, lambda a, _: np.sort(a)),
    "IndexArray": (numbers, lambda a, _: np.argsort(a)),
    "Difference": (whole, lambda a, b: a[~np.isin(a, b)]),
}

for line in sys.stdin:
    words = line.rstrip("\n").split(" ", 2)
    if len(words) == 3:
        make, call = ROWS.get(words[2], (None, None))
        if make:
            pool = [make(int(words[0])) for _ in range(int(words[1]))]
            at = 0
        print(int(make is not None), flush=True)
    else:
        begin = time.process_time()
        for _ in range(int(words[0])):
            call(*pool[at])
            at = (at + 1) % len(pool)
        print(time.process_time() - begin, flush=True)
