// Test images with guard bytes: every byte around the ROI, between rows and
// around the whole buffer holds random data whose snapshot proves afterwards
// that a call wrote nothing it should not have.
#pragma once

#include "support/layout.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <type_traits>
#include <random>
#include <string>
#include <vector>

namespace tpxtest {


class Image {
public:
    // rowElems elements of elemSize bytes in each of `height` rows. The first
    // element is deliberately not 16-byte aligned unless `aligned` is set.
    Image(int rowElems, int height, int elemSize, StepKind kind, uint32_t seed, bool aligned = false);

    uint8_t* origin() { return buf_.data() + origin_; }
    const uint8_t* origin() const { return buf_.data() + origin_; }
    template <class T> T* ptr() { return reinterpret_cast<T*>(origin()); }
    template <class T> const T* ptr() const { return reinterpret_cast<const T*>(origin()); }
    int step() const { return step_; }
    int width() const { return rowElems_; }
    int height() const { return height_; }
    StepKind kind() const { return kind_; }

    // Element e of row y, read and written through the step.
    template <class T> T get(int e, int y) const {
        T v;
        std::memcpy(&v, origin() + std::ptrdiff_t(y) * step_ + std::ptrdiff_t(e) * elemSize_, sizeof v);
        return v;
    }
    template <class T> void set(int e, int y, T v) {
        std::memcpy(origin() + std::ptrdiff_t(y) * step_ + std::ptrdiff_t(e) * elemSize_, &v, sizeof v);
    }
    // Rows whose memory still holds their own values after a call (with a
    // zero step only the last row written survives).
    bool rowSurvives(int y) const { return kind_ != StepKind::Zero || y == height_ - 1; }

    // Remembers every byte of the buffer.
    void snapshot() { snap_ = buf_; }
    // Fails when any byte differs from the snapshot except the bytes of ROI
    // elements (e, y) for which written(e, y) holds.
    ::testing::AssertionResult untouchedExcept(const std::function<bool(int e, int y)>& written) const;
    ::testing::AssertionResult untouched() const;

private:
    std::vector<uint8_t> buf_, snap_;
    std::ptrdiff_t origin_ = 0;
    int step_ = 0, rowElems_, height_, elemSize_;
    StepKind kind_;
};

// Fills the ROI elements of an image with values from `gen`.
template <class T, class Gen>
void fill(Image& img, Gen&& gen) {
    for (int y = 0; y < img.height(); ++y)
        for (int e = 0; e < img.width(); ++e) img.set<T>(e, y, gen());
}

// Compares the ROI elements (e, y) selected by `check` against want(e, y);
// reports the first mismatch with its position.
template <class T, class Want>
::testing::AssertionResult matches(const Image& img, int rowElems, int rows, Want&& want,
                                   const std::function<bool(int, int)>& check = nullptr) {
    for (int y = 0; y < rows; ++y) {
        if (!img.rowSurvives(y)) continue;
        for (int e = 0; e < rowElems; ++e) {
            if (check && !check(e, y)) continue;
            const T got = img.get<T>(e, y);
            const T exp = static_cast<T>(want(e, y));
            if (!(got == exp) && !(got != got && exp != exp))
                return ::testing::AssertionFailure()
                       << "element " << e << " of row " << y << ": got " << +got << ", want " << +exp
                       << " (" << stepName(img.kind()) << " step " << img.step() << ")";
        }
    }
    return ::testing::AssertionSuccess();
}

// Uniform random values of an integer or floating type.
template <class T>
struct Random {
    std::mt19937 rng;
    explicit Random(uint32_t seed) : rng(seed) {}
    T operator()() {
        if constexpr (std::is_floating_point_v<T>)
            return std::uniform_real_distribution<T>(T(0), T(1))(rng);
        else
            return static_cast<T>(std::uniform_int_distribution<int64_t>(
                std::numeric_limits<T>::min(), std::numeric_limits<T>::max())(rng));
    }
};

}  // namespace tpxtest
