"""The pages of the site: one for each instruction, for each family, and one for all.

They lie in the folders of the sources, so that links between them hold: docs/instructions has
HELP.md for each instruction, IDENTIFIER.html which leads there, FAMILY.md and index.md.
"""

import json
import re
import shutil
from html import escape

from reference import html
from reference.checks import CODE
from reference.entries import read_page

PLAIN_FILES = ["LICENSE", "docs/program.schema.json", "docs/host_functions.txt"]
GUIDES = ["README.md", "CONTRIBUTING.md", "CHANGELOG.md"]
LINK = re.compile(r"\]\(([\w.]+\.md)?(#[^)\s]*)?\)")
MARKS = re.compile(r"(?<!\w)[*`]+|[*`]+(?!\w)|\]\([^)]*\)|(?<!\w)\[")


class Site:
    def __init__(self, root, library, programs):
        """programs: the pictures' programs by identifier."""
        self.root = root
        self.library = library
        self.programs = programs
        self.pages = [read_page(path) for path in
                      sorted((root / "docs/instructions").glob("*.md"), key=self.order_of)]
        self.entry_of = {}  # by identifier
        self.page_of = {}
        self.by_place = {}  # (file, anchor): entry
        for page in self.pages:
            for entry in page.entries:
                self.by_place[page.path.name, entry.anchor] = entry
                for identifier in entry.identifiers:
                    self.entry_of[identifier] = entry
                    self.page_of[identifier] = page

    def order_of(self, path):
        """Families in the order of the catalogue."""
        positions = [self.library.by_identifier[one]["index"] for entry in read_page(path).entries
                     for one in entry.identifiers if one in self.library.by_identifier]
        return min(positions, default=0)

    def write(self, folder):
        """Writes all pages below a folder; gives what is missing, as texts."""
        missing = [f"no entry: {one['identifier']}" for one in self.library.instructions
                   if one["identifier"] not in self.entry_of]
        if missing:
            return missing
        self.copy_guides(folder)
        out = folder / "docs/instructions"
        out.mkdir(parents=True, exist_ok=True)
        for instruction in self.library.instructions:
            text = self.instruction_page(instruction)
            (out / f"{instruction['help']}.md").write_text(text, encoding="utf-8")
            target = f"{instruction['help']}.html"
            (out / f"{instruction['identifier']}.html").write_text(
                f'<!doctype html><meta charset="utf-8"><title>{escape(instruction["name"])}</title>'
                f'<meta http-equiv="refresh" content="0; url={target}">'
                f'<a href="{target}">{escape(instruction["name"])}</a>\n', encoding="utf-8")
        for page in self.pages:
            (out / page.path.name).write_text(self.family_page(page), encoding="utf-8")
        (out / "index.md").write_text(self.all_page(), encoding="utf-8")
        for identifier, text in self.programs.items():
            (out / "pictures").mkdir(exist_ok=True)
            (out / "pictures" / f"{identifier}.json").write_text(text, encoding="utf-8")
        shutil.copytree(self.root / "docs/site", folder / "site",
                        ignore=shutil.ignore_patterns("*.yml"), dirs_exist_ok=True)
        (folder / "site/instructions.js").write_text(self.index(), encoding="utf-8")
        return []

    def copy_guides(self, folder):
        for name in [*GUIDES, *PLAIN_FILES]:
            target = folder / name
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(self.root / name, target)
        for kind in ("*.md", "*.svg"):
            for path in (self.root / "docs").glob(kind):
                shutil.copy(path, folder / "docs" / path.name)
        shutil.copytree(self.root / "examples", folder / "examples", dirs_exist_ok=True)

    def navigation(self):
        guides = sorted(path.name for path in (self.root / "docs").glob("*.md"))
        examples = sorted(path.parent.name for path in self.root.glob("examples/*/README.md"))
        return [
            {"Start": "README.md"},
            {"Instructions": [{"All instructions": "docs/instructions/index.md"},
                              *({page.title: f"docs/instructions/{page.path.name}"}
                                for page in self.pages)]},
            {"Guides": [{self.title_of(name): name} for name in
                        [*(f"docs/{name}" for name in guides), *GUIDES[1:]]]},
            {"Examples": [f"examples/{name}/README.md" for name in examples]},
        ]

    def title_of(self, name):
        """A guide's title without marks, which the navigation would show."""
        return (self.root / name).read_text(encoding="utf-8").split("\n")[0].strip("# ").replace("`", "")

    def linked(self, text, page, category=None):
        """Markdown with links to entries turned into links to instructions' pages, those of the
        same category where an entry is about several; and without the escapes of quotes, which
        MkDocs would show."""
        def target(found):
            name, anchor = found[1] or page.path.name, found[2] or ""
            entry = self.by_place.get((name, anchor[1:]))
            if entry is None:
                return found[0]
            bound = [self.library.by_identifier[one] for one in entry.identifiers]
            same = [one for one in bound if one["category"] == category]
            return f"]({(same or bound)[0]['help']}.md)"
        parts = []
        at = 0
        for found in CODE.finditer(text):
            parts += [LINK.sub(target, text[at:found.start()]).replace('\\"', '"'), found[0]]
            at = found.end()
        return "".join(parts) + LINK.sub(target, text[at:]).replace('\\"', '"')

    def instruction_page(self, instruction):
        entry = self.entry_of[instruction["identifier"]]
        page = self.page_of[instruction["identifier"]]
        blocks = [block for block in entry.blocks if not block.lines[0].startswith("![")]
        category = instruction["category"]
        name = instruction["name"].strip()
        parts = [
            f"---\ntitle: {json.dumps(name)}\n---\n",
            f'<p class="crumbs" markdown="1">[All instructions](index.md) › '
            f'[{page.title}]({page.path.name})</p>\n',
            f"# {name}\n",
            self.about(instruction, entry),
            self.markdown(blocks[0], page, category),
            self.picture(instruction),
        ]
        for title, kind in (("Constant parameters", "constants"), ("Inputs", "inputs"),
                            ("Results", "results")):
            if instruction[kind]:
                parts += [f"## {title}\n", getattr(html, kind)(instruction)]
        parts += self.details(blocks[1:], page, category)
        parts += ["## In the host\n", self.facts(instruction)]
        return "\n".join(part for part in parts if part)

    def details(self, blocks, page, category):
        """The text behind the first paragraph, with headings before it and before its examples."""
        parts = []
        headings = {False: "## Details\n", True: "## Examples\n"}
        for at, block in enumerate(blocks):
            is_example = block.table is not None and block.table.has_examples
            following = blocks[at + 1].table if at + 1 < len(blocks) else None
            leads_in = block.text.endswith(":") and following is not None and following.has_examples
            if is_example or leads_in:
                headings.pop(False, None)
                parts.append(headings.pop(True, ""))
            elif not block.text.startswith("See also:"):
                parts.append(headings.pop(False, ""))
            parts.append(html.examples(block.table) if is_example
                         else self.markdown(block, page, category))
        return parts

    def markdown(self, block, page, category):
        return self.linked("\n".join(block.lines), page, category) + "\n"

    def picture(self, instruction):
        identifier = instruction["identifier"]
        if identifier not in self.programs:
            return ""
        return (f'<figure class="picture"><img src="pictures/{identifier}.svg" alt="What '
                f'{escape(instruction["name"].strip())} draws or measures"><figcaption><details>'
                f'<summary>The program that draws it</summary><pre><code>'
                f'{escape(self.programs[identifier])}</code></pre>Save it as <code>program.json'
                f'</code> and run <code>nuvhost run program.json --overlay picture.svg</code>'
                f'</details></figcaption></figure>\n')

    def about(self, instruction, entry):
        """The line below the heading: category, identifier, and the same for other types."""
        line = f"{escape(instruction['category'])} · {html.code(instruction['identifier'])}"
        others = [self.library.by_identifier[one] for one in entry.identifiers
                  if one != instruction["identifier"]]
        if others:
            line += " · also for " + ", ".join(
                f'<a href="{one["help"]}.html">{escape(one["category"])}</a>' for one in others)
        return f'<p class="about">{line}</p>\n'

    def facts(self, instruction):
        rows = [["Category", escape(instruction["category"])],
                ["Identifier", html.code(instruction["identifier"])],
                ["Help number", html.code(str(instruction["help"]))],
                ["Position", html.code(str(instruction["index"]))],
                ["Description", escape(instruction["description"] or "")]]
        return html.table([("", "name"), ("", "")], rows, "facts")

    def family_page(self, page):
        """A family's introduction, and its operations with what they do."""
        parts = [f"# {page.title}\n"]
        parts += [self.markdown(block, page, None) for block in page.introduction]
        for entry in page.entries:
            bound = [self.library.by_identifier[one] for one in entry.identifiers]
            summary = self.linked(entry.summary, page)
            parts.append(f"## [{entry.heading}]({bound[0]['help']}.md)\n")
            parts.append(summary + "\n")
            if len(bound) > 1:
                parts.append("For " + ", ".join(f"[{one['category'].removeprefix('Array: ')}]"
                                                f"({one['help']}.md)" for one in bound) + ".\n")
        return "\n".join(parts)

    def all_page(self):
        """All instructions by category, to be narrowed by find.js."""
        parts = ["---\ntitle: All instructions\n---\n", "# All instructions\n",
                 f"{len(self.library.instructions)} instructions by category. Type what you look "
                 "for: a name, an identifier, an input, any words of the text; all must occur.\n",
                 '<div id="find-all" class="find"></div>\n']
        categories = list(dict.fromkeys(one["category"] for one in self.library.instructions))
        for category in categories:
            rows = "".join(
                f'<tr id="{one["identifier"]}"><td><a href="{one["help"]}.html">'
                f'{escape(one["name"].strip())}</a></td><td>{escape(one["summary"])}</td></tr>\n'
                for one in self.library.instructions if one["category"] == category)
            parts.append(f"## {category}\n\n<div class=\"table\"><table class=\"all\"><tbody>\n"
                         f"{rows}</tbody></table></div>\n")
        return "\n".join(parts)

    def index(self):
        """What find.js looks through, as a script, since a page from a file may load no other."""
        rows = []
        for one in self.library.instructions:
            entry = self.entry_of[one["identifier"]]
            text = " ".join(block.text for block in entry.blocks)
            rows.append({
                "name": one["name"].strip(), "category": one["category"],
                "identifier": one["identifier"], "help": one["help"], "summary": one["summary"],
                "parameters": " ".join(parameter["name"] or "" for kind in
                                       ("constants", "inputs", "results") for parameter in one[kind]),
                "text": MARKS.sub("", f"{one['description'] or ''} {text}")})
        return "window.formulaInstructions = " + json.dumps(rows, ensure_ascii=False) + ";\n"
