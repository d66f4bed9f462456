"""The report page in a browser: its numbers are the results file's, and hostile texts stay texts.

report_test.py CHROMIUM COMMAND...: the browser, and how to start nuvhost.
"""

import csv
import html.parser
import json
import math
import pathlib
import random
import re
import subprocess
import sys
import tempfile
from fractions import Fraction

HOSTILE = ("</script ><!--<script </script><script>document.title='hurt'</script>"
           "<img src=x onerror=\"document.title='hurt'\">&lt;'")
PARTS = 130
OFFSET = 1e6  # the spread is 1e-5: plain sums of squares would lose it, and 1e-7 hide its square
LIMITS = {"free": (OFFSET - 1.5e-5, OFFSET + 1.5e-5), "top": (None, OFFSET + 1.2e-5)}
VOID = {"meta", "link", "input", "img", "br"}


class Dom(html.parser.HTMLParser):
    """Elements in their order, as (tag, attributes, text pieces, ancestors)."""

    def __init__(self, text):
        super().__init__(convert_charrefs=True)
        self.elements, self.open = [], []
        self.feed(text)

    def handle_starttag(self, tag, attrs):
        element = (tag, dict(attrs), [], list(self.open))
        self.elements.append(element)
        if tag not in VOID:
            self.open.append(element)

    def handle_startendtag(self, tag, attrs):
        self.elements.append((tag, dict(attrs), [], list(self.open)))

    def handle_endtag(self, tag):
        while self.open and self.open.pop()[0] != tag:
            pass

    def handle_data(self, data):
        for element in self.open:
            element[2].append(data)

    def find(self, tag, within=None, **attributes):
        return [e for e in self.elements if e[0] == tag and (within is None or within in e[3])
                and all(value in e[1].get(name.strip("_"), "").split()
                        for name, value in attributes.items())]


def text(element):
    return "".join(element[2])


def write_parts(folder, names):
    generator = random.Random(3)
    for number, name in enumerate(names):
        lines = [f"{OFFSET + generator.gauss(0, 1e-5):.17g}" for _ in range(3)]
        if number == 5:
            lines = ["NaN"]
        if number == 9:
            lines = ["no number", "at all"]
        (folder / name).write_text("value\n" + "\n".join(lines) + "\n", encoding="utf-8")
    program = {
        "title": HOSTILE,
        "data": {"values": {"file": "none.csv"}},
        "steps": [
            {"name": "largest", "instr": "MaxArr", "in": [{"data": "values"}]},
            {"name": "smallest", "instr": "MinArr", "in": [{"data": "values"}]},
            {"name": HOSTILE, "instr": "LessOrEq",
             "in": [{"expr": "largest.max + 0"}, LIMITS["top"][1]]},
            {"name": "mark", "instr": "_CAnnotText_",
             "in": {"label": HOSTILE, "paint background": True}},
        ],
        "report": [
            {"label": "free", "value": {"step": "smallest"}, "unit": "mm", "decimals": 6,
             "min": LIMITS["free"][0], "max": LIMITS["free"][1]},
            {"label": "top", "value": {"step": "largest"}, "unit": HOSTILE,
             "max": LIMITS["top"][1]},
            {"label": HOSTILE, "value": {"step": HOSTILE}, "expect": True},
            {"label": "not judged", "value": {"step": "largest"}},
        ],
    }
    (folder / "program.json").write_text(json.dumps(program), encoding="utf-8")


