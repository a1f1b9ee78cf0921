using System;
using System.Collections.Generic;
using System.IO;
using System.Runtime.InteropServices;
using TvApic;
using TvApic.Objects;

// The object layer in this process against the simulated host: a drawing
// with a segment, saved and opened again, the events on the way, and every
// reference given back at the end.
static class InProcessTest
{

    const string Author = "Ἀριστοτέλης \U0001D11E";   // outside the BMP: a surrogate pair in UTF-16
    const string FileName = "Чертёж.tvd";

    public static void Run()
    {
        string folder = Path.Combine(Path.GetTempPath(), "tvapic-dotnet-" + Guid.NewGuid().ToString("N"));
        Directory.CreateDirectory(folder);
        BeforeTheHost();
        SimulatedHost.Start();
        try
        {
            References();
            CallbackWrites();
            Scene(Path.Combine(folder, FileName));
        }
        finally
        {
            Check.Equal(0L, ApiObject.Outstanding, "references still held by objects of the binding");
            Check.Equal(0, Handlers.Count, "callbacks still kept after RemoveAllHandlers");
            if (ApiObject.Outstanding == 0) SimulatedHost.Stop();   // stopping frees what held handles point to
            Directory.Delete(folder, true);
        }
    }

    // Before the simulated host starts, a rooted call throws, saying what to call; nothing else is lost.
    static void BeforeTheHost()
    {
        string message = null;
        try { IApplication.GetDocuments(); }
        catch (NoApplicationException e) { message = e.Message; }
        Check.Equal("IApplication_GetDocuments: no application in this process. Outside the application, start the "
                    + "simulated host first: TvApic.SimulatedHost.Start()", message, "a rooted call before Start");
        Check.Equal(0L, ApiObject.Outstanding, "nothing held after the refused call");
    }

    static int Count(ApiObject o)
    {
        int count = Native.IAPIObject_AddRef(o.Handle);
        Native.IAPIObject_Release(o.Handle);
        return count - 1;
    }

    // Each object holds one reference: Query takes another, Dispose gives one back, once.
    static void References()
    {
        IDocuments documents = IApplication.GetDocuments();
        int held = Count(documents);
        IDocuments again = documents.Query<IDocuments>();
        Check.Equal(held + 1, Count(documents), "Query takes a reference");
        Check.That(again.IsSameObject(documents) && again != documents, "Query gives a new object of the same host object");
        again.Dispose();
        again.Dispose();
        Check.Equal(held, Count(documents), "a second Dispose gives nothing back");
        bool refused = false;
        try { again.IsRecoverMode(); } catch (ObjectDisposedException) { refused = true; }
        Check.That(refused, "a disposed object refuses calls");
        documents.Dispose();
    }

    // What a handler writes goes back through the callback's own memory: a
    // text slot, a list whose contents are exchanged for new ones.
    static void CallbackWrites()
    {
        IntPtr slot = Marshal.AllocHGlobal(IntPtr.Size);
        Marshal.WriteIntPtr(slot, IntPtr.Zero);
        Text.ToSlot(slot, null);
        Check.Equal(IntPtr.Zero, Marshal.ReadIntPtr(slot), "no text written: the slot stays empty");
        Text.ToSlot(slot, "été \U0001D11E");
        Check.Equal("été \U0001D11E", Text.Borrow(Marshal.ReadIntPtr(slot)), "a text written to the slot");
        Marshal.FreeHGlobal(slot);

        IntPtr list = Native.StringVector_Create(2);
        Native.StringVector_Set(list, 0, "a");
        Native.StringVector_Set(list, 1, "b");
        IntPtr block = Vectors.Data(list);
        Vectors.ReplaceStrings(list, new[] { "a", "b" });
        Check.Equal(block, Vectors.Data(list), "an unchanged list keeps its block");
        Vectors.ReplaceStrings(list, new[] { "Ä", null, "c" });
        Check.Sequence(new[] { "Ä", "", "c" }, Vectors.ReadStringVector(list), "a longer list written back");
        Vectors.ReplaceStrings(list, null);
        Check.Sequence(new string[0], Vectors.ReadStringVector(list), "no list: the empty list");
        Native.StringVector_Delete(list);
    }

