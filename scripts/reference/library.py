"""The instructions of the built library, as `nuvhost` tells of them."""

import json
import subprocess
from pathlib import Path


def name_of(parameter):
    """A parameter's name without the blanks at its ends; a nameless constant's group."""
    return (parameter["name"] or parameter.get("group") or "").strip()


class Library:
    def __init__(self, nuvhost):
        """nuvhost: the words that start it, such as ["wine", "nuvhost.exe"]."""
        self.nuvhost = [str(Path(word).resolve()) if "/" in word else word for word in nuvhost]
        told = subprocess.run([*self.nuvhost, "describe", "--all", "--json"], capture_output=True,
                              check=True, timeout=120)
        self.instructions = json.loads(told.stdout)
        self.by_identifier = {one["identifier"]: one for one in self.instructions}

    def identifier_of(self, name):
        """The identifier of the instruction that goes by a name, as on the command line."""
        found = [one["identifier"] for one in self.instructions
                 if name.strip() in (one["identifier"], one["name"].strip(),
                                     f"{one['category']}: {one['name']}".strip())]
        return found[0] if len(found) == 1 else None
