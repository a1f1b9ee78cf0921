"""Emits the API reference's protocol.html: docs/protocol.md as a page,
its function names linked to where they are documented."""

from . import markdown
from .reference_pages import page


def emit(ref):
    text = (ref.docs / "protocol.md").read_text(encoding="utf-8")
    return page("The remote call protocol", markdown.to_html(text, lambda name: ref.export_href(name)))
