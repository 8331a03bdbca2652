/* A C99 user of the installed library. */
#include <tpxcc.h>

#include <stdio.h>
#include <string.h>

int main(void) {
    const TpxLibraryVersion* v = tpxccGetLibVersion();
    if (!v || v->major != 2022 || strcmp(v->targetTag, "e9") != 0) return 1;
    printf("%s %s\n", v->name, v->versionText);
    return 0;
}
