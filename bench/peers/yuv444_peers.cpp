// RGB <-> YCbCr 4:4:4 against libyuv (4:4:4 planes <-> 4-byte pixels) and
// OpenCV cvtColor (3-byte pixels <-> 3-byte YCrCb pixels).
#include "peers.hpp"
#include "tpxcc.h"

#include <libyuv.h>
#include <opencv2/imgproc.hpp>

namespace {

struct Images {
    std::shared_ptr<std::vector<uint8_t>> src;
    std::shared_ptr<std::vector<uint8_t>> dst;
};
Images images(int w, int h, uint32_t seed) {
    const size_t n = size_t(w) * size_t(h) * 4;
    return {peers::randomBytes(n, seed), std::make_shared<std::vector<uint8_t>>(n)};
}

}  // namespace

TPX_PEERS(yuv444Peers)(int w, int h, std::vector<peers::Pair>& out) {
    const size_t plane = size_t(w) * size_t(h);
    {
        Images a = images(w, h, 1), b = images(w, h, 1);
        out.push_back({"yuv444", "tpxiYCbCrToBGR_8u_P3C4R", "libyuv I444ToARGB",
                       [=] {
                           const Tpx8u* s[3] = {a.src->data(), a.src->data() + plane, a.src->data() + 2 * plane};
                           tpxiYCbCrToBGR_8u_P3C4R(s, w, a.dst->data(), 4 * w, {w, h}, 255);
                       },
                       [=] {
                           const uint8_t* s = b.src->data();
                           libyuv::I444ToARGB(s, w, s + plane, w, s + 2 * plane, w, b.dst->data(), 4 * w, w, h);
                       },
                       1.0});
    }
    {
        Images a = images(w, h, 2), b = images(w, h, 2);
        out.push_back({"yuv444", "tpxiRGBToYCbCr_8u_AC4P3R", "libyuv ARGBToI444",
                       [=] {
                           uint8_t* d = a.dst->data();
                           Tpx8u* p[3] = {d, d + plane, d + 2 * plane};
                           tpxiRGBToYCbCr_8u_AC4P3R(a.src->data(), 4 * w, p, w, {w, h});
                       },
                       [=] {
                           uint8_t* d = b.dst->data();
                           libyuv::ARGBToI444(b.src->data(), 4 * w, d, w, d + plane, w, d + 2 * plane, w, w, h);
                       },
                       1.0});
    }
    {
        Images a = images(w, h, 3), b = images(w, h, 3);
        out.push_back({"yuv444", "tpxiRGBToYCbCr_8u_C3R", "OpenCV RGB2YCrCb",
                       [=] { tpxiRGBToYCbCr_8u_C3R(a.src->data(), 3 * w, a.dst->data(), 3 * w, {w, h}); },
                       [=] {
                           cv::Mat s(h, w, CV_8UC3, b.src->data()), d(h, w, CV_8UC3, b.dst->data());
                           cv::cvtColor(s, d, cv::COLOR_RGB2YCrCb);
                       },
                       0.33});
    }
    {
        Images a = images(w, h, 4), b = images(w, h, 4);
        out.push_back({"yuv444", "tpxiYCbCrToRGB_8u_C3R", "OpenCV YCrCb2RGB",
                       [=] { tpxiYCbCrToRGB_8u_C3R(a.src->data(), 3 * w, a.dst->data(), 3 * w, {w, h}); },
                       [=] {
                           cv::Mat s(h, w, CV_8UC3, b.src->data()), d(h, w, CV_8UC3, b.dst->data());
                           cv::cvtColor(s, d, cv::COLOR_YCrCb2RGB);
                       },
                       0.33});
    }
}
