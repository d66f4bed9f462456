"""The rooms of nuvhost include from one another only as their CMakeLists.txt say.

That a room can link only rooms above it, nuvhost/CMakeLists.txt sees to itself.
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
rooms = re.search(r"set\(rooms ([^)]*)\)", (ROOT / "nuvhost/CMakeLists.txt").read_text())[1].split()
folders = sorted(path.name for path in (ROOT / "nuvhost").iterdir() if path.is_dir())
failures = [] if sorted(rooms) == folders else [f"folders {folders} are not the rooms {rooms}"]
for room in rooms:
    folder = ROOT / "nuvhost" / room
    call = re.search(rf"nuvhost_room\({room}\b([^)]*)\)", (folder / "CMakeLists.txt").read_text())
    linked = set(call[1].partition("LINK")[2].split()) & set(rooms)
    included = {}
    for source in folder.iterdir():
        for name in re.findall(r'#include "nuvhost/(\w+)/', source.read_text()):
            included[name] = source.name
    included.pop(room, None)
    failures += [f"{room}/{included[name]} includes from {name}, which {room} does not link"
                 for name in included.keys() - linked]
    failures += [f"{room} links {name} and includes nothing from it"
                 for name in linked - included.keys()]
for folder in (ROOT / "host", ROOT / "reference_host"):
    failures += [f"{source} includes from nuvhost" for source in folder.rglob("*.*")
                 if '#include "nuvhost/' in source.read_text()]
print(f"{len(rooms)} rooms", *failures, sep="\n")
sys.exit(1 if failures else 0)
