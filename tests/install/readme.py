"""The READMEs' examples: each code block follows `<!-- example: NAME -->`,
every C, Python and C# block is one, and what each prints is written here."""
import re
from pathlib import Path

MARKED = re.compile(r"<!-- example: ([\w-]+) -->\n```\w+\n(.*?)```", re.S)
BLOCK = re.compile(r"(<!-- example: [\w-]+ -->\n)?```(c|python|csharp)\n", re.S)
EXAMPLES = {"README.md": {"first", "c-build", "events", "remote", "in-process", "python-build-tree", "csharp",
                          "csharp-build", "csharp-remote"},
            "clients/python/README.md": {"client", "native", "objects", "cli"}}
problems = []   # what is amiss with the examples or what they printed

# What they print, as far as it is fixed: a regular expression the whole output matches.
PRINTS = {
    "first": r"Document1: a segment 50 long\n",
    "events": r"created a document; its name has 9 units\n1 drawing object\(s\) created\n",
    "csharp": r"1 drawing object\(s\) created\nDocument1 by Ada: a segment 50 long\n",
    "csharp-remote": r"Document\d+ by Ada\n",
    "remote": r"Document\d+ Ada \(0\.0, 0\.0, 210\.0, 297\.0\)\n",
    "in-process": r"Document1 \d+\.\d+\n",
    "client": r"Tavra simulated host 2611\nTrue\n",
    "native": r"Ada \(0\.0, 0\.0, 210\.0, 297\.0\)\n",
    "objects": r"Sheet\n",
    "cli": r"Document\d+\n26\n1\n0\n2611\ntrue\ntrue\n",
}


def examples(source):
    """{name: code} of both READMEs' examples; an unmarked block or a missing example is a problem."""
    found = {}
    for readme, names in EXAMPLES.items():
        text = (Path(source) / readme).read_text(encoding="utf-8")
        marked = dict(MARKED.findall(text))
        if any(not m.group(1) for m in BLOCK.finditer(text)) or set(marked) != names:
            problems.append(f"{readme}: examples {sorted(marked)}, expected {sorted(names)}, and no C, Python or "
                            "C# block without an example marker")
        found.update(marked)
    return found


def expect(name, output):
    if not re.fullmatch(PRINTS[name], output):
        problems.append(f"the example {name} printed {output!r}, expected /{PRINTS[name]}/")
