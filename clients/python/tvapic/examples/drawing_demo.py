#!/usr/bin/env python3
"""A remote client at work: it drives the application running in another
process through the API Server, step by step, and prints what it did.

    python3 -m tvapic.examples.drawing_demo [--host H] [--port N]

It creates a drawing, draws a small frame of line segments in the active
view, reads their bounding box back (doubles leave the server only through
slots), saves the drawing in the application's current directory, closes
it, reopens it, checks what came back and deletes the file again.
"""
import argparse
import os
import sys

from tvapic import Client, Error

DRAWING = 1  # the simulated host's document type for a two-dimensional drawing


class Failed(Exception):
    """A step the application refused: the demonstration stops with a sentence."""


def step(text, value=None):
    print(f"  {text:<58} {'' if value is None else value}")


def draw(app):
    print(f"Driving {app.IApplication_GetApplicationName(True)} on {app.host}:{app.port}")
    *version, ok = app.IApplication_GetSystemVersion(0, 0, 0, 0)
    step("IApplication_GetSystemVersion", ".".join(map(str, version)))

    documents = app.IApplication_GetDocuments()
    drawing = app.IDocuments_Add(documents, DRAWING, True)
    step("IDocuments_Add(drawing) -> name", app.ITavraDocument_GetName(drawing))
    app.ITavraDocument_SetAuthor(drawing, "Remote client")

    views = app.IViewsAndLayersManager_GetViews(app.ITavraDocument2D_GetViewsAndLayersManager(drawing))
    view = app.IViews_GetActiveView(views)
    segments = app.IDrawingContainer_GetLineSegments(view)
    corners = [(0, 0, 120, 0), (120, 0, 120, 80), (120, 80, 0, 80), (0, 80, 0, 0), (0, 0, 120, 80)]
    for x1, y1, x2, y2 in corners:
        segment = app.ILineSegments_Add(segments)
        app.ILineSegment_SetX1(segment, x1)
        app.ILineSegment_SetY1(segment, y1)
        app.ILineSegment_SetX2(segment, x2)
        app.ILineSegment_SetY2(segment, y2)
        app.IDrawingObject_Update(segment)
    step("ILineSegments_Add x5, coordinates set", f"{len(corners)} segments")

    x1, y1, x2, y2, ok = app.ITavraDocument2D_GetObjectsGabarit(drawing, 0.0, 0.0, 0.0, 0.0)
    step("ITavraDocument2D_GetObjectsGabarit (f64 slots)", f"({x1:g}, {y1:g}) - ({x2:g}, {y2:g})")

    # The file is the application's to write: a relative name lands in its
    # current directory, wherever the client runs.
    name = f"tvapic-demo-{os.getpid()}.tvd"
    folder = app.IApplication_GetCurrentDirectory()
    if not app.ITavraDocument_SaveAs(drawing, name):
        raise Failed(f"The application did not save {name} in its current directory {folder}: it may not write "
                     "there (tvhost writes below its --files folder only).")
    step("ITavraDocument_SaveAs, GetPath", app.ITavraDocument_GetPath(drawing) + name)
    step("ITavraDocument_Close", app.ITavraDocument_Close(drawing, False))

    reopened = app.IDocuments_Open(documents, name, True, False)
    if reopened is None:
        raise Failed(f"The application did not open {name} again from {folder}.")
    step("IDocuments_Open -> name, author",
         f"{app.ITavraDocument_GetName(reopened)}, {app.ITavraDocument_GetAuthor(reopened)}")
    again = app.ITavraDocument2D_GetObjectsGabarit(reopened, 0.0, 0.0, 0.0, 0.0)
    step("bounding box after reopening", f"({again[0]:g}, {again[1]:g}) - ({again[2]:g}, {again[3]:g})")
    step("ITavraDocument_Delete (the file, then the document)", app.ITavraDocument_Delete(reopened))

    return (x1, y1, x2, y2) == tuple(again[:4]) == (0, 0, 120, 80)


def main(argv=None):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--host", default="127.0.0.1")
    parser.add_argument("--port", type=int, default=8001)
    args = parser.parse_args(argv)
    try:
        same = draw(Client(args.host, args.port))
    except (Error, Failed, OSError) as e:   # OSError: the connection failed midway
        print(f"drawing_demo: {e}", file=sys.stderr)
        return 1
    print("The drawing came back as it was saved." if same else "The drawing did NOT come back as saved.")
    return 0 if same else 1


if __name__ == "__main__":
    sys.exit(main())
