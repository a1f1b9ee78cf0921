using System;
using System.IO;
using TvApic;
using TvApic.Objects;

// The object layer in process: draws a triangle, reads its segments back,
// saves the drawing in a new temporary folder and opens it again.
//   MONO_PATH=build/lib mono build/dotnet/drawing.exe
// Outside the application it starts the simulated host first (libtvsim,
// beside TvApic.dll); inside it, the calls reach the application.
static class Drawing
{
    const int DrawingType = 1;   // the simulated host's document type for a two-dimensional drawing

    static double[] Box(ITavraDocument2D drawing)
    {
        double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
        drawing.GetObjectsGabarit(null, ref x1, ref y1, ref x2, ref y2);   // no objects named: all of them
        return new[] { x1, y1, x2, y2 };
    }

    static string Show(double[] box) { return "(" + box[0] + ", " + box[1] + ") - (" + box[2] + ", " + box[3] + ")"; }

    static void DrawTriangle(ITavraDocument2D drawing)
    {
        double[] xs = { 0, 90, 0 }, ys = { 0, 0, 40 };
        using (IViewsAndLayersManager manager = drawing.GetViewsAndLayersManager())
        using (IViews views = manager.GetViews())
        using (IView view = views.GetActiveView())
        using (IDrawingContainer container = view.Query<IDrawingContainer>())   // a view is a drawing container
        using (ILineSegments segments = container.GetLineSegments())
        {
            for (int n = 0; n < 3; ++n)
                using (ILineSegment segment = segments.Add())
                {
                    segment.SetX1(xs[n]);
                    segment.SetY1(ys[n]);
                    segment.SetX2(xs[(n + 1) % 3]);
                    segment.SetY2(ys[(n + 1) % 3]);
                    Console.WriteLine("  segment (" + segment.GetX1() + ", " + segment.GetY1() + ") - (" + segment.GetX2()
                                      + ", " + segment.GetY2() + "), length " + segment.GetLength());
                }
        }
    }

    // True when the drawing opened again has the box it was saved with.
    static bool SaveAndReopen(IDocuments documents, string path)
    {
        double[] saved;
        using (ITavraDocument document = documents.Add(DrawingType, true))
        using (ITavraDocument2D drawing = document.Query<ITavraDocument2D>())
        {
            DrawTriangle(drawing);
            saved = Box(drawing);
            Console.WriteLine("  bounding box " + Show(saved));
            Console.WriteLine("  saved as " + path + ": " + document.SaveAs(path));
            document.Close(false);
        }
        using (ITavraDocument reopened = documents.Open(path, true, false))
        {
            if (reopened == null) return false;
            using (ITavraDocument2D drawing = reopened.Query<ITavraDocument2D>())
            {
                double[] again = Box(drawing);
                Console.WriteLine("  reopened " + reopened.GetName() + ": bounding box " + Show(again));
                reopened.Close(false);
                return Show(again) == Show(saved);
            }
        }
    }

    static int Main()
    {
        string folder = Path.Combine(Path.GetTempPath(), "tvapic-drawing-" + Guid.NewGuid().ToString("N"));
        Directory.CreateDirectory(folder);
        bool same;
        try
        {
            SimulatedHost.Start();   // outside the application only
            Console.WriteLine(IApplication.GetApplicationName(true) + ", in process");
            using (IDocuments documents = IApplication.GetDocuments())
                same = SaveAndReopen(documents, Path.Combine(folder, "triangle.tvd"));
            SimulatedHost.Stop();
        }
        finally
        {
            Directory.Delete(folder, true);
        }
        Console.WriteLine(same ? "The drawing came back as it was saved." : "The drawing did NOT come back as saved.");
        return same ? 0 : 1;
    }
}
