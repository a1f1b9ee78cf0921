"""The examples of README.md and clients/python/README.md as a new user
copies them: each code block follows a marker `<!-- example: NAME -->`, and
every C, Python and C# block is marked, so none is left untried. What each
prints is written down here, apart from the READMEs."""
import re
from pathlib import Path

MARKED = re.compile(r"<!-- example: ([\w-]+) -->\n```(\w+)\n(.*?)```", re.S)
BLOCK = re.compile(r"(<!-- example: [\w-]+ -->\n)?```(c|python|csharp)\n", re.S)

# The examples each README must have, by name and language.
EXPECTED = {
    "README.md": {"first": "c", "c-build": "sh", "events": "c", "remote": "python", "in-process": "python",
                  "python-build-tree": "sh", "csharp": "csharp", "csharp-build": "sh", "csharp-remote": "csharp"},
    "clients/python/README.md": {"client": "python", "native": "python", "objects": "python", "cli": "sh"},
}

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
    """{name: code} of every marked example of both READMEs, checked against EXPECTED."""
    found, problems = {}, []
    for readme, expected in EXPECTED.items():
        text = (Path(source) / readme).read_text(encoding="utf-8")
        marked = {name: (language, code) for name, language, code in MARKED.findall(text)}
        unmarked = sum(1 for m in BLOCK.finditer(text) if not m.group(1))
        if unmarked:
            problems.append(f"{readme}: {unmarked} C, Python or C# blocks without an example marker")
        if {name: language for name, (language, _) in marked.items()} != expected:
            problems.append(f"{readme}: examples {sorted(marked)}, expected {sorted(expected)}")
        found.update({name: code for name, (_, code) in marked.items()})
    return found, problems


def check_output(name, output):
    """A problem with what an example printed, or None."""
    if re.fullmatch(PRINTS[name], output):
        return None
    return f"the example {name} printed {output!r}, expected /{PRINTS[name]}/"
