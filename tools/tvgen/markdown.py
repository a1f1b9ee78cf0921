"""Renders the project's Markdown documents as HTML for the API reference.

The subset its documents use: headings, paragraphs, bullet and numbered
lists (one level, continuation lines indented), tables, fenced code blocks,
and inline code, bold and links. A table row whose first cell is a function
name in code (`IDocuments_Open`) gets that name as its id, so a link can land
on the row, and the name links to where the caller says it is documented.
"""

import html
import re

_HEADING = re.compile(r"^(#{1,4}) (.*)$")
_ITEM = re.compile(r"^(?:- |\d+\. )(.*)$")
_ROW_NAME = re.compile(r"^`(I\w+_\w+)`$")
_INLINE = re.compile(r"\*\*(.+?)\*\*|\[([^\]]+)\]\(([^)\s]+)\)")


def slug(text):
    """The id of a heading: its words in lower case, joined by hyphens."""
    return re.sub(r"[^a-z0-9]+", "-", re.sub(r"`", "", text).lower()).strip("-")


def inline(text):
    """Code spans stay literal; elsewhere bold and links."""
    out = []
    for n, part in enumerate(text.split("`")):
        if n % 2:
            out.append(f"<code>{html.escape(part)}</code>")
        else:
            out.append(_INLINE.sub(_inline_match, html.escape(part, quote=False)))
    return "".join(out)


def _inline_match(m):
    if m.group(1) is not None:
        return f"<strong>{m.group(1)}</strong>"
    return f'<a href="{m.group(3)}">{m.group(2)}</a>'


def _cells(line):
    return [c.strip() for c in line.strip().strip("|").split("|")]


def _table(lines, row_href):
    head, rule, *rows = lines
    right = ["---:" in c for c in _cells(rule)]

    def row(tag, cells, first=None):
        html_cells = [first or inline(cells[0])] + [inline(c) for c in cells[1:]]
        attrs = [' class="num"' if n < len(right) and right[n] else "" for n in range(len(html_cells))]
        return "".join(f"<{tag}{a}>{c}</{tag}>" for a, c in zip(attrs, html_cells))

    out = ["<table>\n<tr>" + row("th", _cells(head)) + "</tr>\n"]
    for line in rows:
        cells = _cells(line)
        m = _ROW_NAME.match(cells[0])
        href = row_href(m.group(1)) if m and row_href else None
        first = f'<a href="{href}"><code>{m.group(1)}</code></a>' if href else None
        rid = f' id="{m.group(1)}"' if m else ""
        out.append(f"<tr{rid}>" + row("td", cells, first) + "</tr>\n")
    out.append("</table>\n")
    return "".join(out)


def to_html(text, row_href=None):
    """The body of an HTML page for a Markdown document; row_href(name) gives
    where a function row's name links to (None: no link)."""
    out, lines, n = [], text.splitlines(), 0
    while n < len(lines):
        line = lines[n]
        if line.startswith("```"):
            end = next((k for k in range(n + 1, len(lines)) if lines[k].startswith("```")), len(lines))
            out.append("<pre><code>" + html.escape("\n".join(lines[n + 1:end])) + "</code></pre>\n")
            n = end + 1
        elif _HEADING.match(line):
            level, title = _HEADING.match(line).groups()
            tag = f"h{len(level)}"
            out.append(f'<{tag} id="{slug(title)}">{inline(title)}</{tag}>\n')
            n += 1
        elif line.startswith("|"):
            end = n
            while end < len(lines) and lines[end].startswith("|"):
                end += 1
            out.append(_table(lines[n:end], row_href))
            n = end
        elif _ITEM.match(line):
            tag = "ul" if line.startswith("- ") else "ol"
            items = []
            while n < len(lines) and (_ITEM.match(lines[n]) or (items and lines[n].startswith("  "))):
                if _ITEM.match(lines[n]):
                    items.append(_ITEM.match(lines[n]).group(1))
                else:
                    items[-1] += " " + lines[n].strip()
                n += 1
            out.append(f"<{tag}>\n" + "".join(f"<li>{inline(i)}</li>\n" for i in items) + f"</{tag}>\n")
        elif not line.strip():
            n += 1
        else:
            para = []
            while n < len(lines) and lines[n].strip() and not _starts_block(lines[n]):
                para.append(lines[n].strip())
                n += 1
            out.append(f"<p>{inline(' '.join(para))}</p>\n")
    return "".join(out)


def _starts_block(line):
    return line.startswith(("```", "|")) or bool(_HEADING.match(line) or _ITEM.match(line))
