"""Parts of the pages that Markdown has no form for: parameters and examples as tables."""

import json
from html import escape

from reference.library import name_of

TYPES = {256: "boolean", 257: "whole number", 258: "number", 259: "text", 260: "point",
         261: "line", 263: "choice"}
TYPES.update({code + 256: f"array of {TYPES[code]}s" for code in (256, 258, 259, 260, 261)})


def table(header, rows, css_class):
    """A table of cells that are HTML; header cells are (HTML, class)."""
    head = "".join(f'<th class="{css}">{text}</th>' for text, css in header)
    body = "".join("<tr>" + "".join(f'<td class="{css}">{cell}</td>'
                                    for cell, (_, css) in zip(row, header)) + "</tr>\n"
                   for row in rows)
    return (f'<div class="table"><table class="{css_class}">\n<thead><tr>{head}</tr></thead>\n'
            f"<tbody>\n{body}</tbody></table></div>\n")


def value(json_value):
    """A default as an entry's cell would write it."""
    if isinstance(json_value, bool) or json_value is None:
        return {True: "true", False: "false", None: ""}[json_value]
    if isinstance(json_value, dict):
        return str(tuple(json_value.values())) if "x" in json_value else \
            "{" + ", ".join(f"{name}: {one}" for name, one in json_value.items()) + "}"
    return json.dumps(json_value)


def code(text):
    """A value, which is not broken where it is short."""
    short = ' class="short"' if len(text) <= 24 else ""
    return f"<code{short}>{escape(text)}</code>" if text else ""


def type_of(parameter):
    return TYPES.get(parameter["type"], str(parameter["type"]))


def constants(instruction):
    """The constant parameters as a table."""
    rows = []
    for one in instruction["constants"]:
        notes = escape(one["description"] or "")
        if one["min"] is not None:
            notes += f" {code(value(one['min']))} to {code(value(one['max']))}."
        if one["choices"]:
            notes += "<ul>" + "".join(f"<li>{code(str(key))} {escape(label)}</li>"
                                      for key, label in one["choices"]) + "</ul>"
        rows.append([f"<em>{escape(name_of(one))}</em>", type_of(one), code(value(one["default"])),
                     notes])
    return table([("name", "name"), ("type", "type"), ("default", ""), ("", "")], rows,
                 "parameters")


def inputs(instruction):
    """The inputs as a table."""
    rows = [[f"<em>{escape(name_of(one))}</em>", type_of(one), code(value(one["default"])),
             escape(one["description"] or "")] for one in instruction["inputs"]]
    if instruction["repeatable"]:
        rows[-1][3] += (" " if rows[-1][3] else "") + "<strong>May be repeated.</strong>"
    return table([("name", "name"), ("type", "type"), ("default", ""), ("", "")], rows,
                 "parameters")


def results(instruction):
    """The results as a table."""
    rows = [[f"<em>{escape(name_of(one))}</em>", type_of(one), escape(one["description"] or "")]
            for one in instruction["results"]]
    return table([("name", "name"), ("type", "type"), ("", "")], rows, "parameters")


def examples(example_table):
    """A table of examples; results and what is said stand out."""
    header = []
    for title in example_table.header:
        if title.startswith("→"):
            header.append((escape(title[1:].strip()), "result"))
        elif title == "draws":
            header.append(("draws", "result draws"))
        elif title == "says":
            header.append(("says", "says"))
        else:
            header.append((escape(title), "input"))
    rows = []
    for _, cells in example_table.rows:
        row = []
        for cell, (title, css) in zip(cells, header):
            text = cell.strip("`").strip() if cell.startswith("`") else cell
            if css == "says":
                kind = text.split(" ")[0]
                row.append(f'<span class="{escape(kind)}">{escape(text)}</span>' if text else "")
            elif title == "type":
                row.append(escape(text))
            else:
                row.append(code(text))
        rows.append(row)
    return table(header, rows, "examples")
