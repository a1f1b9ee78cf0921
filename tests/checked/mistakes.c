/* A plug-in that breaks, once each, the rules checked mode reports, against
 * the simulated host. It prints what every call returned, so that a run with
 * TVAPIC_CHECK=1 and one without can be compared line for line
 * (checked_test.py); the lines checked mode writes go to the standard error
 * stream or its log. It ends normally, and without stopping the simulated
 * host, whose objects keep the handler it leaves registered. */
#include <stdio.h>

#include "sim/sim.h"
#include "tvAPIC.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <pthread.h>
#endif

static int created = 0;

static void on_created(void* document) {
    (void)document;
    ++created;
}

/* Kept in a static, so that a leak checker sees it held to the end. */
static ObjectReferenceVector_t* never_deleted = NULL;

/* The host's objects belong to its main thread; this asks from another one. */
static int changed_elsewhere = -1;
#if defined(_WIN32)
static DWORD WINAPI ask_elsewhere(LPVOID document) {
    changed_elsewhere = ITavraDocument_IsChanged(document);
    return 0;
}
static void on_second_thread(void* document) {
    HANDLE thread = CreateThread(NULL, 0, ask_elsewhere, document, 0, NULL);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
}
#else
static void* ask_elsewhere(void* document) {
    changed_elsewhere = ITavraDocument_IsChanged(document);
    return NULL;
}
static void on_second_thread(void* document) {
    pthread_t thread;
    pthread_create(&thread, NULL, ask_elsewhere, document);
    pthread_join(thread, NULL);
}
#endif

int main(void) {
    tvsim_start();
    void* documents = IApplication_GetDocuments();
    void* events = IApplication_Events();

    /* Two handlers for one event, one of them null; neither is ever removed. */
    IApplicationEvents_AddCreateDocumentHandler(events, TVAPIC_TEXT("checked"), on_created);
    IApplicationEvents_AddCreateDocumentHandler(events, TVAPIC_TEXT("checked"), NULL);
    void* drawing = IDocuments_Add(documents, 1, 1);
    printf("IDocuments_Add -> %s; CreateDocument handled %d time(s)\n", drawing ? "a drawing" : "null", created);

    /* A document where a line segment is due, twice; a null handle. */
    printf("ILineSegment_GetLength(drawing) -> %g\n", ILineSegment_GetLength(drawing));
    printf("ILineSegment_GetLength(drawing) again -> %g\n", ILineSegment_GetLength(drawing));
    printf("ITavraDocument_GetName(NULL) -> %s\n", ITavraDocument_GetName(NULL) ? "text" : "null");

    void* manager = ITavraDocument2D_GetViewsAndLayersManager(drawing);
    void* views = IViewsAndLayersManager_GetViews(manager);
    void* view = IViews_GetActiveView(views);
    void* segments = IDrawingContainer_GetLineSegments(view);
    void* segment = ILineSegments_Add(segments);
    ILineSegment_SetX2(segment, 30.0);

    /* The same segment as a drawing object: a handle of its own, never
     * released. Its reference keeps the host's count up while the segment's
     * handle is released twice. */
    void* found = ITavraDocument2D_FindObject(drawing, 30.0, 0.0, 1.0, NULL);
    printf("FindObject is the segment -> %s\n", IAPIObject_IsSameObjects(found, segment) ? "true" : "false");
    printf("IAPIObject_Release(segment) -> %d\n", IAPIObject_Release(segment));
    printf("IAPIObject_Release(segment) again -> %d\n", IAPIObject_Release(segment));

    /* A list whose element is given back, but not the list. */
    never_deleted = ITavraDocument2D_FindObjects(drawing, 30.0, 0.0, 1.0, NULL);
    printf("ITavraDocument2D_FindObjects -> %d object(s)\n", (int)never_deleted->size);
    printf("IAPIObject_Release(its element) -> %d\n", IAPIObject_Release(never_deleted->data[0]));

    on_second_thread(drawing);
    printf("ITavraDocument_IsChanged on a second thread -> %d\n", changed_elsewhere);

    printf("IAPIObject_AddRef(NULL) -> %d\n", IAPIObject_AddRef(NULL));
    printf("IAPIObject_Release(NULL) -> %d\n", IAPIObject_Release(NULL));

    IAPIObject_Release(segments);
    IAPIObject_Release(view);
    IAPIObject_Release(views);
    IAPIObject_Release(manager);
    IAPIObject_Release(drawing);
    IAPIObject_Release(events);
    IAPIObject_Release(documents);
    printf("done\n");
    return 0;
}
