/* A C program driving the simulated host through tvAPIC's exports, as a
 * plug-in or a scripting layer would: it opens and edits documents and prints
 * each step and what the host answered. */
#include <stdio.h>
#include <stdlib.h>

#include "sim/sim.h"
#include "tvAPIC.h"

/* Returned text is freed with the C runtime's free. A Windows program built
 * with a current compiler uses the universal C runtime and calls free; this
 * demonstration, built by MinGW against the older msvcrt.dll, asks
 * ucrtbase.dll for its free instead. */
#if defined(_WIN32)
#include <windows.h>
static void free_text(void* text) {
    static void(__cdecl * ucrt_free)(void*) = NULL;
    if (!ucrt_free) ucrt_free = (void(__cdecl*)(void*))(void*)GetProcAddress(LoadLibraryW(L"ucrtbase.dll"), "free");
    ucrt_free(text);
}
#else
#define free_text free
#endif

/* Literal UTF-16 text for the exports, without relying on C11's u"" strings. */
static const tvWChar* wide(const char* s) {
    static tvWChar buffers[4][128];
    static int next = 0;
    tvWChar* out = buffers[next++ % 4];
    size_t i = 0;
    for (; s[i] && i < 127; ++i) out[i] = (tvWChar)(unsigned char)s[i];
    out[i] = 0;
    return out;
}

/* Prints a text result and frees it, as every caller must. */
static void print_text(const char* label, tvWChar* text) {
    printf("%s", label);
    if (!text) {
        printf("(null)\n");
        return;
    }
    for (const tvWChar* p = text; *p; ++p) putchar(*p < 128 ? (char)*p : '?');
    putchar('\n');
    free_text(text);
}

/* Event callbacks: plain C functions, called while the host raises the event.
 * The handles they receive are lent for the call. */
static void on_document_created(void* document) {
    print_text("  event CreateDocument -> name         ", ITavraDocument_GetName(document));
}

static int on_objects_created(const ObjectReferenceVector_t* objects) {
    printf("  event CreateObject -> %llu object(s)\n", (unsigned long long)objects->size);
    return 1;
}

/* A file in the system's temporary folder. */
static const tvWChar* temporary_file(const char* name) {
    static char path[256];
    const char* folder = getenv("TEMP");
    if (!folder) folder = getenv("TMPDIR");
    if (!folder) folder = "/tmp";
    snprintf(path, sizeof path, "%s/%s", folder, name);
    return wide(path);
}

int main(void) {
    tvsim_start();
    printf("tvAPIC in-process demonstration against the simulated host\n\n");

    print_text("IApplication_GetApplicationName(1)     -> ", IApplication_GetApplicationName(1));
    int major = 0, minor = 0, release = 0, build = 0;
    bool ok = IApplication_GetSystemVersion(&major, &minor, &release, &build);
    printf("IApplication_GetSystemVersion          -> %s, %d.%d.%d build %d\n", ok ? "true" : "false", major,
           minor, release, build);

    void* documents = IApplication_GetDocuments();
    printf("IApplication_GetDocuments              -> handle %p\n", documents);

    void* events = IApplication_Events();
    IApplicationEvents_AddCreateDocumentHandler(events, wide("demo"), on_document_created);
    printf("IApplicationEvents_AddCreateDocumentHandler(\"demo\")\n");

    void* drawing = IDocuments_Add(documents, 1, 1);
    print_text("IDocuments_Add(1, visible) -> name      ", ITavraDocument_GetName(drawing));
    ITavraDocument_SetAuthor(drawing, wide("A. Engineer"));
    print_text("ITavraDocument_SetAuthor, GetAuthor    -> ", ITavraDocument_GetAuthor(drawing));
    printf("ITavraDocument_IsChanged               -> %s\n", ITavraDocument_IsChanged(drawing) ? "true" : "false");
    printf("ITavraDocument_Save (no path yet)      -> %s\n", ITavraDocument_Save(drawing) ? "true" : "false");
    printf("ITavraDocument_SaveAs(temp/plate.tvd)  -> %s\n",
           ITavraDocument_SaveAs(drawing, temporary_file("plate.tvd")) ? "true" : "false");
    print_text("ITavraDocument_GetName                 -> ", ITavraDocument_GetName(drawing));
    print_text("ITavraDocument_GetPath                 -> ", ITavraDocument_GetPath(drawing));

    void* object_events = ITavraDocument2D_GetObject2DEvents(drawing, wide("demo"));
    IDrawingObjectEvents_AddCreateObjectHandler(object_events, on_objects_created);
    printf("IDrawingObjectEvents_AddCreateObjectHandler\n");
    void* manager = ITavraDocument2D_GetViewsAndLayersManager(drawing);
    void* views = IViewsAndLayersManager_GetViews(manager);
    void* view = IViews_GetActiveView(views);
    void* segments = IDrawingContainer_GetLineSegments(view);
    void* segment = ILineSegments_Add(segments);
    ILineSegment_SetX2(segment, 120.0);
    ILineSegment_SetY2(segment, 80.0);
    printf("ILineSegments_Add, SetX2, SetY2        -> length %g\n", ILineSegment_GetLength(segment));
    IAPIObject_Release(segment);
    IAPIObject_Release(segments);
    IAPIObject_Release(view);
    IAPIObject_Release(views);
    IAPIObject_Release(manager);
    IAPIObject_Release(object_events);

    double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    ITavraDocument_GetDocumentGabarit(drawing, &x1, &y1, &x2, &y2);
    printf("ITavraDocument_GetDocumentGabarit      -> (%g, %g) - (%g, %g)\n", x1, y1, x2, y2);

    void* model = IDocuments_Open(documents, wide("/projects/gearbox.tvm"), 1, 1);
    print_text("IDocuments_Open(gearbox.tvm) -> name    ", ITavraDocument_GetName(model));
    printf("ITavraDocument_IsReadOnly              -> %s\n", ITavraDocument_IsReadOnly(model) ? "true" : "false");

    void* active = IApplication_GetActiveDocument();
    printf("IApplication_GetActiveDocument is the opened model -> %s\n",
           IAPIObject_IsSameObjects(active, model) ? "true" : "false");
    IAPIObject_Release(active);

    printf("ITavraDocument_Close(model)            -> %s\n", ITavraDocument_Close(model, 0) ? "true" : "false");
    printf("IDocuments_GetItem(1) after closing    -> %s\n", IDocuments_GetItem(documents, 1) ? "a document" : "null");

    IApplicationEvents_RemoveAllHandlers(events, wide("demo"));
    IAPIObject_Release(events);
    IAPIObject_Release(model);
    IAPIObject_Release(drawing);
    IAPIObject_Release(documents);
    tvsim_stop();
    printf("\nAll handles released.\n");
    return 0;
}
