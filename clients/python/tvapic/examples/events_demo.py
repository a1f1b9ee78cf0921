#!/usr/bin/env python3
"""Event handlers in process: Python functions the application calls when
something happens, as a plug-in's are.

    python3 -m tvapic.examples.events_demo

Outside the application it starts the simulated host first (see
inprocess_demo). It subscribes to the application's new documents and to a
drawing's new and deleted objects, makes a drawing and two line segments,
deletes one, and prints each event as it arrives. A handler runs on the
thread that raises the event; the objects it receives are lent for the call.
"""
import sys

from tvapic import Error, native, objects
from tvapic.objects import require

KEY = "events-demo"   # handlers registered under a key are removed together
DRAWING = 1


def on_document_created(document):
    print(f"  event CreateDocument: {document.GetName()}")


def on_objects_created(created):
    print(f"  event CreateObject: {len(created)} new object(s)")
    return True   # true: the application goes on


def on_objects_deleted(deleted):
    print(f"  event Delete: {len(deleted)} object(s)")
    return True


def run():
    app = objects.application()
    events = require(app.Events()).query(objects.IApplicationEvents)
    events.AddCreateDocumentHandler(KEY, on_document_created)
    print("Subscribed to CreateDocument; adding a drawing:")
    documents = require(app.GetDocuments())
    drawing = require(documents.Add(DRAWING, True)).query(objects.ITavraDocument2D)

    object_events = require(drawing.GetObject2DEvents(KEY)).query(objects.IDrawingObjectEvents)
    object_events.AddCreateObjectHandler(on_objects_created)
    object_events.AddDeleteHandler(on_objects_deleted)
    print("Subscribed to the drawing's CreateObject and Delete; adding two segments, deleting one:")
    view = require(require(require(drawing.GetViewsAndLayersManager()).GetViews()).GetActiveView())
    segments = require(view.query(objects.IDrawingContainer).GetLineSegments())
    first, second = require(segments.Add()), require(segments.Add())
    second.SetX2(50.0)
    first.query(objects.IDrawingObject).Delete()

    object_events.RemoveAllHandlers()
    events.RemoveAllHandlers(KEY)
    drawing.query(objects.ITavraDocument).Close(False)
    print("Handlers removed; the drawing closed.")


def main():
    try:
        native.start_simulated_host()   # outside the application only: inside it, the application is the host
        run()
    except (Error, OSError) as e:       # OSError: no libtvAPIC or libtvsim to load
        print(f"events_demo: {e}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
