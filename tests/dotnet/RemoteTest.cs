using System;
using System.Diagnostics;
using System.IO;
using System.Net;
using System.Net.Sockets;
using System.Threading;
using TvApic.Remote;

// The remote client against a tvhost of the test's own, on a free loopback
// port, its files kept below a fresh folder.
static class RemoteTest
{
    public static void Run(string tvhost)
    {
        string folder = Path.Combine(Path.GetTempPath(), "tvapic-dotnet-remote-" + Guid.NewGuid().ToString("N"));
        Directory.CreateDirectory(folder);
        int port = FreePort();
        var start = new ProcessStartInfo(tvhost, "--port " + port + " --files \"" + folder + "\"")
        {
            RedirectStandardOutput = true,
            UseShellExecute = false,
        };
        using (Process server = Process.Start(start))
        {
            try
            {
                Check.That(Started(server, port), "tvhost serves on port " + port);
                var client = new Client("127.0.0.1", port);
                Check.That(Ready(client), "the first call is answered");
                Scene(client, Path.Combine(folder, "Чертёж.tvd"));
            }
            finally
            {
                if (!server.HasExited) server.Kill();
                server.WaitForExit();
                Directory.Delete(folder, true);
            }
        }
    }

    static int FreePort()
    {
        var listener = new TcpListener(IPAddress.Loopback, 0);
        listener.Start();
        int port = ((IPEndPoint)listener.LocalEndpoint).Port;
        listener.Stop();
        return port;
    }

    static bool Started(Process server, int port)
    {
        string line;
        while ((line = server.StandardOutput.ReadLine()) != null)
            if (line.Contains("API Server on port " + port)) return true;
        return false;
    }

    // The server thread binds the port just after saying so: the first call may be refused.
    static bool Ready(Client client)
    {
        for (int tries = 0; tries < 100; ++tries)
        {
            try { return client.IApplication_GetBuildNumber() == 2611; }
            catch (SocketException) { Thread.Sleep(50); }
        }
        return false;
    }

    static void Scene(Client c, string path)
    {
        ulong documents = c.IApplication_GetDocuments();
        Check.That(documents != 0, "a handle for the documents");
        ulong document = c.IDocuments_Add(documents, 1, true);
        Check.That(c.ITavraDocument_GetName(document).StartsWith("Document"), "the new document's name");
        c.ITavraDocument_SetAuthor(document, "Ἀριστοτέλης \U0001D11E");
        Check.Equal("Ἀριστοτέλης \U0001D11E", c.ITavraDocument_GetAuthor(document), "text as UTF-8 both ways");
        Check.Equal("", c.ITavraDocument_GetName(0), "the null handle's text: empty");
        bool refused = false;
        try { c.ITavraDocument_SetAuthor(document, "\uD800"); } catch (ArgumentException) { refused = true; }
        Check.That(refused, "text UTF-8 cannot carry is refused before anything is sent");
        Check.Equal("Ἀριστοτέλης \U0001D11E", c.ITavraDocument_GetAuthor(document), "the refused text changed nothing");

        // Slots: a value goes in and the function's comes back; null sends none.
        double? x1 = -1, y1 = null, x2 = -1, y2 = -1;
        Check.That(c.ITavraDocument_GetDocumentGabarit(document, ref x1, ref y1, ref x2, ref y2), "GetDocumentGabarit answers");
        Check.Equal<double?>(0.0, x1, "x1 through a slot");
        Check.Equal<double?>(null, y1, "a slot sent empty comes back empty");
        Check.Equal<double?>(297.0, y2, "y2 through a slot");

        ulong manager = c.ITavraDocument2D_GetViewsAndLayersManager(document);
        ulong view = c.IViews_GetActiveView(c.IViewsAndLayersManager_GetViews(manager));
        ulong segment = c.ILineSegments_Add(c.IDrawingContainer_GetLineSegments(view));
        Check.That(segment != 0, "a segment added remotely");
        c.ILineSegment_SetX2(segment, 30.0);
        int? type = 0;
        c.IDrawingObject_GetHyperLinkParam(segment, ref type);
        Check.Equal<int?>(0, type, "an object without a link: type 0 through the slot");

        Check.That(c.ITavraDocument_SaveAs(document, path), "SaveAs below the files root");
        Check.Equal(document, c.IDocuments_GetItemByFilePath(documents, path), "the saved document found by its path");
        Check.That(c.ITavraDocument_Close(document, false), "Close");
        int? active = 5;
        Check.Sequence(new[] { "Base" }, c.IDocuments_GetLoadCombinations(documents, path, ref active), "a string vector");
        Check.Equal<int?>(0, active, "the active combination through the slot");
        ulong reopened = c.IDocuments_Open(documents, path, true, false);
        Check.Equal("Чертёж.tvd", c.ITavraDocument_GetName(reopened), "the document opened again");
        Check.That(c.ITavraDocument_Close(reopened, false), "Close the reopened document");
    }
}
