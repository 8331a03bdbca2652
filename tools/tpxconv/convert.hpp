// Converting frames along a route: whole frames in parallel, or horizontal
// bands of one frame (every route converts rows independently, demosaicing
// reading its neighbours from the whole mosaic), each on its own thread.
#pragma once

#include "routes.hpp"

#include <vector>

namespace conv {

// Converts srcs[i] into dsts[i] with `threads` threads in all.
void convertFrames(const Route& route, const std::vector<View>& srcs, const std::vector<View>& dsts,
                   const Options& opt, int threads);

// Throws Failure unless a w x h region fits every format of the route.
void checkRouteSize(const Route& route, const Format& from, int w, int h);

}  // namespace conv
