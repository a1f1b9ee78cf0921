/* A C program built against the installed headers and libraries. Without the
 * host application, the library's own parts work (vectors, text, the default
 * results of calls that reach no object), and its calls reach the installed
 * simulated host once it is started. */
#include <stdio.h>
#include <stdlib.h>

#include "sim/sim.h"
#include "tvAPIC.h"

static int failures = 0;

static void check(int ok, const char* what) {
    if (!ok) {
        printf("FAILED: %s\n", what);
        ++failures;
    }
}

int main(void) {
    /* "Ab" then U+1D11E as a surrogate pair: the vector copies the units. */
    const tvWChar text[] = {0x41, 0x62, 0xD834, 0xDD1E, 0};
    StringVector_t* names = StringVector_Create(2);
    StringVector_Set(names, 0, text);
    StringVector_Set(names, 1, text + 2);
    check(names->size == 2, "a string vector holds its two texts");
    const tvWChar* second = StringVector_Get(names, 1);
    check(second[0] == 0xD834 && second[1] == 0xDD1E && second[2] == 0, "the second text is the pair alone");
    check(StringVector_Get(names, 0) != text, "texts are copied into the vector");
    StringVector_Delete(names);

    DoubleVector_t* lengths = DoubleVector_Create(3);
    for (uint64_t i = 0; i < 3; ++i) DoubleVector_Set(lengths, i, 0.5 * (double)i);
    check(DoubleVector_Get(lengths, 2) == 1.0, "a double vector keeps its values");
    DoubleVector_Delete(lengths);

    /* No object behind a null handle: nothing is called, defaults come back. */
    check(ITavraDocument_GetName(NULL) == NULL, "a null handle gives a null text");
    check(IDocuments_Add(NULL, 1, 1) == NULL, "a null handle gives a null handle");
    double x1 = 7.0;
    check(!ITavraDocument_GetDocumentGabarit(NULL, &x1, NULL, NULL, NULL) && x1 == 7.0,
          "a null handle leaves out-parameters untouched");

    /* The simulated application answers as the application would. */
    tvsim_start();
    void* documents = IApplication_GetDocuments();
    void* document = IDocuments_Add(documents, 1, 1);
    tvWChar* name = ITavraDocument_GetName(document);
    const tvWChar expected[] = {'D', 'o', 'c', 'u', 'm', 'e', 'n', 't', '1', 0};
    int same = name != NULL;
    for (int i = 0; same && i < 10; ++i) same = name[i] == expected[i];
    check(same, "the simulated host names its first new document Document1");
    free(name);
    IAPIObject_Release(document);
    IAPIObject_Release(documents);
    tvsim_stop();

    if (failures) return 1;
    printf("tvAPIC consumer: ok\n");
    return 0;
}
