#include "routes.hpp"

#include <algorithm>
#include <array>
#include <climits>

namespace conv {
namespace {

enum Cost {
#define COST(name, value) name = value,
#include "routes.def"
};

struct Edge {
    const char* from;  // a format name, or a group ("bayer8", "bayer16")
    const char* to;
    Matrix matrix;  // Any: not a conversion between RGB and YCbCr
    Method method;  // Any: not a demosaic
    int cost;
    const char* function;
    Run run;
};

Tpx16u* u16(uint8_t* p) { return reinterpret_cast<Tpx16u*>(p); }

// YCrCb members take the planes in the order Y, Cr, Cb.
View swapChroma(View v) {
    std::swap(v.p[1], v.p[2]);
    std::swap(v.step[1], v.step[2]);
    return v;
}

TpxBayerGrid grid(const View& v) { return TpxBayerGrid(v.fmt->grid); }

const Tpx32f kBgrWeights[3] = {0.114f, 0.587f, 0.299f};  // the fixed gray weights, channels reversed
// VNG's gains for B, G, R and A: unit gains, and the alpha value as a fraction
// of full scale (A is the full-scale value times its gain, rounded).
std::array<Tpx32f, 4> vngGains(const Options& o) { return {1.f, 1.f, 1.f, Tpx32f(o.alpha) / 255.f}; }

// Argument patterns of the exports: packed (S0, D0), planes with one shared
// step (SP1, DP1) or one step each (SP, DP), two planes (S2, D2), 16-bit
// packed (S16, D16) and the mosaic (MOS).
#define S0 s.p[0], s.step[0]
#define D0 d.p[0], d.step[0]
#define SP1 s.p, s.step[0]
#define DP1 d.p, d.step[0]
#define SP s.p, s.step
#define DP d.p, d.step
#define SPr swapChroma(s).p, swapChroma(s).step  // planes Y, V, U
#define DPr swapChroma(d).p, swapChroma(d).step
#define S2 s.p[0], s.step[0], s.p[1], s.step[1]
#define D2 d.p[0], d.step[0], d.p[1], d.step[1]
#define S16 u16(s.p[0]), s.step[0]
#define D16 u16(d.p[0]), d.step[0]
#define MOS s.p[0], s.mosaicRoi, s.mosaicSize, s.step[0]
#define MOS16 u16(s.p[0]), s.mosaicRoi, s.mosaicSize, s.step[0]
#define ROI s.roi()
// v210 steps count 32-bit words, its gray destination's steps 16-bit words.
#define V210 reinterpret_cast<const Tpx32u*>(s.p[0]), s.step[0] / 4, u16(d.p[0]), d.step[0] / 2
#define AL Tpx8u(o.alpha)
// A work buffer of the size the bit-depth reduction asks for, for the chosen dither.
TpxStatus workBuffer(int layout, const View& s, const Options& o, std::vector<uint8_t>& buffer) {
    int size = 0;
    const TpxStatus st = tpxiReduceBitsGetBufferSize(layout, s.w, 0, o.dither, &size);
    buffer.resize(size_t(std::max(size, 0)) + 1);
    return st;
}
// The argument patterns of routes.def: each calls its export with the views
// and options laid out as that export takes them.
#define PATTERN(name, ...)                                                               \
    template <class Fn>                                                                  \
    TpxStatus name(Fn fn, const View& s, const View& d, const Options& o) {              \
        (void)d, (void)o;                                                                \
        return fn(__VA_ARGS__);                                                          \
    }
PATTERN(C_C, S0, D0, ROI)
PATTERN(C_CA, S0, D0, ROI, AL)
PATTERN(C_C_BGR, S0, D0, ROI, kBgrWeights)
PATTERN(C_P, S0, DP, ROI)
PATTERN(C_P1, S0, DP1, ROI)
PATTERN(C_Pr, S0, DPr, ROI)
PATTERN(C_P2, S0, D2, ROI)
PATTERN(P_C, SP, D0, ROI)
PATTERN(P_CA, SP, D0, ROI, AL)
PATTERN(Pr_CA, SPr, D0, ROI, AL)
PATTERN(P1_C, SP1, D0, ROI)
PATTERN(P1_CA, SP1, D0, ROI, AL)
PATTERN(P2_C, S2, D0, ROI)
PATTERN(P2_CA, S2, D0, ROI, AL)
PATTERN(P_P, SP, DP, ROI)
PATTERN(P_P2, SP, D2, ROI)
PATTERN(Pr_P2, SPr, D2, ROI)
PATTERN(P2_P, S2, DP, ROI)
PATTERN(P2_Pr, S2, DPr, ROI)
PATTERN(C16_C16, S16, D16, ROI)
PATTERN(C16_C16A, S16, D16, ROI, Tpx16u(o.alpha * 257))
PATTERN(C16_C16_BGR, S16, D16, ROI, kBgrWeights)
PATTERN(V210_GRAY, V210, ROI)
PATTERN(MOS_C_GRID, MOS, D0, grid(s))
PATTERN(MOS_C_GRID0, MOS, D0, grid(s), 0)
PATTERN(MOS_GAINS_C_GRID, MOS, vngGains(o).data(), D0, grid(s))
PATTERN(MOS16_C16_GRID, MOS16, D16, grid(s))
PATTERN(MOS16_C16_GRID0, MOS16, D16, grid(s), 0)
PATTERN(MOS16_GAINS_C16_GRID, MOS16, vngGains(o).data(), D16, grid(s))
#undef PATTERN

// 16 bits to 8 through the bit-depth reduction, 256 levels, the chosen
// dither; the layout is the channel count.
template <class Fn>
TpxStatus REDUCE16(Fn fn, const View& s, const View& d, const Options& o) {
    std::vector<uint8_t> buffer;
    if (TpxStatus st = workBuffer(int(s.fmt->channels.size()), s, o, buffer); st < 0) return st;
    return fn(u16(s.p[0]), s.step[0], d.p[0], d.step[0], s.roi(), 0, o.dither, 256, buffer.data());
}
// Gray to one bit per pixel, most significant bit first: a sample above the
// threshold gives 1, which monob reads as white.
template <class Fn>
TpxStatus ONEBIT(Fn fn, const View& s, const View& d, const Options& o) {
    std::vector<uint8_t> buffer;
    if (TpxStatus st = workBuffer(1, s, o, buffer); st < 0) return st;
    return fn(s.p[0], s.step[0], d.p[0], d.step[0], 0, s.roi(), 0, 0, o.dither, Tpx8u(o.threshold), buffer.data());
}

const Edge kEdges[] = {
#define EDGE(from, to, matrix, method, cost, fn, pattern)                                          \
    {from, to, Matrix::matrix, Method::method, cost, #fn,                                           \
     [](const View& s, const View& d, const Options& o) -> TpxStatus { return pattern(fn, s, d, o); }},
#include "routes.def"
};

// ---- Gamma correction of RGB outputs, in place, alpha untouched ----

template <class T>
TpxStatus inPlace(TpxStatus (*fn)(T*, int, TpxSize), const View& v) {
    return fn(reinterpret_cast<T*>(v.p[0]), v.step[0], v.roi());
}

struct GammaEdge {
    Gamma gamma;
    int bytes, channels;  // of the RGB format it corrects
    const char* function;
    Run run;
};
const GammaEdge kGammaEdges[] = {
#define GAMMA(dir, bytes, channels, fn) \
    {Gamma::dir, bytes, channels, #fn, [](const View& v, const View&, const Options&) { return inPlace(fn, v); }},
#include "routes.def"
};

Step gammaStep(const Format& f, Gamma g) {
    if (f.hasComp(Comp::R))
        for (const GammaEdge& e : kGammaEdges)
            if (e.gamma == g && e.bytes == f.bytes && e.channels == int(f.channels.size()))
                return {&f, &f, e.function, false, e.run, true};
    throw Failure("--gamma corrects RGB outputs (rgb24, bgr24, rgba, bgra, rgb48le, bgra64le), not " + f.name);
}

// ---- Repacking: moving samples between layouts of the same components ----
//
// The library's gray conversion with the weights (1, 0, 0), (0, 1, 0) or
// (0, 0, 1) returns the selected channel exactly (8u: (c * 32768 + 16384) >> 15
// and its grouped form both give c; 16u: c * 1.0f), so a conversion with a
// one-pixel-wide ROI and the steps set to the sample distances copies every
// sample of one component from one layout into another. The weight picks the
// sample itself or one up to two elements before it, so the read never starts
// before the row; it may end two elements after the last sample (frames keep
// slack for that).
const Tpx32f kSelect[3][3] = {{1.f, 0.f, 0.f}, {0.f, 1.f, 0.f}, {0.f, 0.f, 1.f}};

TpxStatus gather(const uint8_t* src, int srcStride, int offset, uint8_t* dst, int dstStride, int n, int bytes) {
    const int back = std::min(offset, 2);
    const TpxSize column{1, n};
    if (bytes == 1)
        return tpxiColorToGray_8u_C3C1R(src - back, srcStride, dst, dstStride, column, kSelect[back]);
    const Tpx16u* s16 = reinterpret_cast<const Tpx16u*>(src) - back;
    return tpxiColorToGray_16u_C3C1R(s16, srcStride, u16(dst), dstStride, column, kSelect[back]);
}

// Alpha of a four-channel destination that the source lacks: gray-to-colour
// with alpha writes it (the colour bytes are overwritten afterwards). One zero
// row serves every line through a source step of 0.
TpxStatus fillAlpha(const View& d, int alpha) {
    const std::vector<uint8_t> zero(size_t(d.w) * size_t(d.fmt->bytes));
    const TpxSize size{d.w, d.h};
    return d.fmt->bytes == 1
               ? tpxiGrayToRGB_8u_C1C4R(zero.data(), 0, d.p[0], d.step[0], size, Tpx8u(alpha))
               : tpxiGrayToRGB_16u_C1C4R(reinterpret_cast<const Tpx16u*>(zero.data()), 0, u16(d.p[0]), d.step[0],
                                         size, Tpx16u(alpha * 257));
}

TpxStatus repack(const View& s, const View& d, const Options& o) {
    const Format &fs = *s.fmt, &fd = *d.fmt;
    const int bytes = fd.bytes;
    if (fd.hasComp(Comp::A) && !fs.hasComp(Comp::A))
        if (TpxStatus st = fillAlpha(d, o.alpha); st < 0) return st;
    for (const Channel& cd : fd.channels) {
        const Channel* cs = fs.channel(cd.comp);
        if (!cs) continue;
        const int rows = d.h / fd.compYdiv(cd), n = d.w / fd.compXdiv(cd);
        for (int r = 0; r < rows; ++r) {
            const uint8_t* sp = s.p[cs->plane] + std::ptrdiff_t(r) * s.step[cs->plane] + cs->offset * bytes;
            uint8_t* dp = d.p[cd.plane] + std::ptrdiff_t(r) * d.step[cd.plane] + cd.offset * bytes;
            if (TpxStatus st = gather(sp, cs->stride * bytes, cs->offset, dp, cd.stride * bytes, n, bytes); st < 0)
                return st;
        }
    }
    return tpxStatusOk;
}

// Layouts of the same colour components with the same sampling repack
// exactly; a missing alpha is filled.
bool repackable(const Format& a, const Format& b) {
    if (&a == &b || a.bytes != b.bytes || a.isBayer() || b.isBayer() || a.isPacked() || b.isPacked()) return false;
    for (const Channel& cb : b.channels) {
        const Channel* ca = a.channel(cb.comp);
        if (!ca && cb.comp == Comp::A) continue;
        if (!ca || a.compXdiv(*ca) != b.compXdiv(cb) || a.compYdiv(*ca) != b.compYdiv(cb)) return false;
    }
    for (const Channel& ca : a.channels)
        if (ca.comp != Comp::A && !b.hasComp(ca.comp)) return false;
    return true;
}

Step repackStep(const Format& a, const Format& b) {
    return {&a, &b, a.bytes == 1 ? "tpxiColorToGray_8u_C3C1R copy" : "tpxiColorToGray_16u_C3C1R copy", true, repack};
}

bool matches(const char* pattern, const Format& f) { return f.name == pattern || f.group == pattern; }

}  // namespace

bool Route::exact() const {
    return std::all_of(steps.begin(), steps.end(), [](const Step& s) { return s.exact; });
}

std::string Route::describe() const {
    std::string out = steps.empty() ? "" : steps.front().from->name;
    for (const Step& s : steps) out += " -[" + s.function + "]-> " + s.to->name;
    return out;
}

int defaultDither(const Format& to) { return to.name == "monob" ? 3 : 4; }

static Route cheapestRoute(const Format& from, const Format& to, const Options& opt) {
    if (to.name == "monob" && opt.dither != 0 && opt.dither != 3)
        throw Failure("monob output dithers with none or stucki only");
    if (&from == &to && !from.isBayer() && !from.isPacked()) return Route{{repackStep(from, to)}};  // a copy, of the ROI say
    // All steps usable with these options, as (cost, step).
    std::vector<std::pair<int, Step>> edges;
    for (const Edge& e : kEdges) {
        if (e.matrix != Matrix::Any && e.matrix != opt.matrix) continue;
        if (e.method != Method::Any && e.method != opt.method) continue;
        for (const Format& f : formats())
            if (matches(e.from, f)) edges.push_back({e.cost, {&f, &formatNamed(e.to), e.function, e.cost == kExact, e.run}});
    }
    for (const Format& a : formats())
        for (const Format& b : formats())
            if (repackable(a, b)) edges.push_back({kRepack, repackStep(a, b)});

    // Cheapest path (Dijkstra over a handful of formats).
    const size_t n = formats().size();
    std::vector<int> dist(n, INT_MAX), via(n, -1);
    std::vector<bool> done(n, false);
    dist[size_t(formatIndex(from))] = 0;
    for (;;) {
        size_t u = n;
        for (size_t i = 0; i < n; ++i)
            if (!done[i] && dist[i] != INT_MAX && (u == n || dist[i] < dist[u])) u = i;
        if (u == n) break;
        done[u] = true;
        for (size_t k = 0; k < edges.size(); ++k) {
            const auto& [cost, step] = edges[k];
            if (size_t(formatIndex(*step.from)) != u) continue;
            const size_t v = size_t(formatIndex(*step.to));
            if (dist[u] + cost < dist[v]) dist[v] = dist[u] + cost, via[v] = int(k);
        }
    }
    const size_t target = size_t(formatIndex(to));
    if (dist[target] == INT_MAX || &from == &to) {  // a mosaic or packed rows cannot be copied
        std::string why = "no conversion from " + from.name + " to " + to.name + " in this library";
        if (opt.matrix == Matrix::Bt709) why += " with BT.709";
        if (from.isBayer() && opt.method != Method::Bilinear)
            why += opt.matrix == Matrix::Bt709 ? " and this demosaic method" : " with this demosaic method";
        if (from.name == "monob") why += " (monob is an output format only)";
        else if (to.name == "v210") why += " (v210 is an input format only)";
        else if (from.bytes != to.bytes) why += " (16-bit formats convert only among themselves)";
        throw Failure(why);
    }
    Route r;
    for (size_t v = target; v != size_t(formatIndex(from)); v = size_t(formatIndex(*edges[size_t(via[v])].second.from)))
        r.steps.push_back(edges[size_t(via[v])].second);
    std::reverse(r.steps.begin(), r.steps.end());
    return r;
}

Route findRoute(const Format& from, const Format& to, const Options& opt) {
    Route r = cheapestRoute(from, to, opt);
    if (opt.gamma != Gamma::None) r.steps.push_back(gammaStep(to, opt.gamma));
    return r;
}

void runRoute(const Route& route, const View& src, const View& dst, const Options& opt) {
    // The steps from `last` on work in place on dst, written by the step before them.
    size_t last = route.steps.size();
    while (last > 1 && route.steps[last - 1].inPlace) --last;
    View in = src;
    Frame scratch[2];
    for (size_t i = 0; i < route.steps.size(); ++i) {
        const Step& s = route.steps[i];
        View out = dst;
        if (i + 1 < last) {
            scratch[i % 2] = Frame(*s.to, src.w, src.h);
            out = scratch[i % 2].view;
        }
        const TpxStatus st = s.run(s.inPlace ? out : in, out, opt);
        if (st < 0) throw Failure(s.function + " failed with status " + std::to_string(st));
        in = out;
    }
}

}  // namespace conv
