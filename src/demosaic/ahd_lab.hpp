// CIE Lab of the AHD homogeneity test, in integers.
//
// RGB on 0..65535 (linear, over full scale) gives X/Xn, Y, Z/Zn on 0..65535:
// T = min(65535, (K_r R + K_g G + K_b B + 8192) >> 14), where K is the
// RGB-to-XYZ matrix (X row times 1.0521265 = 1/Xn, Z row times 0.9184812 =
// 1/Zn) times 16384, rounded. f(t) comes from a table of 4096 entries indexed
// by T >> 4: F[i] = round(4096 f((i + 0.5) / 4096)), f(t) = cube root of t
// above 0.008856, else 7.787 t + 16/116.
//
// The homogeneity test only compares distances, so Lab is kept in units of
// f: L' = F(Y), A' = F(X) - F(Y), B' = F(Y) - F(Z); then L = 116 L'/4096 - 16,
// a = 500 A'/4096, b = 200 B'/4096, and the squared chroma distance is
// proportional to 25 dA'^2 + 4 dB'^2 = (5 dA')^2 + (2 dB')^2.
#pragma once

#include <cstdint>

namespace tpx::ahd {

constexpr int kMatrixBits = 14;
constexpr int kCbrtShift = 4;  // T >> kCbrtShift indexes the table
constexpr int kCbrtEntries = 65536 >> kCbrtShift;
constexpr int kFScale = 4096;

constexpr int roundPositive(double v) { return int(v + 0.5); }

struct LabMatrix {
    int k[3][3];
};

constexpr LabMatrix makeMatrix() {
    constexpr double m[3][3] = {{0.412453, 0.357580, 0.180423},
                                {0.212671, 0.715160, 0.072169},
                                {0.019334, 0.119193, 0.950227}};
    constexpr double white[3] = {1.0521265, 1.0, 0.9184812};
    LabMatrix r{};
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) r.k[i][j] = roundPositive(m[i][j] * white[i] * double(1 << kMatrixBits));
    return r;
}

constexpr double cubeRoot(double t) {
    double x = 1.0;
    for (int it = 0; it < 40; ++it) x -= (x * x * x - t) / (3.0 * x * x);
    return x;
}

// 32-bit entries: vector code fetches them with one gather each.
struct CbrtTable {
    int32_t f[kCbrtEntries];
};

constexpr CbrtTable makeCbrt() {
    CbrtTable r{};
    for (int i = 0; i < kCbrtEntries; ++i) {
        const double t = (i + 0.5) / kCbrtEntries;
        const double f = t > 0.008856 ? cubeRoot(t) : 7.787 * t + 16.0 / 116.0;
        r.f[i] = roundPositive(f * kFScale);
    }
    return r;
}

inline constexpr LabMatrix kLabMatrix = makeMatrix();
inline constexpr CbrtTable kCbrt = makeCbrt();

// f of one normalised XYZ component.
inline int labF(int r, int g, int b, const int* k) {
    int t = (k[0] * r + k[1] * g + k[2] * b + (1 << (kMatrixBits - 1))) >> kMatrixBits;
    t = t > 65535 ? 65535 : t;
    return kCbrt.f[t >> kCbrtShift];
}

}  // namespace tpx::ahd
