/* Calls one member of each family of exports on fixed inputs from C and
 * writes every destination's bytes, then the statuses, to standard output:
 * what tpxcc.raw must reproduce from Python (test_raw.py makes the same
 * calls). Inputs: bytes i * 7 + (i >> 5), floats (i % 97) / 96. */
#include "tpxcc.h"

#include <stdio.h>

enum { W = 16, H = 6 };
static uint64_t inWords[W * H], outWords[3][W * H];  /* 8 bytes a pixel each, aligned */
static float inF[W * H * 4];
static TpxStatus status[16];
static int calls;

static void put(int k, size_t bytes) { fwrite(outWords[k], 1, bytes, stdout); }
static void clear(void) {
    for (int k = 0; k < 3; ++k)
        for (int i = 0; i < W * H; ++i) outWords[k][i] = 0;
}
#define CALL(expr) (clear(), status[calls++] = (expr))

int main(void) {
    Tpx8u* in = (Tpx8u*)inWords;
    Tpx8u* o[3] = {(Tpx8u*)outWords[0], (Tpx8u*)outWords[1], (Tpx8u*)outWords[2]};
    for (int i = 0; i < W * H * 8; ++i) in[i] = (Tpx8u)(i * 7 + (i >> 5));
    for (int i = 0; i < W * H * 4; ++i) inF[i] = (float)(i % 97) / 96.f;
    const TpxSize roi = {W, H};
    const Tpx8u* p444[3] = {in, in + W * H, in + 2 * W * H};
    const Tpx8u* p420[3] = {in, in + W * H, in + W * H + W * H / 4};
    const int s420[3] = {W, W / 2, W / 2};
    Tpx16s* o16[3] = {(Tpx16s*)o[0], (Tpx16s*)o[1], (Tpx16s*)o[2]};
    const Tpx32f weights[3] = {0.2f, 0.5f, 0.3f}, scale[4] = {1.f, 0.5f, 2.f, 1.f};
    const Tpx32f twist[3][4] = {{0.5f, 0.25f, 0.f, 10.f}, {0.f, 1.f, 0.f, -20.f}, {0.125f, 0.f, 0.75f, 3.f}};

    CALL(tpxiYCbCrToRGB_8u_P3C4R(p444, W, o[0], W * 4, roi, 200));
    put(0, W * H * 4);
    CALL(tpxiBGRToYCbCr420_8u_C3P2R(in, W * 3, o[0], W, o[1], W, roi));
    put(0, W * H), put(1, W * H / 2);
    CALL(tpxiYCbCr420ToBGR_8u_P3C4R(p420, s420, o[0], W * 4, roi, 9));
    put(0, W * H * 4);
    CALL(tpxiColorToGray_32f_C3C1R(inF, W * 12, (Tpx32f*)o[0], W * 4, roi, weights));
    put(0, W * H * 4);
    const TpxRect rect = {1, 1, W - 2, H - 2};
    CALL(tpxiCFAToRGB_16u_C1C3R((const Tpx16u*)in, rect, roi, W * 2, (Tpx16u*)o[0], (W - 2) * 6, tpxBayerRGGB, 0));
    put(0, (W - 2) * (H - 2) * 6);
    const TpxRectL rectL = {0, 0, W, H};
    const TpxSizeL sizeL = {W, H};
    CALL(tpxiCFAToBGRA_VNG_8u_C1C4R_L(in, rectL, sizeL, W, scale, o[0], W * 4, tpxBayerGBRG));
    put(0, W * H * 4);
    CALL(tpxiYCbCr420ToYCbCr422_8u_P3R(p420, s420, o, (const int[3]){W, W / 2, W / 2}, roi));
    put(0, W * H), put(1, W * H / 2), put(2, W * H / 2);
    CALL(tpxiBGRToYCoCg_8u16s_C3P3R(in, W * 3, o16, W * 2, roi));
    put(0, W * H * 2), put(1, W * H * 2), put(2, W * H * 2);
    CALL(tpxiRGBToHSV_16u_C3R((const Tpx16u*)in, W * 6, (Tpx16u*)o[0], W * 6, roi));
    put(0, W * H * 6);
    CALL(tpxiBGRToLab_8u16u_C3R(in, W * 3, (Tpx16u*)o[0], W * 6, roi));
    put(0, W * H * 6);
    CALL(tpxiColorTwist32f_16s_C3R((const Tpx16s*)in, W * 6, o16[0], W * 6, roi, twist));
    put(0, W * H * 6);
    CALL(tpxiGammaFwd_32f_C3R(inF, W * 12, (Tpx32f*)o[0], W * 12, roi, 0.f, 1.f));
    put(0, W * H * 12);
    int bufferSize = 0;
    status[calls++] = tpxiReduceBitsGetBufferSize(3, W, 0, 1, &bufferSize);
    static Tpx8u buffer[1 << 16];
    CALL(tpxiReduceBits_16u8u_C3R((const Tpx16u*)in, W * 6, o[0], W * 3, roi, 0, 1, 16, buffer));
    put(0, W * H * 3);
    fwrite(status, sizeof status[0], (size_t)calls, stdout);
    return bufferSize > (int)sizeof buffer;
}
