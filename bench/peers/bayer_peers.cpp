// Bayer demosaicing against OpenCV's bilinear Bayer conversion (same phase).
#include "peers.hpp"

#include "tpxcc.h"

#include <opencv2/imgproc.hpp>

namespace {

template <class T>
void addPair(int w, int h, std::vector<peers::Pair>& out, const char* ours, const char* peer, int cvType) {
    auto bytes = peers::randomBytes(size_t(w) * size_t(h) * sizeof(T), 17);
    auto dst = std::make_shared<std::vector<T>>(size_t(w) * size_t(h) * 3);
    auto cvSrc = std::make_shared<cv::Mat>(h, w, cvType, bytes->data());
    auto cvDst = std::make_shared<cv::Mat>(h, w, CV_MAKETYPE(CV_MAT_DEPTH(cvType), 3));
    auto runOurs = [=] {
        const T* src = reinterpret_cast<const T*>(bytes->data());
        if constexpr (sizeof(T) == 1)
            tpxiCFAToRGB_8u_C1C3R(src, {0, 0, w, h}, {w, h}, w, dst->data(), 3 * w, tpxBayerRGGB, 0);
        else
            tpxiCFAToRGB_16u_C1C3R(src, {0, 0, w, h}, {w, h}, 2 * w, dst->data(), 6 * w, tpxBayerRGGB, 0);
    };
    // OpenCV names a phase by the second row's second and third pixels: its
    // BayerBG is the phase with red at (0,0).
    auto runPeer = [=] { cv::cvtColor(*cvSrc, *cvDst, cv::COLOR_BayerBG2RGB); };
    out.push_back({"bayer", ours, peer, runOurs, runPeer, 0.5});
}

}  // namespace

TPX_PEERS(bayerPairs)(int w, int h, std::vector<peers::Pair>& out) {
    addPair<uint8_t>(w, h, out, "CFAToRGB_8u_C1C3R", "cvtColor BayerBG2RGB 8u", CV_8UC1);
    addPair<uint16_t>(w, h, out, "CFAToRGB_16u_C1C3R", "cvtColor BayerBG2RGB 16u", CV_16UC1);
}
