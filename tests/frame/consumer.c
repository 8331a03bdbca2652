/* A C99 user of the installed library: the version record and one conversion. */
#include <tpxcc.h>

#include <stdio.h>
#include <string.h>

int main(void) {
    const TpxLibraryVersion* v = tpxccGetLibVersion();
    const Tpx8u white[3] = {255, 255, 255};
    Tpx8u ycc[3] = {0, 0, 0};
    TpxSize one = {1, 1};
    if (!v || v->major != 2022 || strcmp(v->targetTag, "e9") != 0) return 1;
    if (tpxiRGBToYCbCr_8u_C3R(white, 3, ycc, 3, one) != tpxStatusOk) return 2;
    if (ycc[0] != 235 || ycc[1] != 128 || ycc[2] != 128) return 3;
    printf("%s %s\n", v->name, v->versionText);
    return 0;
}
