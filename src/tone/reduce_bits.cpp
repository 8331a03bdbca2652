// Bit-depth reduction entries and the sequential kernels (error diffusion,
// noise, the one-bit member). Checks: null pointers, the size, noise > 100
// (-55), levels outside 2..256 (-54), dither type > 4 (-224), then a null
// work buffer where the kernel needs it (-8). Steps count whole elements.
#include "tone/reduce_bits.hpp"

#include "frame/byte_table.hpp"
#include "frame/check.hpp"
#include "frame/cpu.hpp"
#include "frame/image.hpp"
#include "tpxcc.h"

#include <algorithm>
#include <cstring>

namespace tpx::reduce {

namespace {
// The ordered dither's matrix: thresholds k / 15 of a step.
constexpr int kMatrix[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};
}  // namespace

Quant quantFor(int levels, float D) {
    Quant q;
    q.L = float(levels - 1);
    q.rL = 1.0f / q.L;
    q.halfStep0 = 0.5f * q.rL;
    q.D = D;
    q.step = D / q.L;
    q.inv = q.L * (1.0f / D);
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) q.threshold[r][c] = float(kMatrix[r][c]) / 15.0f * q.step;
    return q;
}

namespace {

const Rows kRows = TPX_REDUCE_TABLE;
const Rows& rows() { return *pick(TierKernels<const Rows*>{&kRows, TPX_X86(&kRowsAvx2), TPX_X86(&kRowsAvx512)}); }

uint8_t* aligned64(uint8_t* p) { return p + (64 - reinterpret_cast<uintptr_t>(p) % 64) % 64; }

// Bytes of error lines a type keeps: two of W + 2 floats, or three of W + 4.
int64_t lineBytes(int type, int64_t width) { return type == 1 ? 8 * width + 16 : type == 2 || type == 3 ? 12 * width + 48 : 0; }

// The noise generator: xorshift32, its state in the work buffer.
class Noise {
public:
    Noise(uint8_t* home, float amplitude) : home_(home), amplitude_(amplitude) { std::memcpy(home_, &kSeed, 4); }
    ~Noise() { std::memcpy(home_, &state_, 4); }
    Noise(const Noise&) = delete;
    Noise& operator=(const Noise&) = delete;
    // (r - 0.5) x amplitude, r in [0, 1); 0 without noise.
    float next() {
        if (amplitude_ == 0.0f) return 0.0f;
        state_ ^= state_ << 13, state_ ^= state_ >> 17, state_ ^= state_ << 5;
        return (float(state_ >> 8) * (1.0f / 16777216.0f) - 0.5f) * amplitude_;
    }

private:
    static constexpr uint32_t kSeed = 0x9E3779B9u;
    uint8_t* home_;
    float amplitude_;
    uint32_t state_ = kSeed;
};

template <class T>
struct Image {
    T* p;
    std::ptrdiff_t step;
    T* row(int64_t y) const { return rowAt(p, step, y); }
};

// Error-diffusion weights gathered by a pixel: the current row at x-1, x-2;
// the row above and the one before at x-2 .. x+2.
struct Kernel {
    float left[2], above[5], before[5], scale;
    int reach;  // guard samples on each side of a line (1 or 2)
};
constexpr Kernel kKernels[4] = {
    {},
    {{7, 0}, {0, 1, 5, 3, 0}, {0, 0, 0, 0, 0}, 0.0625f, 1},
    {{7, 5}, {3, 5, 7, 5, 3}, {1, 3, 5, 3, 1}, float(1.0 / 48), 2},
    {{8, 4}, {2, 4, 8, 4, 2}, {1, 2, 4, 2, 1}, float(1.0 / 42), 2},
};

// Channel c of an image of K samples per pixel, diffused as an image of its own.
//
// Without noise, R = 4 rows are in flight at once, each kLag pixels behind
// the one above it: a pixel needs the row above only up to x + 2, and its
// errors may overwrite those of the row three (two, for Floyd-Steinberg)
// above once the row between has read them, which a lag of 4 ensures. The
// rows' chains of dependent operations then overlap; every sample sees the
// same errors as row by row. With noise the rows go one by one, so that the
// draws follow the samples in memory order.
template <class S, class D, int K, int Type, bool Noisy>
void diffuse(Image<const S> src, Image<D> dst, int64_t w, int64_t h, int c, const Quant& q, float* lines, Noise& noise) {
    constexpr Kernel k = kKernels[Type];
    constexpr int g = k.reach, nLines = g == 1 ? 2 : 3, R = Noisy ? 1 : 4;
    constexpr int64_t kLag = 4;
    const int64_t stride = w + 2 * g;
    std::fill(lines, lines + nLines * stride, 0.0f);
    auto line = [&](int64_t y) { return lines + (y % nLines) * stride; };
    struct Row {
        const S* s;
        D* d;
        float *cur, *above, *before;
        float left1, left2;  // the row's last two errors
    };
    for (int64_t y0 = 0; y0 < h; y0 += R) {
        const int n = int(std::min<int64_t>(R, h - y0));
        Row row[R];
        for (int r = 0; r < n; ++r) {
            const int64_t y = y0 + r;
            row[r] = {src.row(y), dst.row(y), line(y), line(y + nLines - 1), line(y + nLines - 2), 0.0f, 0.0f};
        }
        // One pixel of row r; the rows' states stay in registers where every
        // index is a constant.
        auto pixel = [&](Row& o, int64_t x) __attribute__((always_inline)) {
            const int64_t i = x + g;
            // The rows above first: only the last terms wait for this row's errors.
            float sum = k.above[2 - g] * o.above[i - g];
            for (int j = 1 - g; j <= g; ++j) sum = sum + k.above[j + 2] * o.above[i + j];
            if constexpr (g == 2)
                for (int j = -2; j <= 2; ++j) sum = sum + k.before[j + 2] * o.before[i + j];
            if constexpr (g == 2) sum = sum + k.left[1] * o.left2;
            sum = sum + k.left[0] * o.left1;
            const float v0 = domain<S, D>(o.s[K * x + c]) + sum * k.scale, v = Noisy ? v0 + noise.next() : v0;
            // Without branches (a noisy image takes both sides often): v at or
            // above D gives D, below 0 (or NaN) gives 0, both with no error;
            // in between, 0 <= v < D so v inv lies in 0..L and the integer
            // conversion truncates it.
            const bool high = v >= q.D, inside = !high && v >= 0.0f;
            const float vi = inside ? v : 0.0f;
            float r0 = float(int32_t(vi * q.inv)) * q.step;
            r0 = q.step * 0.5f < vi - r0 ? r0 + q.step : r0;
            const float err = inside ? vi - r0 : 0.0f, out = inside ? r0 : high ? q.D : 0.0f;
            o.cur[i] = err;
            o.left2 = o.left1, o.left1 = err;
            o.d[K * x + c] = saturated<D>(out);
        };
        int64_t t = 0;
        auto some = [&](int64_t end) {  // the ramps: rows that have started and not yet ended
            for (; t < end; ++t)
                for (int r = 0; r < n; ++r)
                    if (t - r * kLag >= 0 && t - r * kLag < w) pixel(row[r], t - r * kLag);
        };
        if constexpr (R == 4)
            if (n == R && w > (R - 1) * kLag) {
                some((R - 1) * kLag);
                Row a = row[0], b = row[1], e = row[2], f = row[3];
                for (; t < w; ++t) pixel(a, t), pixel(b, t - kLag), pixel(e, t - 2 * kLag), pixel(f, t - 3 * kLag);
                row[0] = a, row[1] = b, row[2] = e, row[3] = f;
            }
        some(w + (n - 1) * kLag);
    }
}

// Ordered dither with noise: every sample in memory order, one draw each.
template <class S, class D, int K>
void orderedNoise(Image<const S> src, Image<D> dst, int64_t w, int64_t h, int channels, const Quant& q, Noise& noise) {
    for (int64_t y = 0; y < h; ++y)
        for (int64_t x = 0; x < w; ++x)
            for (int c = 0; c < channels; ++c) {
                const float v = domain<S, D>(src.row(y)[K * x + c]) + noise.next();
                float r = truncated(v * q.inv) * q.step;
                r = q.threshold[y & 3][x & 3] < v - r ? r + q.step : r;
                dst.row(y)[K * x + c] = saturated<D>(r);
            }
}

// 8u to 8u: every result is a function of the source byte and, ordered, of
// the pixel's place in the 4 x 4 matrix. Large images therefore go through
// byte tables that the row formula itself fills for every byte value: the
// same bytes, a lookup per sample instead of the float arithmetic.
constexpr int64_t kTableSamples = 1 << 13;

// The constants of the two-product form (see Products) that give out[p][v]
// for every value v and pattern entry p < phases, if a search near the
// expected slopes finds them: the distinct results in order are the levels,
// k = floor((floor(256 v m / 2^16) + e_p) / 256) must be each value's level
// index and min(255, floor((256 k + b) a / 2^16)) the level.
bool findProducts(const uint8_t (*out)[256], int phases, Products& p, uint16_t e[16]) {
    bool seen[256] = {};
    for (int ph = 0; ph < phases; ++ph)
        for (int v = 0; v < 256; ++v) seen[out[ph][v]] = true;
    uint8_t level[256];
    int index[256], levels = 0;
    for (int r = 0; r < 256; ++r)
        if (seen[r]) index[r] = levels, level[levels++] = uint8_t(r);
    if (levels < 2) return false;
    const int64_t a0 = 65536 * int64_t(level[levels - 1] - level[0]) / (256 * int64_t(levels - 1));
    bool found = false;
    for (int64_t a = std::max<int64_t>(1, a0 - 256); a <= std::min<int64_t>(65535, a0 + 256) && !found; ++a) {
        int64_t lo = 0, hi = 255;
        for (int k = 0; k < levels && lo <= hi; ++k) {
            const int64_t s = level[k], w = 256 * int64_t(k);
            lo = std::max(lo, (s * 65536 + a - 1) / a - w);
            if (s < 255) hi = std::min(hi, ((s + 1) * 65536 - 1) / a - w);
            hi = std::min(hi, (int64_t(32768) * 65536 - 1) / a - w);  // a positive 16-bit high product
        }
        if (lo <= hi) p.a = uint16_t(a), p.b = uint8_t(lo), found = true;
    }
    if (!found) return false;
    const int64_t m0 = 65536 * int64_t(levels - 1) / 255;
    for (int64_t m = std::max<int64_t>(1, m0 - 64); m <= std::min<int64_t>(65535, m0 + 64); ++m) {
        bool all = true;
        for (int ph = 0; ph < phases && all; ++ph) {
            int64_t lo = 0, hi = 65535;
            for (int v = 0; v < 256 && lo <= hi; ++v) {
                const int64_t k = index[out[ph][v]], h = (256 * int64_t(v) * m) >> 16;
                lo = std::max(lo, 256 * k - h);
                hi = std::min(hi, 256 * k + 255 - h);
            }
            all = lo <= hi;
            e[ph] = uint16_t(lo);
        }
        if (all) return p.m = uint16_t(m), true;
    }
    return false;
}

// The 192 offsets of a pattern in the order of the AVX2 rows' unpacking:
// words 0-7 of a vector's first half are bytes 0-7 and words 8-15 bytes
// 16-23; its second half holds bytes 8-15 and 24-31.
void productOffsets(const uint16_t* byByte, uint16_t* lanes) {
    for (int v = 0; v < 6; ++v)
        for (int j = 0; j < 16; ++j) {
            lanes[32 * v + j] = byByte[32 * v + (j < 8 ? j : j + 8)];
            lanes[32 * v + 16 + j] = byByte[32 * v + (j < 8 ? j + 8 : j + 16)];
        }
}

constexpr int64_t kProductSamples = 1 << 18;

// Every row through the two-product form, with each matrix row's offsets.
template <int K>
void rowsByProducts(Image<const uint8_t> s, Image<uint8_t> d, TpxSize roi, Products p, const uint16_t (*e)[192]) {
#if TPX_HAVE_X86
    constexpr int pixel = K == 5 ? 4 : K;
    const Len n = Len(roi.width) * pixel;
    alignas(64) uint16_t lanes[4][192];
    for (int r = 0; r < 4; ++r) productOffsets(e[r], lanes[r]);
    for (int64_t y = 0; y < roi.height; ++y) {
        p.e = e[y & 3], p.eLanes = lanes[y & 3];
        const uint8_t* sr = s.row(y);
        uint8_t* dr = d.row(y);
        for (Len i = avx2::products(p, sr, dr, n); i < n; ++i) {
            if (K == 5 && i % 4 == 3) continue;
            const uint32_t h = (uint32_t(sr[i]) << 8) * p.m >> 16, k = ((h + p.e[i % 192]) & 0xFF00) | p.b;
            dr[i] = uint8_t(std::min<uint32_t>(255, (k * p.a) >> 16));
        }
    }
#else
    (void)s, (void)d, (void)roi, (void)p, (void)e;
#endif
}

template <int K>
bool byTables(Image<const uint8_t> s, Image<uint8_t> d, TpxSize roi, const Quant& q, int type) {
    constexpr int pixel = K == 5 ? 4 : K;
    const Len n = Len(roi.width) * pixel;
    alignas(64) uint8_t values[4 * 256], out[4 * 256], base[256];
    for (int i = 0; i < 4 * 256; ++i) values[i] = uint8_t(i / 4);  // each value in the four matrix columns
    // Without the byte permutes of AVX-512, two 16-bit products per value
    // beat a 256-entry lookup where they give every result; large images
    // only, as the search may take a few hundred microseconds.
    const bool products = TPX_HAVE_X86 && !activeAvx512Vbmi() && activeTier() >= Tier::Avx2 &&
                          int64_t(roi.width) * roi.height * pixel >= kProductSamples;
    Products pr{0, 0, 0, nullptr, nullptr, K == 5};
    alignas(64) uint16_t offsets[4][192];
    uint16_t byEntryOffset[16];
    if (type == 0) {
        row<uint8_t, uint8_t, 1, 0>(values, out, 4 * 256, q, 0);
        for (int v = 0; v < 256; ++v) base[v] = out[4 * v];
        if (products && findProducts(&base, 1, pr, byEntryOffset)) {
            for (int r = 0; r < 4; ++r) std::fill(offsets[r], offsets[r] + 192, byEntryOffset[0]);
            rowsByProducts<K>(s, d, roi, pr, offsets);
            return true;
        }
        for (int64_t y = 0; y < roi.height; ++y) {
            if constexpr (K == 5) lookupBytes3of4(base, s.row(y), d.row(y), roi.width);
            else lookupBytes(base, s.row(y), d.row(y), n);
        }
        return true;
    }
    // Ordered: as the thresholds grow with the matrix entry m, value v gives
    // its upper level for m below some rank and its lower level from there
    // on; the tables hold the lower level, the rank and which of a few steps
    // leads to the upper level. Checked against every entry's results.
    alignas(64) uint8_t byEntry[16][256], packed[256];
    for (int r = 0; r < 4; ++r) {
        row<uint8_t, uint8_t, 1, 4>(values, out, 4 * 256, q, r);
        for (int i = 0; i < 4 * 256; ++i) byEntry[kMatrix[r][i % 4]][i / 4] = out[i];
    }
    Ranked t{base, packed, {}, nullptr, K == 5};
    int steps = 0;
    for (int v = 0; v < 256; ++v) {
        const uint8_t lo = byEntry[15][v], hi = byEntry[0][v];
        int rank = 0;
        while (hi != lo && rank < 16 && byEntry[rank][v] == hi) ++rank;
        for (int m = 0; m < 16; ++m)
            if (byEntry[m][v] != (m < rank ? hi : lo)) return false;
        const uint8_t step = uint8_t(hi - lo);
        int k = 0;
        while (k < steps && t.steps[k] != step) ++k;
        if (k == 8) return false;
        if (k == steps) t.steps[steps++] = step;
        base[v] = lo;
        packed[v] = uint8_t(rank | k << 5);
    }
    // Each matrix row's entries by byte, over 192 bytes (whole pixels and
    // whole turns of four for 1, 3 and 4 bytes a pixel).
    alignas(64) uint8_t ranks[4][192];
    for (int r = 0; r < 4; ++r)
        for (int b = 0; b < 192; ++b) ranks[r][b] = uint8_t(kMatrix[r][b / pixel % 4]);
    if (products && findProducts(byEntry, 16, pr, byEntryOffset)) {
        for (int r = 0; r < 4; ++r)
            for (int b = 0; b < 192; ++b) offsets[r][b] = byEntryOffset[ranks[r][b]];
        rowsByProducts<K>(s, d, roi, pr, offsets);
        return true;
    }
    for (int64_t y = 0; y < roi.height; ++y) {
        t.ranks = ranks[y & 3];
        lookupBytesRanked(t, s.row(y), d.row(y), n);
    }
    return true;
}

// K: samples per pixel (5: four with the fourth kept).
template <class S, class D, int K>
TpxStatus reduceBits(const S* src, int srcStep, D* dst, int dstStep, TpxSize roi, int noise, int type, int levels,
                     uint8_t* buffer) {
    TPX_CHECK(check::notNull(src, dst));
    TPX_CHECK(check::size(roi));
    TPX_CHECK(check::failIf(unsigned(noise) > 100, tpxStatusBadNoise));
    TPX_CHECK(check::failIf(levels < 2 || levels > 256, tpxStatusBadLevels));
    TPX_CHECK(check::failIf(unsigned(type) > 4, tpxStatusBadDitherType));
    const bool diffusion = type >= 1 && type <= 3, withNoise = type != 0 && noise != 0;
    TPX_CHECK(check::failIf((diffusion || withNoise) && !buffer, tpxStatusNullPtr));
    constexpr int pixel = K == 5 ? 4 : K, channels = K == 5 ? 3 : K;
    const Quant q = quantFor(levels, kFull<D>);
    const Image<const S> s{src, elementStep<S>(srcStep)};
    const Image<D> d{dst, elementStep<D>(dstStep)};
    if (!diffusion && !withNoise) {
        if constexpr (std::is_same_v<S, uint8_t> && std::is_same_v<D, uint8_t>)
            if (int64_t(roi.width) * roi.height * channels >= kTableSamples && byTables<K>(s, d, roi, q, type))
                return tpxStatusOk;
        const Rows& r = rows();
        Row pickRow = nullptr;  // this member's row of the type
#define X(S_, D_, K_, O_)                                                                                  \
    if (std::is_same_v<S, S_> && std::is_same_v<D, D_> && K == K_ && (type == 0 ? 0 : 4) == O_) pickRow = r.r_##S_##_##D_##_##K_##_##O_;
        TPX_REDUCE_ROWS(X)
#undef X
        for (int64_t y = 0; y < roi.height; ++y) pickRow(s.row(y), d.row(y), roi.width, q, y);
        return tpxStatusOk;
    }
    uint8_t* work = aligned64(buffer);
    Noise gen(work + lineBytes(type, roi.width), float(noise) / 100.0f * q.step);
    float* lines = reinterpret_cast<float*>(work);
    using Diffuse = void (*)(Image<const S>, Image<D>, int64_t, int64_t, int, const Quant&, float*, Noise&);
    static constexpr Diffuse kDiffuse[2][4] = {
        {nullptr, diffuse<S, D, pixel, 1, false>, diffuse<S, D, pixel, 2, false>, diffuse<S, D, pixel, 3, false>},
        {nullptr, diffuse<S, D, pixel, 1, true>, diffuse<S, D, pixel, 2, true>, diffuse<S, D, pixel, 3, true>}};
    for (int c = 0; c < (diffusion ? channels : 0); ++c)
        kDiffuse[noise != 0][type](s, d, roi.width, roi.height, c, q, lines, gen);
    if (type == 4) orderedNoise<S, D, pixel>(s, d, roi.width, roi.height, channels, q, gen);
    return tpxStatusOk;
}

// The one-bit member's Stucki path: samples scaled by 8192 in 32-bit integers.
void stuckiBits(Image<const uint8_t> src, Image<uint8_t> dst, int64_t offset, int64_t w, int64_t h, int threshold,
                int32_t* lines) {
    constexpr int32_t kLeft[2] = {8, 4}, kAbove[5] = {2, 4, 8, 4, 2}, kBefore[5] = {1, 2, 4, 2, 1};
    const int64_t stride = w + 4;
    std::fill(lines, lines + 3 * stride, 0);
    int32_t *cur = lines, *above = lines + stride, *before = lines + 2 * stride;
    for (int64_t y = 0; y < h; ++y) {
        const uint8_t* s = src.row(y);
        uint8_t* d = dst.row(y);
        for (int64_t x = 0; x < w; ++x) {
            const int64_t i = x + 2;
            int32_t sum = kLeft[0] * cur[i - 1] + kLeft[1] * cur[i - 2];
            for (int j = -2; j <= 2; ++j) sum += kAbove[j + 2] * above[i + j] + kBefore[j + 2] * before[i + j];
            const int32_t v = int32_t(s[x]) * 8192 + sum / 42;
            const bool bit = v > threshold * 8192;
            cur[i] = v - (bit ? 255 * 8192 : 0);
            const int64_t at = offset + x;
            const uint8_t mask = uint8_t(0x80u >> (at & 7));
            d[at >> 3] = uint8_t(bit ? d[at >> 3] | mask : d[at >> 3] & ~mask);
        }
        int32_t* reuse = before;
        before = above, above = cur, cur = reuse;
    }
}

}  // namespace
}  // namespace tpx::reduce

