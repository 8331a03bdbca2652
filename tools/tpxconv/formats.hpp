// Raw pixel formats of tpxconv, described as data: planes with their
// subsampling and elements per sample, and where each colour component lives.
#pragma once

#include "tpxcc.h"

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace conv {

// A user-facing failure: one line for standard error.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

enum class Comp : uint8_t { R, G, B, A, Y, U, V, Gray, Mosaic };

struct Plane {
    int xdiv = 1, ydiv = 1;  // subsampling of the plane against the image
    int elems = 1;           // elements per plane sample (3 for packed RGB, 2 for packed 4:2:2)
};

// Rows packed in groups: `pixels` pixels in `bytes` bytes, the row padded to
// a multiple of `align` bytes (monob: 8 pixels a byte; v210: 6 pixels in four
// 32-bit words, rows of whole 128 bytes).
struct Packing {
    int pixels = 0, bytes = 0, align = 1;
};

// Component `comp` sits in `plane` at element `offset` of the row, every
// `stride` elements.
struct Channel {
    Comp comp;
    int plane, offset, stride;
};

struct Format {
    std::string name;
    int bytes = 1;  // bytes per element (v210: per 32-bit word)
    std::vector<Plane> planes;
    std::vector<Channel> channels;
    int grid = -1;      // TpxBayerGrid of a mosaic, else -1
    std::string group;  // "bayer8" or "bayer16" for mosaics
    Packing packing;    // packed rows of monob and v210, else pixels = 0

    // Pixels per block: width and height must be multiples of these.
    int blockW() const;
    int blockH() const;
    // A region of the format starts at a multiple of this many pixels.
    int startW() const { return isPacked() ? packing.pixels : blockW(); }
    bool isBayer() const { return grid >= 0; }
    bool isPacked() const { return packing.pixels > 0; }
    bool hasComp(Comp c) const;
    const Channel* channel(Comp c) const;
    // Horizontal and vertical sampling period of a component.
    int compXdiv(const Channel& c) const { return planes[size_t(c.plane)].xdiv * c.stride / planes[size_t(c.plane)].elems; }
    int compYdiv(const Channel& c) const { return planes[size_t(c.plane)].ydiv; }
    size_t planeRowBytes(int p, int w) const;
    size_t planeBytes(int p, int w, int h) const;
    size_t frameBytes(int w, int h) const;
};

const std::vector<Format>& formats();
// The format of that name; throws Failure with the list of names when unknown.
const Format& formatNamed(const std::string& name);
int formatIndex(const Format& f);

// One image in memory: plane pointers and byte steps of its top-left ROI
// pixel. A mosaic view keeps the whole mosaic and the rectangle to produce,
// because demosaicing reads around the rectangle.
struct View {
    const Format* fmt = nullptr;
    uint8_t* p[3] = {nullptr, nullptr, nullptr};
    int step[3] = {0, 0, 0};
    int w = 0, h = 0;
    TpxRect mosaicRoi{0, 0, 0, 0};
    TpxSize mosaicSize{0, 0};

    TpxSize roi() const { return {w, h}; }
    // Rows [y0, y1) of this view (y0 and y1 multiples of the format's block height).
    View band(int y0, int y1) const;
};

// A frame buffer of a format, tightly packed, with slack after the last
// plane for conversions that read a few elements past the last sample.
struct Frame {
    std::vector<uint8_t> data;
    View view;
    Frame() = default;
    Frame(const Format& f, int w, int h);
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;
    Frame(Frame&&) = default;
    Frame& operator=(Frame&&) = default;
    size_t bytes() const { return data.size() - kSlack; }
    static constexpr size_t kSlack = 64;
};

// Points `v` at rectangle (x, y, w, h) of a tightly packed frame of size fw x fh.
View viewOf(const Format& f, uint8_t* base, int fw, int fh, int x, int y, int w, int h);

}  // namespace conv
