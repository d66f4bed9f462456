"""Mean, variance and capability: correct digits on published sets, and what a large mean costs."""

from decimal import Decimal
from fractions import Fraction

from measuring.exact import correct_digits
from measuring.page import compact, digits_text, median
from measuring.reference_sets import SETS, decimal_of, mean_of, variance_of
from measuring.scenes import Source

SAMPLES = 50
SIZE = 100
SPREAD = 0.02
MEANS = [0.02, 0.2, 2, 20, 200, 2e3, 2e4, 2e5, 1e6, 2e6, 2e7]


def capability(mean, variance, low, high):
    """Cp and Cpk (AIAG, Statistical Process Control, 2nd edition, 2005)."""
    sigma = variance.sqrt()
    return (high - low) / (6 * sigma), min(high - mean, mean - low) / (3 * sigma)


def digits_left(n, condition):
    """The digits of a one-pass variance of n values that rounding leaves at least, from the square
    of the condition (Chan, Golub and LeVeque, 1983)."""
    return -(Decimal(n + 4) * condition).scaleb(-16).log10()


def certified(name, published, mean_text, deviation_text):
    """The exact mean and variance of published values; ends the program where they are not those
    certified, to the last digit."""
    values = list(map(Fraction, published))
    mean, variance = decimal_of(mean_of(values)), decimal_of(variance_of(values))
    for exact, text in ((mean, mean_text), (variance.sqrt(), deviation_text)):
        value = Decimal(text)
        if value != round(exact, -value.as_tuple().exponent):
            raise SystemExit(f"{name}: {exact} is not the certified {text}")
    return mean, variance


def published_sets(library, page):
    rows = []
    for name, published, *texts in SETS:
        mean, variance = certified(name, published, *texts)
        n = len(published)
        values = list(map(float, published))
        low, high = min(values), max(values)
        limits = min(map(Decimal, published)), max(map(Decimal, published))
        cp, cpk = capability(mean, variance, *limits)
        results = library.answers([
            ("MeanArr", [values]), ("Mean", values),
            ("CpArr", [high, low, values]), ("Cp", [high, low, *values]),
            ("CpkArr", [high, low, values]), ("Cpk", [high, low, *values]),
            ("VarianceArr", [values]), ("Variance", values), ("MeanAndVariance", [values]),
            ("ConstMulAdd", [values, 1, -values[0]])])
        firsts = [result[0] for result in results]
        page.expect(firsts[0:6:2] == firsts[1:6:2] and firsts[0] == results[8][0],
                    f"{name}: instructions that compute the same differ")
        condition = mean * mean / variance + 1
        population = variance * (n - 1) / n
        pairs = [(firsts[0], mean), (firsts[6], variance), (firsts[7], population),
                 (results[8][1], population), (firsts[2], cp), (firsts[4], cpk)]
        pairs += zip(library.numbers([("VarianceArr", [results[9][0]])]), [variance])
        digits = [correct_digits(float(result), exact) for result, exact in pairs]
        # The values themselves are rounded, by half a unit of the mean's last place.
        held = min(Decimal(12), -(condition.sqrt() * 4).scaleb(-16).log10())
        page.expect(digits[0] >= 14 and min(digits[1:]) >= digits_left(n, condition) and
                    digits[-1] >= held,
                    f"{name}: too few correct digits: {', '.join(map(digits_text, digits))}")
        rows.append([name, n, compact(condition.sqrt(), 2), *map(digits_text, digits)])
    page.table(["set", "values", "κ", "MeanArr", "VarianceArr", "Variance",
                "MeanAndVariance", "CpArr", "CpkArr", "VarianceArr, first value subtracted"], rows)


def measured(library, samples, limits):
    """Digits of VarianceArr and Cpk of each sample."""
    variances = library.numbers([("VarianceArr", [sample]) for sample in samples])
    indexes = library.numbers([("CpkArr", [*pair, sample])
                               for sample, pair in zip(samples, limits)])
    return variances, indexes


