#include "shapes.hpp"

#include <ostream>

namespace tpxtest {

std::ostream& operator<<(std::ostream& os, const Shape& s) {
    return os << s.width << "x" << s.height << " src " << stepName(s.src) << " dst " << stepName(s.dst)
              << " seed " << s.seed;
}

std::vector<Shape> standardShapes(int minWidth, int minHeight) {
    static const StepKind kinds[][2] = {
        {StepKind::Tight, StepKind::Tight},    {StepKind::Padded, StepKind::Padded},
        {StepKind::Negative, StepKind::Padded}, {StepKind::Padded, StepKind::Negative},
        {StepKind::Zero, StepKind::Zero},      {StepKind::Tight, StepKind::Negative},
        {StepKind::Zero, StepKind::Padded},
    };
    static const int heights[] = {1, 2, 3, 5, 4, 7, 6};
    std::vector<Shape> out;
    uint32_t seed = 1;
    for (int w = minWidth; w <= 67; ++w) {
        const int i = w % 7, j = (w / 7 + w) % 7;
        int h = heights[j];
        if (minHeight > 1) h += minHeight - 1;  // whole blocks of rows, and more than one
        out.push_back({w, h, kinds[i][0], kinds[i][1], seed++});
    }
    const Shape large[] = {{255, 3, StepKind::Padded, StepKind::Padded, 0},
                           {1920, 3, StepKind::Tight, StepKind::Tight, 0},
                           {1023, 5, StepKind::Negative, StepKind::Padded, 0},
                           {4097, 2, StepKind::Padded, StepKind::Negative, 0}};
    for (Shape s : large) {
        if (s.height < minHeight) s.height = minHeight + 1;
        s.seed = seed++;
        out.push_back(s);
    }
    return out;
}

}  // namespace tpxtest
