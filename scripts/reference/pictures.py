"""Pictures: small programs docs/instructions/pictures/IDENTIFIER.json, drawn for the pages."""

import json
import subprocess


class PictureError(RuntimeError):
    """Why a picture cannot be drawn."""


def draw(programs, library, folder):
    """Draws the programs to FOLDER/IDENTIFIER.svg; gives the programs' texts by identifier."""
    texts = {}
    faults = []
    folder.mkdir(parents=True, exist_ok=True)
    for program in sorted(programs.glob("*.json")):
        text = program.read_text(encoding="utf-8")
        fault = fault_of(program, text, library, folder / f"{program.stem}.svg")
        if fault:
            faults.append(f"{program}: {fault}")
        texts[program.stem] = text
    if faults:
        raise PictureError("\n".join(faults))
    return texts


def fault_of(program, text, library, picture):
    """Draws one; what is wrong with it, or nothing."""
    if program.stem not in library.by_identifier:
        return "the name is no instruction's identifier"
    used = {library.identifier_of(step["instr"]) for step in json.loads(text)["steps"]}
    if program.stem not in used:
        return "no step runs the instruction that it is about"
    ran = subprocess.run([*library.nuvhost, "run", str(program), "--overlay", str(picture)],
                         capture_output=True, check=False, timeout=60)
    if ran.returncode != 0 or ran.stderr:
        return f"exit code {ran.returncode}: {ran.stderr.decode()}"
    drawn = picture.read_text(encoding="utf-8")
    if not any(f"<{figure}" in drawn for figure in ("line", "circle", "path", "poly", "rect x")):
        return "nothing is drawn"
    return None