def large_means(library, page):
    rows = []
    for row, mean in enumerate(MEANS):
        source = Source(100 + row)
        samples = [[mean + SPREAD * source.normal() for _ in range(SIZE)] for _ in range(SAMPLES)]
        exact = [variance_of(list(map(Decimal, sample))) for sample in samples]
        limits = [(mean + 4 * SPREAD, mean - 4 * SPREAD)] * SAMPLES
        shifted = library.firsts([("ConstMulAdd", [sample, 1, -sample[0]]) for sample in samples])
        centred = library.firsts([("ConstMulAdd", [sample, 1, -mean]) for sample in samples])
        moved = [(high - sample[0], low - sample[0])
                 for (high, low), sample in zip(limits, samples)]
        columns = []
        for data, data_limits in ((samples, limits), (shifted, moved), (centred, moved)):
            variances, indexes = measured(library, data, data_limits)
            digits = list(map(correct_digits, variances, exact))
            columns.append((digits, sum(index == 999 for index in indexes)))
        (before, capped), (after, capped_after), (nominal, _) = columns
        condition = (Decimal(mean) / Decimal(SPREAD)) ** 2 + 1
        page.expect(min(before) >= digits_left(SIZE, 2 * condition),
                    f"mean {mean:g}: {digits_text(min(before))} digits of the variance")
        page.expect(min(*after, *nominal) >= 12 and capped_after == 0,
                    f"mean {mean:g}, subtracted: {digits_text(min(*after, *nominal))} digits, Cpk "
                    f"is 999 in {capped_after}")
        page.expect(mean != 1e6 or (median(before) < 1 and capped > 0),
                    "mean 1e6: what the page says of lost digits is not so")
        rows.append([f"{mean:.10g}", compact(mean / SPREAD),
                     digits_text(min(before)), digits_text(median(before)),
                     f"{capped} of {SAMPLES}", digits_text(min(after)),
                     digits_text(median(after))])
    page.table(["mean", "mean / spread", "VarianceArr: fewest digits", "median", "Cpk is 999",
                "first value subtracted: fewest digits", "median"], rows)


def write(library, page):
    page.write("""
        ## Mean, variance and capability

        The univariate sets of NIST's Statistical Reference Datasets, all but PiDigits with its 5000
        values, have certified means and standard deviations. The exact mean and deviation of each
        set, in rational arithmetic, were held against these first, and agree to the last digit. The
        limits of the capability indexes are the smallest and the greatest value of the set.

        A figure is the number of correct digits, −log₁₀ of the relative error, of 15 at most and
        rounded down. κ is the condition of a variance, √(1 + mean² / variance): about the mean
        divided by the spread (Chan, Golub and LeVeque, "Algorithms for computing the sample
        variance", The American Statistician 37, 1983). MeanArr and Mean answer the same bits, and
        so do CpArr and Cp, CpkArr and Cpk. VarianceArr and the indexes divide by n − 1, Variance
        and MeanAndVariance by n.""")
    published_sets(library, page)
    page.write("""
        Means are good to nearly all digits. Variances are computed in one pass, from the sum of
        the values and the sum of their squares, and lose twice as many digits as κ has; saved
        programs depend on these results to the last bit. Cp and Cpk lose the same. MeanAndVariance
        takes the mean of the squares less the square of the mean, and so loses them even where the
        sums are exact, as in NumAcc1. A spread of a ten thousandth of the mean leaves some 7
        digits, ample for an inspection; one of a ten millionth leaves one or none.

        What that means for a part: a length around 1 000 000 µm that varies by 0.02 µm has a
        variance of rounding errors, and where these are small or negative, Cpk is 999, the answer
        for parts that do not vary at all.""")
    page.write(f"""
        The table is of {SAMPLES} random samples in each row, of {SIZE} values, with a spread of
        {SPREAD} and limits at four spreads from the mean. The exact variance is that of the very
        doubles. In the last two columns the first value of each sample was subtracted from all
        beforehand, by "Array: Number: ConstMulAdd" with the factor 1 and the negated value.""")
    large_means(library, page)
    page.write("""
        **Conclusion.** Where the mean is more than some ten thousand times the spread, subtract a
        constant first, the nominal size or any value of the sample, from the values and from the
        limits. It gives back all the digits that the values hold: those of NumAcc3 and NumAcc4 have
        few, since the decimals of a large number are rounded in a double. `nuvhost run` warns where
        a variance kept no digit.""")
