import csv
import nuvformula


def edge(name):
    with open(f"examples/washer/{name}.csv") as file:
        return [(float(row["x"]), float(row["y"])) for row in csv.DictReader(file)]


with nuvformula.Host() as f, f.picture("examples/washer/washer.png") as picture:
    rim = f.PtsToBestCircle(points=edge("outer"), percent_outliers=10)
    hole = f.PtsToBestCircle(points=edge("inner"), percent_outliers=10)
    apart = f.PtToPtDist(rim.center, hole.center).distance
    print(f"outer {rim.diameter / 10:.2f}, inner {hole.diameter / 10:.2f}, apart {apart / 10:.2f} mm")
    picture.save("washer.svg")
