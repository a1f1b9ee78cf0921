/* A C program built against the installed headers and libraries with the
 * CMake package: a call of the application's before the simulated host
 * starts answers null (the stand-in says what to call on standard error),
 * and the calls reach the installed simulated host once it is started. */
#include <stdio.h>
#include <stdlib.h>

#include "sim/sim.h"
#include "tvAPIC.h"

int main(void) {
    int ok = IApplication_GetDocuments() == NULL;
    tvsim_start();
    void* documents = IApplication_GetDocuments();
    void* document = IDocuments_Add(documents, 1, 1);
    tvWChar* name = ITavraDocument_GetName(document);
    const tvWChar expected[] = {'D', 'o', 'c', 'u', 'm', 'e', 'n', 't', '1', 0};
    for (int i = 0; ok && i < 10; ++i) ok = name != NULL && name[i] == expected[i];
    free(name);
    IAPIObject_Release(document);
    IAPIObject_Release(documents);
    tvsim_stop();
    printf("tvAPIC consumer: %s\n", ok ? "ok" : "FAILED");
    return ok ? 0 : 1;
}