using namespace tpx;
using namespace tpx::reduce;

extern "C" TPXCC_API TpxStatus tpxiReduceBitsGetBufferSize(int chanLayout, int width, int noise, int ditherType,
                                                            int* pBufferSize) {
    TPX_CHECK(check::notNull(pBufferSize));
    TPX_CHECK(check::failIf(width < 1, tpxStatusBadSize));
    TPX_CHECK(check::failIf(chanLayout != 1 && chanLayout != 3 && chanLayout != 4 && chanLayout != 9,
                            tpxStatusBadChannels));
    TPX_CHECK(check::failIf(unsigned(noise) > 100, tpxStatusBadNoise));
    TPX_CHECK(check::failIf(unsigned(ditherType) > 4, tpxStatusBadDitherType));
    if (ditherType == 0) return *pBufferSize = 0, tpxStatusOk;
    // The error lines; then the generator's state (twice 56 bytes rounded up
    // to 16) and its tables.
    int64_t base = lineBytes(ditherType, width);
    if (noise != 0) base += 2 * 64 + 6144;
    const int64_t size = base ? base + 64 : 0;
    TPX_CHECK(check::failIf(size > INT32_MAX, tpxStatusBadSize));  // a width no buffer can serve
    *pBufferSize = int(size);
    return tpxStatusOk;
}

