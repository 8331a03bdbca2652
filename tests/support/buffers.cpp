#include "support/buffers.hpp"

#include <cstdlib>
#include <cstring>

namespace tpxtest {
namespace {

constexpr std::ptrdiff_t kGuard = 64;

// Byte distance between rows of `rowBytes` bytes: whole elements, 11 of
// them more when padded.
int64_t stepFor(const ImageShape& im, StepKind k, int64_t rowBytes) {
    const int e = elemBytes(im.elem);
    const int64_t tight = (rowBytes + e - 1) / e * e, padded = tight + 11 * e;
    switch (k) {
        case StepKind::Tight: return tight;
        case StepKind::Padded: return padded;
        case StepKind::Negative: return -padded;
        default: return 0;
    }
}

// Random bytes, eight from each step of a 64-bit generator (images of many
// megabytes are filled quickly).
struct Bits {
    uint64_t state;
    explicit Bits(uint32_t seed) : state(seed * 0x9E3779B97F4A7C15ull + 1) {}
    uint64_t next() {
        state ^= state << 13, state ^= state >> 7, state ^= state << 17;
        return state;
    }
    uint32_t operator()() { return uint32_t(next() >> 32); }
    void fill(uint8_t* p, int64_t n) {
        for (; n >= 8; p += 8, n -= 8) {
            const uint64_t v = next();
            std::memcpy(p, &v, 8);
        }
        for (const uint64_t v = next(); n > 0; --n) *p++ = uint8_t(v >> (8 * n));
    }
};

// Samples of one row: random bits, or 0..1 for floating types.
void fillRow(Elem e, uint8_t* p, int64_t bytes, Bits& rng) {
    if (e != Elem::F32 && e != Elem::F64) return rng.fill(p, bytes);
    for (int64_t i = 0; i + elemBytes(e) <= bytes; i += elemBytes(e)) storeSample(e, p + i, double(rng() % 256) / 255.0);
}

}  // namespace

Buffers::Buffers(const Export& e, int64_t width, int64_t height, uint32_t seed, Layout layout) {
    const ExportShape& s = e.shape;
    Bits rng(seed);
    args.width = width;
    args.height = height;
    if (s.bayer()) args.imageWidth = width, args.imageHeight = height;
    if (s.family && s.family->init) s.family->init(args, extra_, seed);
    for (int d = 0; d < 2; ++d) {
        const ImageShape& im = side(s, d);
        const StepKind kind = s.noSteps ? StepKind::Tight : d ? layout.dst : layout.src;
        for (int p = 0; p < im.planes; ++p) {
            Plane pl;
            pl.rows = planeRows(im, p, height);
            pl.rowBytes = rowBytesOf(s, d, p, args);
            // Planes sharing one step take the first plane's.
            pl.step = im.pass == Pass::Planes && p > 0 ? side_[d][0].step : stepFor(im, kind, pl.rowBytes);
            const int64_t stored = pl.step == 0 ? 1 : pl.rows;
            const int64_t span = stored > 0 ? (stored - 1) * std::abs(pl.step) + pl.rowBytes : 0;
            const int e8 = elemBytes(im.elem);
            const std::ptrdiff_t skew = e8 == 1 ? 3 : e8;  // deliberately not 16-byte aligned
            pl.bytes.resize(size_t(2 * kGuard + skew + span));
            rng.fill(pl.bytes.data(), int64_t(pl.bytes.size()));
            pl.origin = kGuard + skew + (pl.step < 0 ? (stored - 1) * -pl.step : 0);
            (d ? args.dstStep : args.srcStep)[p] = stepArgument(im, pl.step);
            side_[d].push_back(std::move(pl));
        }
    }
    // The images the call reads: the source, or the destination in place.
    const int in = s.inPlace() ? 1 : 0;
    const ImageShape& inShape = side(s, in);
    for (int p = 0; p < planes(in); ++p)
        for (int64_t r = 0; r < rows(in, p); ++r) fillRow(inShape.elem, row(in, p, r), rowBytes(in, p), rng);
    if (s.family && s.family->fill)
        for (int p = 0; p < planes(in); ++p)
            s.family->fill(p, row(in, p, 0), rowBytes(in, p), rows(in, p), stepBytes(in, p), seed + uint32_t(p));
    for (int d = 0; d < 2; ++d)
        for (Plane& pl : side_[d]) pl.snapshot = pl.bytes;
    pointArgs();
}

Buffers::Buffers(const Buffers& o) : args(o.args), side_{o.side_[0], o.side_[1]}, extra_(o.extra_) {
    // Family data and the work buffer live in extra_: point into this copy's.
    auto rebase = [&](auto* p) -> decltype(p) {
        const auto* b = reinterpret_cast<const uint8_t*>(p);
        if (!p || o.extra_.empty() || b < o.extra_.data() || b >= o.extra_.data() + o.extra_.size()) return p;
        return reinterpret_cast<decltype(p)>(extra_.data() + (b - o.extra_.data()));
    };
    args.extra = rebase(args.extra);
    args.buffer = rebase(args.buffer);
    // A copy starts its own record of changes from the bytes it holds now.
    for (int d = 0; d < 2; ++d)
        for (Plane& pl : side_[d]) pl.snapshot = pl.bytes;
    pointArgs();
}

void Buffers::pointArgs() {
    for (int d = 0; d < 2; ++d)
        for (int p = 0; p < planes(d); ++p) {
            Plane& pl = side_[d][size_t(p)];
            uint8_t* at = pl.bytes.data() + pl.origin;
            if (d) args.dst[p] = at;
            else args.src[p] = at;
        }
}

std::string Buffers::firstChange(int d) const {
    for (size_t p = 0; p < side_[d].size(); ++p) {
        const Plane& pl = side_[d][p];
        for (size_t i = 0; i < pl.bytes.size(); ++i)
            if (pl.bytes[i] != pl.snapshot[i])
                return std::string(d ? "destination" : "source") + " plane " + std::to_string(p) +
                       " changed at byte " + std::to_string(std::ptrdiff_t(i) - pl.origin) + " from row 0 (step " +
                       std::to_string(pl.step) + ")";
    }
    return {};
}

bool Buffers::sameDestination(const Buffers& o) const {
    for (size_t p = 0; p < side_[1].size(); ++p)
        if (side_[1][p].bytes != o.side_[1][p].bytes) return false;
    return true;
}

}  // namespace tpxtest
