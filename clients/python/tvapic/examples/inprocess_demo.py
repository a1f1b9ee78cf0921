#!/usr/bin/env python3
"""The object layer in process: the application's objects as Python objects,
called through libtvAPIC in this very process.

    python3 -m tvapic.examples.inprocess_demo [--files FOLDER]

Outside the application it starts the simulated host first (libtvsim,
beside libtvAPIC or at TVSIM_LIBRARY); libtvAPIC itself is found beside
the package, at TVAPIC_LIBRARY or by the system's loader. It draws a
triangle, reads its segments' coordinates (doubles, which only the
in-process calls carry), saves the drawing in FOLDER (by default a new
temporary folder) and reads it back.
"""
import argparse
import sys
import tempfile
from pathlib import Path

from tvapic import Error, native, objects
from tvapic.objects import require

DRAWING = 1  # the simulated host's document type for a two-dimensional drawing


def draw(folder):
    app = objects.application()
    print(f"{app.GetApplicationName(True)}, in process through {native.library_path()}")
    documents = require(app.GetDocuments())
    with require(documents.Add(DRAWING, True)) as document:
        drawing = document.query(objects.ITavraDocument2D)
        manager = require(drawing.GetViewsAndLayersManager())
        view = require(require(manager.GetViews()).GetActiveView()).query(objects.IDrawingContainer)
        segments = require(view.GetLineSegments())
        corners = [(0.0, 0.0), (90.0, 0.0), (0.0, 40.0)]
        for (x1, y1), (x2, y2) in zip(corners, corners[1:] + corners[:1]):
            with require(segments.Add()) as segment:
                segment.SetX1(x1)
                segment.SetY1(y1)
                segment.SetX2(x2)
                segment.SetY2(y2)
                print(f"  segment ({segment.GetX1():g}, {segment.GetY1():g}) - ({segment.GetX2():g}, "
                      f"{segment.GetY2():g}), length {segment.GetLength():g}")
        x1, y1, x2, y2, ok = drawing.GetObjectsGabarit([])   # no objects named: all of them
        print(f"  bounding box ({x1:g}, {y1:g}) - ({x2:g}, {y2:g})")
        path = str(Path(folder) / "triangle.tvd")
        print(f"  saved as {path}: {document.SaveAs(path)}")
        document.Close(False)
        for o in (segments, view, manager, drawing):
            o.release()
    with require(documents.Open(path, True, False)) as reopened:
        again = reopened.query(objects.ITavraDocument2D).GetObjectsGabarit([])
        print(f"  reopened {reopened.GetName()}: bounding box ({again[0]:g}, {again[1]:g}) - "
              f"({again[2]:g}, {again[3]:g})")
        reopened.Close(False)
    documents.release()
    return again[:4] == (x1, y1, x2, y2)


def main(argv=None):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--files", help="the folder to save in (default: a new temporary folder)")
    args = parser.parse_args(argv)
    try:
        native.start_simulated_host()   # outside the application only: inside it, the application is the host
        with tempfile.TemporaryDirectory() as scratch:
            same = draw(args.files or scratch)
    except (Error, OSError) as e:       # OSError: no libtvAPIC or libtvsim to load
        print(f"inprocess_demo: {e}", file=sys.stderr)
        return 1
    print("The drawing came back as it was saved." if same else "The drawing did NOT come back as saved.")
    return 0 if same else 1


if __name__ == "__main__":
    sys.exit(main())
