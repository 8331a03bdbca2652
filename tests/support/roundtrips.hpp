// Round trips: an export, then one that converts back. Families list theirs
// with TPX_ROUND_TRIP in their rows file; the round-trip test checks each
// against its bound and the demo prints each one's error.
#pragma once

#include "support/export_table.hpp"

#include <functional>
#include <vector>

namespace tpxtest {

struct RoundTrip {
    const char *there, *back;
    double bound;  // the largest difference allowed, in units of the first image's samples
};
const std::vector<RoundTrip>& roundTrips();

// Sample values of a picture in 0..255: channel c (a plane of planar images,
// an element of interleaved ones) of pixel x in row y. Stored scaled to the
// source's element type (16-bit: times 257, less 32768 when signed; floating:
// divided by 255).
using SampleFn = std::function<double(int c, int64_t x, int64_t y)>;
// A smooth colour image whose values studio-range YCbCr holds without clipping.
double smoothPicture(int c, int64_t x, int64_t y);

// Converts a width x height picture with `there`, makes its destination the
// source of `back`, converts back, and returns the largest difference between
// a sample of the picture and the same sample of the result over the channels
// both have (an alpha channel, the fourth of four, skipped); -1 when a call
// fails or the images of the two do not fit together.
double roundTripError(const RoundTrip& t, int64_t width, int64_t height, const SampleFn& value = smoothPicture);

struct RoundTripRegistrar {
    RoundTripRegistrar(const char* there, const char* back, double bound);
};

}  // namespace tpxtest

#define TPX_RT_CAT2(a, b) a##b
#define TPX_RT_CAT(a, b) TPX_RT_CAT2(a, b)
#define TPX_ROUND_TRIP(there, back, bound) \
    static const ::tpxtest::RoundTripRegistrar TPX_RT_CAT(tpxRoundTrip, __LINE__)(there, back, bound)
