// The sizes and step layouts every family is tested over.
#pragma once

#include "support/layout.hpp"

#include <ostream>

#include <vector>

namespace tpxtest {

struct Shape {
    int width, height;
    StepKind src, dst;
    uint32_t seed;
};
std::ostream& operator<<(std::ostream& os, const Shape& s);

// Widths 1..67 (and minWidth..67 when a family needs more) with heights (from
// the minimum up, over more than one block of rows where a family needs
// several) and
// step layouts cycling through tight, padded, negative and zero steps, plus a
// few large widths with odd heights. Zero destination steps come only with
// zero source steps, so that every row writes the same values.
std::vector<Shape> standardShapes(int minWidth = 1, int minHeight = 1);

}  // namespace tpxtest
