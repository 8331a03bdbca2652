// RGB to subsampled YCbCr against libyuv (target 1.0) and OpenCV (target 0.33).
#include <libyuv.h>

#include <array>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "peers.hpp"
#include "tpxcc.h"

using peers::Pair;

TPX_PEERS(encoderPairs)(int w, int h, std::vector<Pair>& out) {
    const int cw = w / 2, ch = h / 2;
    auto rgb = peers::randomBytes(size_t(w) * h * 3, 11);
    auto bgra = peers::randomBytes(size_t(w) * h * 4, 12);
    // One I420 buffer: Y, then the two chroma planes (OpenCV's stacked layout).
    auto i420 = std::make_shared<std::vector<uint8_t>>(size_t(w) * h + 2 * size_t(cw) * ch);
    auto packed = std::make_shared<std::vector<uint8_t>>(size_t(w) * h * 2);
    // The plane pointers keep the I420 buffer alive with them.
    struct Planes {
        std::shared_ptr<std::vector<uint8_t>> keep;
        std::array<uint8_t*, 3> ptr;
        std::array<int, 3> step;
    };
    uint8_t* y = i420->data();
    auto p = std::make_shared<Planes>(
        Planes{i420, {y, y + size_t(w) * h, y + size_t(w) * h + size_t(cw) * ch}, {w, cw, cw}});
    const TpxSize roi{w, h};

    out.push_back({"enc 4:2:0", "tpxiBGRToYCbCr420_8u_C3P3R", "libyuv RGB24ToI420",
                   [=] { tpxiBGRToYCbCr420_8u_C3P3R(rgb->data(), 3 * w, p->ptr.data(), p->step.data(), roi); },
                   [=] { libyuv::RGB24ToI420(rgb->data(), 3 * w, p->ptr[0], w, p->ptr[1], cw, p->ptr[2], cw, w, h); },
                   1.0});
    out.push_back({"enc 4:2:0", "tpxiRGBToYCbCr420_8u_C3P3R", "libyuv RAWToI420",
                   [=] { tpxiRGBToYCbCr420_8u_C3P3R(rgb->data(), 3 * w, p->ptr.data(), p->step.data(), roi); },
                   [=] { libyuv::RAWToI420(rgb->data(), 3 * w, p->ptr[0], w, p->ptr[1], cw, p->ptr[2], cw, w, h); },
                   1.0});
    out.push_back({"enc 4:2:0", "tpxiBGRToYCbCr420_8u_AC4P3R", "libyuv ARGBToI420",
                   [=] { tpxiBGRToYCbCr420_8u_AC4P3R(bgra->data(), 4 * w, p->ptr.data(), p->step.data(), roi); },
                   [=] { libyuv::ARGBToI420(bgra->data(), 4 * w, p->ptr[0], w, p->ptr[1], cw, p->ptr[2], cw, w, h); },
                   1.0});
    out.push_back({"enc 4:2:0", "tpxiBGRToYCbCr420_8u_AC4P2R", "libyuv ARGBToNV12",
                   [=] { tpxiBGRToYCbCr420_8u_AC4P2R(bgra->data(), 4 * w, p->ptr[0], w, p->ptr[1], w, roi); },
                   [=] { libyuv::ARGBToNV12(bgra->data(), 4 * w, p->ptr[0], w, p->ptr[1], w, w, h); }, 1.0});
    out.push_back({"enc 4:2:2", "tpxiBGRToYCbCr422_8u_AC4C2R", "libyuv ARGBToYUY2",
                   [=] { tpxiBGRToYCbCr422_8u_AC4C2R(bgra->data(), 4 * w, packed->data(), 2 * w, roi); },
                   [=] { libyuv::ARGBToYUY2(bgra->data(), 4 * w, packed->data(), 2 * w, w, h); }, 1.0});

    auto src = std::make_shared<cv::Mat>(h, w, CV_8UC3, rgb->data());
    auto dst = std::make_shared<cv::Mat>(h + h / 2, w, CV_8UC1, i420->data());
    out.push_back({"enc 4:2:0", "tpxiRGBToYCbCr420_8u_C3P3R", "OpenCV COLOR_RGB2YUV_I420",
                   [=] { tpxiRGBToYCbCr420_8u_C3P3R(rgb->data(), 3 * w, p->ptr.data(), p->step.data(), roi); },
                   [=] { cv::cvtColor(*src, *dst, cv::COLOR_RGB2YUV_I420); }, 0.33});
}
