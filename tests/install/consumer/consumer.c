/* A C program built against the installed headers and libraries: the
 * library's own parts (a vector of texts) work, a call of the application's
 * before the simulated host starts answers null (the stand-in says what to
 * call on standard error), and the calls reach the installed simulated host
 * once it is started. */
#include <stdio.h>
#include <stdlib.h>

#include "sim/sim.h"
#include "tvAPIC.h"

int main(void) {
    /* "Ab" then U+1D11E as a surrogate pair: the vector copies the units. */
    const tvWChar text[] = {0x41, 0x62, 0xD834, 0xDD1E, 0};
    StringVector_t* names = StringVector_Create(1);
    StringVector_Set(names, 0, text + 2);
    const tvWChar* copy = StringVector_Get(names, 0);
    int ok = copy != text + 2 && copy[0] == 0xD834 && copy[1] == 0xDD1E && copy[2] == 0;
    StringVector_Delete(names);

    ok = ok && IApplication_GetDocuments() == NULL;
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