    static void Scene(string path)
    {
        var createdDocuments = new List<string>();
        var createdObjects = new List<ILineSegment>();
        using (IAPIObject events = IApplication.Events())
        using (IApplicationEvents applicationEvents = events.Query<IApplicationEvents>())
        using (IDocuments documents = IApplication.GetDocuments())
        {
            applicationEvents.AddCreateDocumentHandler("dotnet", document => createdDocuments.Add(document.GetName()));
            double length;
            using (ITavraDocument document = documents.Add(1, true))
            using (ITavraDocument2D drawing = document.Query<ITavraDocument2D>())
            {
                Check.Sequence(new[] { document.GetName() }, createdDocuments, "CreateDocument received the new document");
                document.SetAuthor(Author);
                Check.Equal(Author, document.GetAuthor(), "text through SetAuthor and GetAuthor");

                using (IAPIObject objectEvents = drawing.GetObject2DEvents("dotnet"))
                using (IDrawingObjectEvents drawingEvents = objectEvents.Query<IDrawingObjectEvents>())
                {
                    // A handler keeps what it receives only through a reference of its own.
                    drawingEvents.AddCreateObjectHandler(objects =>
                    {
                        foreach (IDrawingObject o in objects) createdObjects.Add(o.Query<ILineSegment>());
                        return true;
                    });
                    // A handler's exception stays on this side of the host.
                    var thrown = new List<string>();
                    Handlers.OnException = (export, e) => thrown.Add(export + ": " + e.Message);
                    drawingEvents.AddCreateObjectHandler(objects => { throw new InvalidOperationException("refused"); });
                    length = DrawSegments(drawing, createdObjects);
                    drawingEvents.RemoveAllHandlers();
                    Check.Equal(3, thrown.Count, "a throwing handler reported for each CreateObject");
                    Check.That(thrown.TrueForAll(t => t == "IDrawingObjectEvents_AddCreateObjectHandler: refused"),
                               "the exception reported with its registration");
                }
                double x1 = -1, y1 = -1, x2 = -1, y2 = -1;
                Check.That(document.GetDocumentGabarit(ref x1, ref y1, ref x2, ref y2), "GetDocumentGabarit answers");
                Check.Sequence(new[] { 0.0, 0.0, 210.0, 297.0 }, new[] { x1, y1, x2, y2 }, "the A4 sheet through out-parameters");
                string[] files = { "stale" };
                Check.Equal(0, document.GetExternalFilesNames(false, ref files), "GetExternalFilesNames");
                Check.Sequence(new string[0], files, "an in/out list refilled by the host");
                Check.That(document.SaveAs(path), "SaveAs " + path);
                Check.Equal(FileName, document.GetName(), "the saved document's name");
                Check.That(document.Close(false), "Close");
            }
            foreach (ILineSegment s in createdObjects) s.Dispose();
            Reopen(documents, path, length);
            applicationEvents.RemoveAllHandlers("dotnet");
        }
    }

    static double DrawSegments(ITavraDocument2D drawing, List<ILineSegment> created)
    {
        using (IViewsAndLayersManager manager = drawing.GetViewsAndLayersManager())
        using (IViews views = manager.GetViews())
        using (IView view = views.GetActiveView())
        using (IDrawingContainer container = view.Query<IDrawingContainer>())
        using (ILineSegments segments = container.GetLineSegments())
        using (ILineSegment first = segments.Add())
        using (ILineSegment second = segments.Add())
        {
            first.SetX2(120.0);
            first.SetY2(50.0);
            second.SetX1(120.0);
            Check.Equal(130.0, first.GetLength(), "the first segment's length");
            Check.Equal(2, created.Count, "CreateObject ran for each Add");
            Check.That(created.Count == 2 && created[0].IsSameObject(first), "the handler's object is the segment added");

            // Objects in and out through C vectors: copies of both segments, then destroyed.
            using (IDrawingObject firstObject = first.Query<IDrawingObject>())
            using (IDrawingObject secondObject = second.Query<IDrawingObject>())
            {
                IDrawingObject[] copies = drawing.CopyObjects(drawing, new[] { firstObject, secondObject });
                Check.Equal(2, copies == null ? -1 : copies.Length, "CopyObjects answers one copy per object");
                Check.That(drawing.DestroyObjects(copies), "DestroyObjects takes the copies");
                foreach (IDrawingObject copy in copies) copy.Dispose();
                Check.Equal(4, created.Count, "CreateObject ran for the copies");
            }
            using (IDrawingObject firstObject = first.Query<IDrawingObject>())
            using (IDrawingObject found = drawing.GetObjectById(new[] { firstObject.GetId() }))
                Check.That(found != null && found.IsSameObject(first), "GetObjectById: a DoubleVector argument");
            IDrawingObject[] drawn = container.GetObjects();
            Check.Equal(2, drawn.Length, "GetObjects: the two segments");
            foreach (IDrawingObject o in drawn) o.Dispose();
            return first.GetLength();
        }
    }

    static void Reopen(IDocuments documents, string path, double length)
    {
        using (ITavraDocument document = documents.Open(path, true, false))
        {
            Check.That(document != null, "Open " + path);
            if (document == null) return;
            Check.Equal(Author, document.GetAuthor(), "the author read back from the file");
            using (ITavraDocument2D drawing = document.Query<ITavraDocument2D>())
            using (IViewsAndLayersManager manager = drawing.GetViewsAndLayersManager())
            using (IViews views = manager.GetViews())
            using (IView view = views.GetActiveView())
            using (IDrawingContainer container = view.Query<IDrawingContainer>())
            using (ILineSegments segments = container.GetLineSegments())
            using (ILineSegment first = segments.GetLineSegment(0))
            {
                Check.Equal(length, first == null ? -1 : first.GetLength(), "the first segment read back");
            }
            int active = -1;
            Check.Sequence(new[] { "Base" }, documents.GetLoadCombinations(path, ref active),
                           "a string vector result: the file's load combinations");
            Check.Equal(0, active, "the active load combination through an out-parameter");
            Check.That(document.Close(false), "Close the opened document");
        }
    }
}
