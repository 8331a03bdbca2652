// Routing between formats: every conversion is one library export, or a
// chain of them through intermediate formats (usually rgb24 or bgr24).
#pragma once

#include "formats.hpp"

#include <string>
#include <vector>

namespace conv {

enum class Matrix { Any, Bt601, Bt709 };
enum class Method { Any, Bilinear, Vng, Ahd };
enum class Gamma { None, Fwd, Inv };

struct Options {
    Matrix matrix = Matrix::Bt601;
    Method method = Method::Bilinear;
    int alpha = 255;  // 0..255; 16-bit formats get alpha * 257
    int dither = 4;   // the bit-depth reduction's dither type (0 none .. 4 ordered); see defaultDither
    int threshold = 128;  // monob: a white pixel is a gray sample above this
    Gamma gamma = Gamma::None;  // applied to an RGB output as the last step
};

// The dither type when none is chosen: ordered, but Stucki for monob (the
// one-bit reduction offers only none and Stucki).
int defaultDither(const Format& to);

using Run = TpxStatus (*)(const View& src, const View& dst, const Options& opt);

// One step of a route. Exact steps move samples without changing them (the
// library's channel selection and gray-to-colour copies); the others compute.
struct Step {
    const Format* from;
    const Format* to;
    std::string function;  // the export that does it
    bool exact;
    Run run;
    bool inPlace = false;  // works on the previous step's output (run gets it as both views)
};

struct Route {
    std::vector<Step> steps;
    bool exact() const;
    std::string describe() const;  // "rgb24 -[fn]-> yuv444p ..."
};

// The route with the fewest computing steps, then the fewest steps; throws
// Failure when the options leave none.
Route findRoute(const Format& from, const Format& to, const Options& opt);

// Converts src into dst (same size) along the route; throws Failure when an
// export reports an error.
void runRoute(const Route& route, const View& src, const View& dst, const Options& opt);

}  // namespace conv
