#include "formats.hpp"

#include <algorithm>

namespace conv {
namespace {

using C = Comp;

// Packed pixels: one plane, the components in memory order.
Format packed(const char* name, int bytes, std::vector<Comp> order) {
    Format f{name, bytes, {{1, 1, int(order.size())}}, {}, -1, {}, {}};
    for (size_t i = 0; i < order.size(); ++i) f.channels.push_back({order[i], 0, int(i), int(order.size())});
    return f;
}

// Y, U and V planes with chroma subsampled by xdiv x ydiv.
Format planar(const char* name, int xdiv, int ydiv) {
    return {name, 1, {{1, 1, 1}, {xdiv, ydiv, 1}, {xdiv, ydiv, 1}}, {{C::Y, 0, 0, 1}, {C::U, 1, 0, 1}, {C::V, 2, 0, 1}}, -1, {}, {}};
}

// 4:2:0 luma plane and one plane of chroma pairs (first, second).
Format semiPlanar(const char* name, Comp first, Comp second) {
    return {name, 1, {{1, 1, 1}, {2, 2, 2}}, {{C::Y, 0, 0, 1}, {first, 1, 0, 2}, {second, 1, 1, 2}}, -1, {}, {}};
}

// Packed 4:2:2: two bytes per pixel, components at the given offsets of a
// four-byte pair.
Format packed422(const char* name, int y, int u, int v) {
    return {name, 1, {{1, 1, 2}}, {{C::Y, 0, y, 2}, {C::U, 0, u, 4}, {C::V, 0, v, 4}}, -1, {}, {}};
}

Format bayer(const char* name, int bytes, int grid) {
    return {name, bytes, {{1, 1, 1}}, {{C::Mosaic, 0, 0, 1}}, grid, bytes == 1 ? "bayer8" : "bayer16", {}};
}

// One component in rows packed in groups.
Format grouped(const char* name, int bytes, Comp comp, Packing packing) {
    Format f = packed(name, bytes, {comp});
    f.packing = packing;
    return f;
}

std::vector<Format> makeFormats() {
    const Comp R = C::R, G = C::G, B = C::B, A = C::A, Y = C::Y, U = C::U, V = C::V, Gray = C::Gray;
#define PACKED(name, bytes, ...) packed(name, bytes, {__VA_ARGS__}),
#define PLANAR(name, xdiv, ydiv) planar(name, xdiv, ydiv),
#define SEMIPLANAR(name, first, second) semiPlanar(name, first, second),
#define PACKED422(name, y, u, v) packed422(name, y, u, v),
#define GROUPED(name, bytes, comp, pixels, groupBytes, align) grouped(name, bytes, comp, {pixels, groupBytes, align}),
#define BAYER(name, bytes, grid) bayer(name, bytes, grid),
    return {
#include "routes.def"
    };
}

}  // namespace

int Format::blockW() const {
    int b = 1;
    for (const auto& c : channels) b = std::max(b, compXdiv(c));
    return isBayer() ? 1 : b;
}

int Format::blockH() const {
    int b = 1;
    for (const auto& c : channels) b = std::max(b, compYdiv(c));
    return b;
}

const Channel* Format::channel(Comp c) const {
    for (const auto& ch : channels)
        if (ch.comp == c) return &ch;
    return nullptr;
}

bool Format::hasComp(Comp c) const { return channel(c) != nullptr; }

size_t Format::planeRowBytes(int p, int w) const {
    const Plane& pl = planes[size_t(p)];
    if (isPacked()) {
        const size_t groups = size_t(w + packing.pixels - 1) / size_t(packing.pixels), align = size_t(packing.align);
        return (groups * size_t(packing.bytes) + align - 1) / align * align;
    }
    return size_t(w / pl.xdiv) * size_t(pl.elems) * size_t(bytes);
}

size_t Format::planeBytes(int p, int w, int h) const { return planeRowBytes(p, w) * size_t(h / planes[size_t(p)].ydiv); }

size_t Format::frameBytes(int w, int h) const {
    size_t n = 0;
    for (size_t p = 0; p < planes.size(); ++p) n += planeBytes(int(p), w, h);
    return n;
}

const std::vector<Format>& formats() {
    static const std::vector<Format> all = makeFormats();
    return all;
}

const Format& formatNamed(const std::string& name) {
    for (const auto& f : formats())
        if (f.name == name) return f;
    std::string known;
    for (const auto& f : formats()) known += (known.empty() ? "" : " ") + f.name;
    throw Failure("unknown pixel format '" + name + "' (known: " + known + ")");
}

int formatIndex(const Format& f) { return int(&f - formats().data()); }

View viewOf(const Format& f, uint8_t* base, int fw, int fh, int x, int y, int w, int h) {
    View v;
    v.fmt = &f;
    v.w = w;
    v.h = h;
    size_t at = 0;
    for (size_t p = 0; p < f.planes.size(); ++p) {
        const Plane& pl = f.planes[p];
        v.step[p] = int(f.planeRowBytes(int(p), fw));
        v.p[p] = base + at;
        if (f.isPacked())
            v.p[p] += size_t(y) * size_t(v.step[p]) + size_t(x / f.packing.pixels) * size_t(f.packing.bytes);
        else if (!f.isBayer())
            v.p[p] += size_t(y / pl.ydiv) * size_t(v.step[p]) + size_t(x / pl.xdiv) * size_t(pl.elems * f.bytes);
        at += f.planeBytes(int(p), fw, fh);
    }
    if (f.isBayer()) {
        v.mosaicRoi = {x, y, w, h};
        v.mosaicSize = {fw, fh};
    }
    return v;
}

View View::band(int y0, int y1) const {
    View b = *this;
    b.h = y1 - y0;
    if (fmt->isBayer()) {
        b.mosaicRoi.y += y0;
        b.mosaicRoi.height = b.h;
        return b;
    }
    for (size_t p = 0; p < fmt->planes.size(); ++p)
        b.p[p] += std::ptrdiff_t(y0 / fmt->planes[p].ydiv) * std::ptrdiff_t(step[p]);
    return b;
}

Frame::Frame(const Format& f, int w, int h) : data(f.frameBytes(w, h) + kSlack) {
    view = viewOf(f, data.data(), w, h, 0, 0, w, h);
}

}  // namespace conv
