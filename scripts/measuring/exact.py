"""Elementary functions to 50 digits, from the exact value of a double, by series on Python's
decimal arithmetic. The C library gives first guesses only."""

import decimal
import math
from decimal import Decimal

DIGITS = 60  # ten more than are claimed
decimal.setcontext(decimal.Context(prec=DIGITS, Emax=decimal.MAX_EMAX, Emin=decimal.MIN_EMIN))


def pi_times(power):
    """The whole part of pi times 10^power, by Machin's formula."""
    guard = 10
    one = 10 ** (power + guard)

    def arctan_of_inverse(n):
        total, term, i = 0, one // n, 0
        while term:
            total += (-1) ** i * (term // (2 * i + 1))
            term //= n * n
            i += 1
        return total

    return 4 * (4 * arctan_of_inverse(5) - arctan_of_inverse(239)) // 10 ** guard


# Enough to tell the quarter turns of the largest double.
PI_LONG = Decimal(pi_times(420)).scaleb(-420, decimal.Context(prec=425))
PI = +PI_LONG


def quarter_turns(angle):
    """The nearest whole number of quarter turns, modulo 4, and what is left of the angle."""
    with decimal.localcontext() as context:
        context.prec = max(angle.adjusted(), 0) + 2 * DIGITS
        quarter = PI_LONG / 2
        turns = (angle / quarter).to_integral_value()
        rest = angle - turns * quarter
    return int(turns) % 4, +rest


def series(x, term, n):
    """The sum of x^k / k! with alternating signs, from k = n by twos, the first term given."""
    total = term
    square = x * x
    while term and term.adjusted() > total.adjusted() - DIGITS:
        term = -term * square / ((n + 1) * (n + 2))
        total += term
        n += 2
    return total


def sin_cos(angle):
    turns, rest = quarter_turns(Decimal(angle))
    sine, cosine = series(rest, rest, 1), series(rest, Decimal(1), 0)
    return [(sine, cosine), (cosine, -sine), (-sine, -cosine), (-cosine, sine)][turns]


def sin(angle):
    return sin_cos(angle)[0]


def cos(angle):
    return sin_cos(angle)[1]


def tan(angle):
    sine, cosine = sin_cos(angle)
    return sine / cosine


def direction(y, x):
    """The angle of the vector (x, y), from -pi to pi."""
    y, x = Decimal(y), Decimal(x)
    if y == 0:
        return PI if x < 0 else Decimal(0)
    # The angle left of a first guess is so small that three terms will do. Scaled, since doubles
    # may be far from 1.
    size = max(abs(x), abs(y))
    guess = Decimal(math.atan2(y / size, x / size)) if abs(y) > size.scaleb(-15) else Decimal(0)
    if guess == 0 and x < 0:
        guess = PI if y > 0 else -PI
    sine, cosine = sin_cos(guess)
    rest = (y * cosine - x * sine) / (x * cosine + y * sine)
    square = rest * rest
    return guess + rest * (1 - square * (Decimal(1) / 3 - square * (Decimal(1) / 5 - square / 7)))


def arcsin(sine):
    sine = Decimal(sine)
    return direction(sine, ((1 - sine) * (1 + sine)).sqrt())


def arccos(cosine):
    cosine = Decimal(cosine)
    return direction(((1 - cosine) * (1 + cosine)).sqrt(), cosine)


def arctan(tangent):
    return direction(tangent, 1)


def ulps(result, exact):
    """How far a double is from an exact value, in units in the last place of that value."""
    return abs(Decimal(result) - exact) / Decimal(math.ulp(float(exact)))


def correct_digits(result, exact):
    """The digits that a double shares with an exact value: the logarithm of the relative error,
    from 0 to 15; NaN has none (the log relative error of B. D. McCullough, "Assessing the
    reliability of statistical software", The American Statistician 52, 1998)."""
    if not math.isfinite(result):
        return Decimal(0)
    error = abs(Decimal(result) - exact) / abs(exact)
    return Decimal(15) if error == 0 else min(max(-error.log10(), Decimal(0)), Decimal(15))