# What a person does, and then what the page says.
ACTS = """
const act = (element, event) => element.dispatchEvent(event);
const all = (selector) => [...document.querySelectorAll(selector)];
const filter = document.getElementById("filter");
const seen = {
  firstPage: all("#table tbody tr").length,
  parts: all("#table tbody tr th > bdi:first-child").map((e) => e.textContent),
};
document.getElementById("next").click();
seen.secondPage = document.getElementById("range").textContent;
filter.value = "not good"; act(filter, new Event("change"));
seen.notGood = document.getElementById("range").textContent;
filter.value = "good"; act(filter, new Event("change"));
const sorts = all("#table thead button");
sorts[2].click(); sorts[2].click();
seen.sorted = all("#table tbody tr td:nth-child(3)").map((e) => Number(e.textContent));
const plot = all(".plot")[0];
act(plot, new KeyboardEvent("keydown", { key: "End" }));
seen.readout = plot.nextElementSibling.textContent;
all(".picture")[0].click();
seen.enlarged = document.getElementById("enlarged").open;
seen.wide = document.documentElement.scrollWidth - document.documentElement.clientWidth;
document.body.dataset.seen = JSON.stringify(seen);
"""


def browse(browser, page, folder, extra=""):
    """The page's document once its scripts have run; asserts that its console is empty."""
    shown = folder / "shown.html"
    shown.write_text(page.replace("</body>", f"<script>{extra}</script></body>"), encoding="utf-8")
    run = subprocess.run(
        [browser, "--headless", "--no-sandbox", "--disable-gpu", "--window-size=500,900",
         f"--user-data-dir={folder / 'browser'}", "--enable-logging=stderr",
         "--virtual-time-budget=5000", "--dump-dom", shown.as_uri()],
        capture_output=True, text=True, encoding="utf-8", timeout=240, check=True)
    console = [line for line in run.stderr.splitlines() if "CONSOLE" in line]
    assert not console, console
    return Dom(run.stdout)


def exact_statistics(numbers, least, most):
    """Each as a fraction's nearest double, but for roots, of which the last digits may differ."""
    exact = [Fraction(number) for number in numbers]
    mean = sum(exact) / len(exact)
    variance = sum((number - mean) ** 2 for number in exact) / (len(exact) - 1)
    # The root of a very small fraction, with its digits.
    deviation = Fraction(math.isqrt(int(variance * 10 ** 60)), 10 ** 30)
    room = [side for side in (least is not None and mean - Fraction(least),
                              most is not None and Fraction(most) - mean) if side is not False]
    both = least is not None and most is not None
    return {"n": len(exact), "Mean": mean, "Std dev.": deviation,
            "Min": min(exact), "Max": max(exact),
            "Cp": (Fraction(most) - Fraction(least)) / (6 * deviation) if both else None,
            "Cpk": min(room) / (3 * deviation)}


def check_characteristic(dom, index, rows, column, limits):
    numbers = [float(row[column]) for row in rows if row[column]]
    finite = [number for number in numbers if math.isfinite(number)]
    holds = [(limits[0] is None or limits[0] <= number)
             and (limits[1] is None or number <= limits[1]) for number in finite]
    card = dom.find("article", id=f"row-{index}")[0]
    bad = len(numbers) - sum(holds)
    assert f"{bad} bad" in text(dom.find("p", card, class_="outside")[0]), bad
    shown = {text(dom.find("dt", item)[0]): dom.find("dd", item)[0][1].get("data-value")
             for item in dom.find("div", dom.find("dl", card)[0])}
    for name, exact in exact_statistics(finite, *limits).items():
        assert (exact is None) == (shown[name] is None), (name, shown[name])
        assert exact is None or math.isclose(float(shown[name]), exact, rel_tol=1e-9), (
            name, shown[name], float(exact))

    def points(kind):
        paths = dom.find("path", dom.find("div", card, class_="run")[0], class_=kind)
        return [(float(x), float(y)) for path in paths
                for x, y in re.findall(r"M([\d.]+) ([\d.]+)", path[1]["d"])]

    assert len(points("dots")) == sum(holds) and len(points("bad")) == len(holds) - sum(holds)
    lines = [y for _, y in points("limit")]
    assert len(lines) == sum(limit is not None for limit in limits)
    assert lines == sorted(lines, reverse=True)  # y grows downward
    low = lines[0] if limits[0] is not None else 1000
    assert all(lines[-1] - 0.1 <= y <= low + 0.1 for _, y in points("dots"))
    assert all(y <= lines[-1] + 0.1 or y >= low - 0.1 for _, y in points("bad"))
    # The charts' points stand as their numbers do.
    by_place = sorted(points("dots") + points("bad"))
    for (_, y1), (_, y2), a, b in zip(by_place, by_place[1:], finite, finite[1:]):
        assert (a - b) * (y1 - y2) <= 0, (a, b, y1, y2)


