#include "image.hpp"

#include <sstream>

namespace tpxtest {

namespace {
constexpr std::ptrdiff_t kGuard = 64;
}

Image::Image(int rowElems, int height, int elemSize, StepKind kind, uint32_t seed, bool aligned)
    : rowElems_(rowElems), height_(height), elemSize_(elemSize), kind_(kind) {
    const std::ptrdiff_t rowBytes = std::ptrdiff_t(rowElems) * elemSize;
    std::ptrdiff_t stride = rowBytes;
    if (kind == StepKind::Padded) stride = rowBytes + 11 * elemSize;
    if (aligned) stride = (stride + 63) / 64 * 64;
    const int storedRows = kind == StepKind::Zero ? 1 : height;
    const std::ptrdiff_t body = stride * (storedRows - 1) + rowBytes;
    const std::ptrdiff_t skew = aligned ? 0 : (elemSize == 1 ? 3 : elemSize);
    buf_.resize(size_t(kGuard * 2 + 64 + skew + body));
    std::mt19937 rng(seed);
    for (auto& b : buf_) b = uint8_t(rng());
    // Align the buffer start offset to 64 within the allocation's address.
    const std::uintptr_t base = reinterpret_cast<std::uintptr_t>(buf_.data());
    const std::ptrdiff_t lead = kGuard + std::ptrdiff_t((64 - (base + kGuard) % 64) % 64) + skew;
    switch (kind) {
        case StepKind::Tight:
        case StepKind::Padded: origin_ = lead; step_ = int(stride); break;
        case StepKind::Negative: origin_ = lead + stride * (height - 1); step_ = -int(stride); break;
        case StepKind::Zero: origin_ = lead; step_ = 0; break;
    }
    snap_ = buf_;
}

::testing::AssertionResult Image::untouchedExcept(const std::function<bool(int, int)>& written) const {
    std::vector<uint8_t> mayWrite(buf_.size(), 0);
    if (written) {
        for (int y = 0; y < height_; ++y)
            for (int e = 0; e < rowElems_; ++e)
                if (written(e, y)) {
                    const std::ptrdiff_t at = origin_ + std::ptrdiff_t(y) * step_ + std::ptrdiff_t(e) * elemSize_;
                    std::memset(&mayWrite[size_t(at)], 1, size_t(elemSize_));
                }
    }
    for (size_t i = 0; i < buf_.size(); ++i) {
        if (mayWrite[i] || buf_[i] == snap_[i]) continue;
        std::ostringstream where;
        const std::ptrdiff_t rel = std::ptrdiff_t(i) - origin_;
        if (step_ != 0) {
            // Locate the byte by row when it lies within the rows' span.
            const std::ptrdiff_t s = step_;
            const std::ptrdiff_t y = rel >= 0 ? rel / s : -((-rel + std::abs(s) - 1) / std::abs(s)) * (s > 0 ? 1 : -1);
            where << "byte " << rel << " from the origin (row ~" << y << ", byte "
                  << rel - y * s << " of the row)";
        } else {
            where << "byte " << rel << " from the origin";
        }
        return ::testing::AssertionFailure() << "wrote " << where.str() << " outside what it may write ("
                                             << stepName(kind_) << " step " << step_ << ", "
                                             << rowElems_ << " x " << height_ << ")";
    }
    return ::testing::AssertionSuccess();
}

::testing::AssertionResult Image::untouched() const { return untouchedExcept(nullptr); }

}  // namespace tpxtest