#define TPX_REDUCE_MEMBER(name, S, D, K)                                                                          \
    extern "C" TPXCC_API TpxStatus name(const S* pSrc, int srcStep, D* pDst, int dstStep, TpxSize roiSize,       \
                                        int noise, int ditherType, int levels, Tpx8u* pBuffer) {                  \
        return reduceBits<S, D, K>(pSrc, srcStep, pDst, dstStep, roiSize, noise, ditherType, levels, pBuffer);   \
    }
#define TPX_REDUCE_LAYOUTS(prefix, S, D)         \
    TPX_REDUCE_MEMBER(prefix##_C1R, S, D, 1)     \
    TPX_REDUCE_MEMBER(prefix##_C3R, S, D, 3)     \
    TPX_REDUCE_MEMBER(prefix##_C4R, S, D, 4)     \
    TPX_REDUCE_MEMBER(prefix##_AC4R, S, D, 5)
TPX_REDUCE_LAYOUTS(tpxiReduceBits_8u, uint8_t, uint8_t)
TPX_REDUCE_LAYOUTS(tpxiReduceBits_16u, uint16_t, uint16_t)
TPX_REDUCE_LAYOUTS(tpxiReduceBits_16s, int16_t, int16_t)
TPX_REDUCE_LAYOUTS(tpxiReduceBits_16u8u, uint16_t, uint8_t)
TPX_REDUCE_LAYOUTS(tpxiReduceBits_16s8u, int16_t, uint8_t)
TPX_REDUCE_LAYOUTS(tpxiReduceBits_32f8u, float, uint8_t)
TPX_REDUCE_LAYOUTS(tpxiReduceBits_32f16u, float, uint16_t)
TPX_REDUCE_LAYOUTS(tpxiReduceBits_32f16s, float, int16_t)

// One bit per pixel, most significant bit first from bit 7 - offset % 8 of
// byte offset / 8 of each row; the other bits of the bytes keep their values.
extern "C" TPXCC_API TpxStatus tpxiReduceBits_8u1u_C1R(const Tpx8u* pSrc, int srcStep, Tpx8u* pDst, int dstStep,
                                                        int dstBitOffset, TpxSize roiSize, int, int, int ditherType,
                                                        Tpx8u threshold, Tpx8u* pBuffer) {
    TPX_CHECK(check::notNull(pSrc, pDst));
    TPX_CHECK(check::failIf(roiSize.width < 1 || roiSize.height < 1 || dstBitOffset < 0, tpxStatusBadSize));
    TPX_CHECK(check::failIf(ditherType == 3 && !pBuffer, tpxStatusNullPtr));
    TPX_CHECK(check::failIf(ditherType != 0 && ditherType != 3, tpxStatusBadDitherType));
    const Image<const uint8_t> s{pSrc, srcStep};
    const Image<uint8_t> d{pDst, dstStep};
    if (ditherType == 3) {
        stuckiBits(s, d, dstBitOffset, roiSize.width, roiSize.height, threshold,
                   reinterpret_cast<int32_t*>(aligned64(pBuffer)));
        return tpxStatusOk;
    }
    for (int64_t y = 0; y < roiSize.height; ++y) {
        const uint8_t* src = s.row(y);
        uint8_t* dst = d.row(y);
        for (int64_t x = 0; x < roiSize.width; ++x) {
            const int64_t at = dstBitOffset + x;
            const uint8_t mask = uint8_t(0x80u >> (at & 7));
            dst[at >> 3] = uint8_t(src[x] > threshold ? dst[at >> 3] | mask : dst[at >> 3] & ~mask);
        }
    }
    return tpxStatusOk;
}