def shown(page):
    """A page's rows, less their decimals, its parts, less their errors, and its statistics."""
    data = json.loads(re.search(r'id="data">(.*?)</script>', page, re.S)[1])
    return ([[label, unit, truth] for label, unit, _, truth in data["rows"]],
            [part[:4] for part in data["parts"]], re.findall(r'data-value="(.*?)"', page))


def main(browser, command):
    native = len(command) == 1
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        files = [f"part {number:03}.csv" for number in range(PARTS)]
        files[3] = "<img src=x onerror=document.title='hurt'>.csv" if native else "&lt;img '--.csv"
        write_parts(folder, files)

        def run(page):
            done = subprocess.run(
                [*command, "run", "program.json", "--data", *files, "--results", "out.csv",
                 "--overwrite", "--report", page], cwd=folder, capture_output=True, timeout=240, check=False)
            assert done.returncode == 2, done.stderr  # a part is unreadable
            return (folder / page).read_text(encoding="utf-8")

        page = run("one.html")
        assert page == run("two.html")
        with open(folder / "out.csv", newline="", encoding="utf-8") as results:
            rows = list(csv.DictReader(results))
        assert len(rows) == PARTS

        dom = browse(browser, page, folder, ACTS)
        title = [text(e) for e in dom.find("title") if not any(a[0] == "svg" for a in e[3])]
        assert title == [HOSTILE] and not dom.find("img"), title
        assert len(dom.find("script")) == 3  # the data, the page's own and this test's
        for element in dom.elements:
            for attribute in ("src", "href", "xlink:href"):
                assert element[1].get(attribute, "#").startswith("#"), element
            assert not any(attribute.startswith("on") for attribute in element[1]), element
        good = sum(row["status"] == "good" for row in rows)
        assert 0 < good < PARTS - 10
        verdict = text(dom.find("p", class_="verdict")[0])
        assert f"{good} of {PARTS} parts are good" in verdict
        assert f"{good * 1000 // PARTS / 10:.1f} %" in verdict
        assert len(dom.find("article", class_="part")) == min(PARTS - good, 50)
        assert len(dom.find("g", class_="node")) == 5
        check_characteristic(dom, 0, rows, "smallest.min", LIMITS["free"])
        check_characteristic(dom, 1, rows, "largest.max", LIMITS["top"])

        seen = json.loads(dom.find("body")[0][1]["data-seen"])
        assert seen["firstPage"] == 50 and seen["parts"] == files[:50], seen
        assert seen["secondPage"] == f"51\u2013100 of {PARTS}"
        assert seen["notGood"].endswith(f" of {PARTS - good}")
        best = sorted((float(row["smallest.min"]) for row in rows if row["status"] == "good"),
                      reverse=True)[:50]
        assert len(seen["sorted"]) == len(best)
        assert all(abs(a - b) <= 1e-6 for a, b in zip(seen["sorted"], best))
        assert files[-1] in seen["readout"] and "mm" in seen["readout"]
        assert seen["enlarged"] and seen["wide"] <= 0, seen

        # The results file alone gives the same numbers, whatever the labels in its header hold.
        done = subprocess.run([*command, "report", "out.csv", "--report", "joined.html"],
                              cwd=folder, capture_output=True, timeout=240, check=False)
        assert done.returncode == 2, done.stderr
        joined = (folder / "joined.html").read_text(encoding="utf-8")
        assert shown(joined) == shown(page)
    print(f"{PARTS} parts are shown as they are")


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2:])
