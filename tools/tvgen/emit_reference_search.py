"""Emits the API reference's search-index.js: every name the search finds,
with the page that documents it."""

import json

from .model import families


def emit(ref):
    """The names the search finds, each with the page that documents it (at
    the anchor of its own name): 'name page-number' a line."""
    entries = [(name, page) for name, page in ref.page_of.items()]
    entries += [(op.export, ref.page_of[op.interface.name]) for op in ref.model.ops()]
    entries += [(e.export, ref.page_of[e.source.name]) for e in ref.model.events()]
    entries += [(name, "enums.html") for name in ref.model.enums()]
    entries += [(proto.name, "index.html") for proto in families.HANDLE_BASE + families.container_prototypes()]
    pages = sorted({page for _, page in entries})
    lines = "\\n".join(f"{name} {pages.index(page)}" for name, page in entries)
    return ("// Generated from the catalogue: every name the search finds and the page that documents it.\n"
            f"const TVAPIC_PAGES = {json.dumps(pages)};\nconst TVAPIC_INDEX = \"{lines}\";\n")
