// Table-driven tests of an export's argument checks.
//
// A member is described once: how to call it from a CheckArgs, valid
// arguments pointing at real guarded images, and its checks in order as a list
// of faults. expectCheckOrder() then applies every fault alone and every pair
// of faults, and expects the status of the earlier fault in the list each
// time, with every destination untouched.
#pragma once

#include "image.hpp"
#include "tpxcc.h"

#include <array>
#include <functional>
#include <string>
#include <vector>

namespace tpxtest {

struct CheckArgs {
    std::array<const void*, 4> src{};  // plane pointers; src[0] alone for interleaved images
    std::array<void*, 4> dst{};
    bool srcArrayNull = false, dstArrayNull = false;
    std::array<int, 4> srcStep{}, dstStep{};
    TpxSize roi{0, 0};
    std::array<int64_t, 8> ext{};  // family arguments (sizes, rectangles, codes)

    template <class T> const T* s(int i = 0) const { return static_cast<const T*>(src[size_t(i)]); }
    template <class T> T* d(int i = 0) const { return static_cast<T*>(dst[size_t(i)]); }
    // Plane-pointer arrays as the exports take them (null when the fault says so).
    template <class T> const T* const* srcPlanes() {
        for (size_t i = 0; i < 4; ++i) srcCast_[i] = src[i];
        return srcArrayNull ? nullptr : reinterpret_cast<const T* const*>(srcCast_.data());
    }
    template <class T> T* const* dstPlanes() {
        for (size_t i = 0; i < 4; ++i) dstCast_[i] = dst[i];
        return dstArrayNull ? nullptr : reinterpret_cast<T* const*>(dstCast_.data());
    }

private:
    std::array<const void*, 4> srcCast_{};
    std::array<void*, 4> dstCast_{};
};

struct Fault {
    std::string name;
    TpxStatus status;
    std::function<void(CheckArgs&)> apply;
};

// The usual faults.
Fault nullSrc(int plane = 0);
Fault nullSrcArray();
Fault nullDst(int plane = 0);
Fault nullDstArray();
Fault badWidth(int value = 0);   // -6
Fault badHeight(int value = 0);  // -6
Fault custom(std::string name, TpxStatus status, std::function<void(CheckArgs&)> apply);

// Each destination image whose bytes must survive a refused call.
void expectCheckOrder(const std::string& member, const std::function<TpxStatus(CheckArgs&)>& call,
                      const CheckArgs& valid, const std::vector<Fault>& order, const std::vector<Image*>& dsts);

}  // namespace tpxtest
