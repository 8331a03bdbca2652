// HSV, HLS and photo YCC against a per-pixel single-precision model written
// step by step from the formulas, and the stated values.
#include "support/harness.hpp"
#include "tpxcc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

using namespace tpxtest;

namespace {

// Rounding half to even, independent of the rounding mode.
float nearestEven(float v) {
    const float f = std::floor(v), d = v - f;
    return d > 0.5f || (d == 0.5f && std::fmod(f, 2.0f) != 0.0f) ? f + 1.0f : f;
}

// ---- HSV on integer codes, full scale F -------------------------------------------
void toHsv(int R, int G, int B, int F, float sector, float out[3]) {
    const int V = std::max({R, G, B}), m = std::min({R, G, B});
    out[0] = out[1] = 0.0f, out[2] = float(V);
    if (V == 0 || V == m) return;
    const float d = float(V - m);
    out[1] = std::trunc(d * float(F) / float(V) + 0.5f);
    const float inv = 1.0f / d;
    const float cr = float(V - R) * inv, cg = float(V - G) * inv, cb = float(V - B) * inv;
    float h = 0.0f;
    if (R == V) h = cb - cg;
    if (G == V) h = 2.0f + cr - cb;
    if (B >= std::max(R, G)) h = 4.0f + cg - cr;
    if (h + 1.1920929e-7f < 0.0f) h = h + 6.0f;
    out[0] = std::trunc(h * sector + 0.5f);
}
void fromHsv(int H, int S, int Vc, int F, float out[3]) {
    const float V = float(Vc);
    out[0] = out[1] = out[2] = V;
    if (S == 0) return;
    const float h = H == F ? 0.0f : float(H) * 0.016666668f * (F == 255 ? 1.4117647f : 0.005493248f);
    const float i = std::trunc(h);
    if (i >= 6.0f) return;
    const float f = h - i, s = float(S) * (F == 255 ? 0.003921569f : 1.5259022e-5f);
    const float sV = s * V, p0 = V - sV;
    const float p = nearestEven(p0), q = nearestEven(V - sV * f), t = nearestEven(p0 + sV * f);
    const float table[6][3] = {{V, t, p}, {q, V, p}, {p, V, t}, {p, q, V}, {t, p, V}, {V, p, q}};
    std::memcpy(out, table[int(i)], sizeof table[0]);
}

// ---- HLS in single precision ------------------------------------------------------------
void toHls(float R, float G, float B, float out[3]) {
    const float mx = std::max({R, G, B}), mn = std::min({R, G, B}), d = mx - mn;
    out[1] = (mx + mn) * 0.5f;
    out[0] = out[2] = 0.0f;
    if (d <= 1.1920929e-7f) return;
    out[2] = out[1] <= 0.5f ? d / (mx + mn) : d / (2.0f - (mx + mn));
    float h;
    if (R == mx) h = (G - B) * 60.0f / d;
    else if (G != mx) h = (R - G) * 60.0f / d + 240.0f;
    else h = (B - R) * 60.0f / d + 120.0f;
    if (h < 0.0f) h = h + 360.0f;
    out[0] = h * 0.0027777778f;
}
// 16s on codes 0..65535 (the stored value + 32768).
void toHls16s(int R, int G, int B, float out[3]) {
    const int mx = std::max({R, G, B}), mn = std::min({R, G, B}), d = mx - mn;
    out[1] = float((mx + mn) / 2);
    out[0] = out[2] = 0.0f;
    if (d == 0) return;
    const float den = float(out[1] <= 32767.5f ? mx + mn : 131070 - (mx + mn));
    out[2] = std::trunc(float(d) * (1.0f / den) * 65535.0f);
    const float inv = 1.0f / float(d);
    float h;
    if (R == mx) h = float(G - B) * 60.0f * inv;
    else if (G != mx) h = float(R - G) * 60.0f * inv + 240.0f;
    else h = float(B - R) * 60.0f * inv + 120.0f;
    if (h < 0.0f) h = h + 360.0f;
    out[0] = std::trunc(h * 182.04167f);
}
float channel(float m1, float m2, float x, float factor) {
    if (x < 60.0f) return m1 + (m2 - m1) * factor;
    if (x < 180.0f) return m2;
    if (x < 240.0f) return m1 + (m2 - m1) * (4.0f - factor);
    return m1;
}
void fromHls(float H, float L, float S, float out[3]) {
    out[0] = out[1] = out[2] = L;
    if (S == 0.0f) return;
    const float m2 = L <= 0.5f ? L * (1.0f + S) : (L + S) - L * S, m1 = 2.0f * L - m2;
    const float h = H * 360.0f;
    const float hr = h + 120.0f > 360.0f ? h - 240.0f : h + 120.0f;
    const float hb = h - 120.0f < 0.0f ? h + 240.0f : h - 120.0f;
    out[0] = channel(m1, m2, hr, hr * 0.016666668f);
    out[1] = channel(m1, m2, h, H * 6.0000005f);
    out[2] = channel(m1, m2, hb, hb * 0.016666668f);
}

// ---- Photo YCC ------------------------------------------------------------------------------
void toYcc(float R, float G, float B, float c2Scale, float out[3]) {
    const float L = (0.587f * G + 0.299f * R) + 0.114f * B;
    out[0] = L * 0.7132668f;
    out[1] = (B - L) * 0.4368627f + 0.6117647f;
    out[2] = (R - L) * c2Scale + 0.5372549f;
}
void fromYcc(float Y, float C1, float C2, float out[3]) {
    const float y = 1.3584f * Y, c1 = 2.2179f * C1 - 1.356833f, c2 = 1.8215f * C2 - 0.9786098f;
    out[0] = c2 + y, out[1] = (y - 0.194f * c1) - 0.509f * c2, out[2] = c1 + y;
    for (int i = 0; i < 3; ++i) out[i] = std::clamp(out[i], 0.0f, 1.0f);
}

// ---- The model over the export table ---------------------------------------------------------
bool has(const Export& e, const char* w) { return std::strstr(e.name, w) != nullptr; }

TpxStatus model(const Export& e, const Args& a) {
    const Elem el = e.shape.src.elem;
    const bool f32 = el == Elem::F32, s16 = el == Elem::S16;
    const float F = el == Elem::U8 ? 255.0f : 65535.0f, bias = s16 ? 32768.0f : 0.0f;
    const bool srcBgr = has(e, "BGRTo"), dstBgr = has(e, "ToBGR"), fourth = has(e, "P4");
    for (int64_t y = 0; y < a.height; ++y)
        for (int64_t x = 0; x < a.width; ++x) {
            float v[3], r[3];
            for (int c = 0; c < 3; ++c) v[c] = float(sampleAt(e, a, false, x, y, srcBgr ? 2 - c : c)) + bias;  // codes (16s: + 32768)
            bool codes = true;  // r holds codes (else values 0..1)
            if (has(e, "ToHSV")) toHsv(int(v[0]), int(v[1]), int(v[2]), int(F), F == 255.0f ? 42.5f : 10922.5f, r);
            else if (has(e, "HSVTo")) fromHsv(int(v[0]), int(v[1]), int(v[2]), int(F), r);
            else if (has(e, "ToHLS") && s16) toHls16s(int(v[0]), int(v[1]), int(v[2]), r);
            else {
                codes = f32;
                if (!f32)
                    for (float& c : v) c = c / F;
                if (has(e, "ToHLS")) toHls(v[0], v[1], v[2], r);
                else if (has(e, "HLSTo")) fromHls(v[0], v[1], v[2], r);
                else if (has(e, "ToYCC")) toYcc(v[0], v[1], v[2], f32 ? 0.53192f : 0.5319216f, r);
                else fromYcc(v[0], v[1], v[2], r);
            }
            for (int c = 0; c < 3; ++c) {
                const float out = codes ? r[c] : std::clamp(nearestEven(r[c] * F), 0.0f, F);
                put(e, a, x, y, dstBgr ? 2 - c : c, f32 ? out : out - bias);
            }
            if (fourth) put(e, a, x, y, 3, sampleAt(e, a, false, x, y, 3));
        }
    return tpxStatusOk;
}

TEST(HsvHlsYcc, EveryMemberMatchesModel) {
    expectFamily("HSV, HLS and photo YCC", 53, [](const Export& e) { return Model{e.name, model}; });
}

TEST(HsvHlsYcc, StatedValues) {
    using V = std::vector<double>;
    // Gray gives hue and saturation 0 (-32768 in 16s).
    EXPECT_EQ(onePixel<Tpx8u>(tpxiRGBToHSV_8u_C3R, 90, 90, 90), (V{0, 0, 90}));
    EXPECT_EQ(onePixel<Tpx8u>(tpxiRGBToHLS_8u_C3R, 90, 90, 90), (V{0, 90, 0}));
    EXPECT_EQ(onePixel<Tpx16u>(tpxiRGBToHSV_16u_C3R, 0, 0, 0), (V{0, 0, 0}));
    EXPECT_EQ(onePixel<Tpx16u>(tpxiRGBToHLS_16u_C3R, 700, 700, 700), (V{0, 700, 0}));
    EXPECT_EQ(onePixel<Tpx16s>(tpxiRGBToHLS_16s_C3R, 1000, 1000, 1000), (V{-32768, 1000, -32768}));
    EXPECT_EQ(onePixel<Tpx32f>(tpxiRGBToHLS_32f_C3R, 0.25f, 0.25f, 0.25f), (V{0, 0.25, 0}));
    // Yellow: green's test overrides red's, h = 2 + 0 - 1 = 1 sector.
    EXPECT_EQ(onePixel<Tpx16u>(tpxiRGBToHSV_16u_C3R, 65535, 65535, 0), (V{10923, 65535, 65535}));
    // Hue 65535 is hue 0.
    EXPECT_EQ(onePixel<Tpx16u>(tpxiHSVToRGB_16u_C3R, 65535, 65535, 40000), (V{40000, 0, 0}));
    EXPECT_EQ(onePixel<Tpx16u>(tpxiHSVToRGB_16u_C3R, 0, 65535, 40000), (V{40000, 0, 0}));
    // No saturation: V whatever the hue.
    EXPECT_EQ(onePixel<Tpx8u>(tpxiHSVToRGB_8u_C3R, 200, 0, 77), (V{77, 77, 77}));
    // YCC of black; the inverse clamps red and blue below 0 and above 1.
    EXPECT_EQ(onePixel<Tpx32f>(tpxiRGBToYCC_32f_C3R, 0, 0, 0), (V{0, double(0.6117647f), double(0.5372549f)}));
    const V low = onePixel<Tpx32f>(tpxiYCCToRGB_32f_C3R, 0, 0, 0), high = onePixel<Tpx32f>(tpxiYCCToRGB_32f_C3R, 1, 1, 1);
    EXPECT_TRUE(low[0] == 0 && low[2] == 0 && low[1] > 0.7) << low[1];
    EXPECT_TRUE(high[0] == 1 && high[2] == 1);
}

}  // namespace
