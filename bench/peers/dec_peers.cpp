// Subsampled YCbCr to RGB against libyuv (target 1.0) and OpenCV (target 0.33).
#include "peers.hpp"
#include "tpxcc.h"

#include <libyuv.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>

using peers::Pair;

TPX_PEERS(decoderPairs)(int w, int h, std::vector<Pair>& out) {
    const int cw = w / 2, ch = h / 2;
    // One I420 buffer (Y, then U, then V planes, as OpenCV's I420 expects),
    // one NV12 chroma plane, one packed 4:2:2 image; destinations of 3 and 4 bytes.
    auto i420 = peers::randomBytes(size_t(w) * h + 2 * size_t(cw) * ch, 1);
    auto uv = peers::randomBytes(size_t(w) * ch, 2);
    auto packed = peers::randomBytes(size_t(w) * h * 2, 3);
    auto d3 = std::make_shared<std::vector<uint8_t>>(size_t(w) * h * 3);
    auto d4 = std::make_shared<std::vector<uint8_t>>(size_t(w) * h * 4);
    const uint8_t* y = i420->data();
    const uint8_t* u = y + size_t(w) * h;
    const uint8_t* v = u + size_t(cw) * ch;
    const TpxSize roi{w, h};
    const uint8_t* planes[3] = {y, u, v};
    // The plane and step arrays keep the I420 buffer alive with them.
    struct Planes {
        std::shared_ptr<std::vector<uint8_t>> keep;
        std::array<const uint8_t*, 3> ptr;
        std::array<int, 3> step;
        const uint8_t* const* data() const { return ptr.data(); }
    };
    auto p = std::make_shared<Planes>(Planes{i420, {planes[0], planes[1], planes[2]}, {w, cw, cw}});
    auto steps = std::shared_ptr<std::array<int, 3>>(p, &p->step);

    out.push_back({"dec 4:2:0", "tpxiYCbCr420ToBGR_8u_P3C4R", "libyuv I420ToARGB",
                   [=] { tpxiYCbCr420ToBGR_8u_P3C4R(p->data(), steps->data(), d4->data(), 4 * w, roi, 255); },
                   [=] { libyuv::I420ToARGB(p->ptr[0], w, p->ptr[1], cw, p->ptr[2], cw, d4->data(), 4 * w, w, h); }, 1.0});
    out.push_back({"dec 4:2:0", "tpxiYCbCr420ToBGR_8u_P3C3R", "libyuv I420ToRGB24",
                   [=] { tpxiYCbCr420ToBGR_8u_P3C3R(p->data(), steps->data(), d3->data(), 3 * w, roi); },
                   [=] { libyuv::I420ToRGB24(p->ptr[0], w, p->ptr[1], cw, p->ptr[2], cw, d3->data(), 3 * w, w, h); }, 1.0});
    out.push_back({"dec 4:2:0", "tpxiYCbCr420ToRGB_8u_P3C3R", "libyuv I420ToRAW",
                   [=] { tpxiYCbCr420ToRGB_8u_P3C3R(p->data(), steps->data(), d3->data(), 3 * w, roi); },
                   [=] { libyuv::I420ToRAW(p->ptr[0], w, p->ptr[1], cw, p->ptr[2], cw, d3->data(), 3 * w, w, h); }, 1.0});
    out.push_back({"dec 4:2:0", "tpxiYCbCr420ToBGR_8u_P2C4R", "libyuv NV12ToARGB",
                   [=] { tpxiYCbCr420ToBGR_8u_P2C4R(p->ptr[0], w, uv->data(), w, d4->data(), 4 * w, roi, 255); },
                   [=] { libyuv::NV12ToARGB(p->ptr[0], w, uv->data(), w, d4->data(), 4 * w, w, h); }, 1.0});
    out.push_back({"dec 4:2:2", "tpxiYCbCr422ToBGR_8u_C2C4R", "libyuv YUY2ToARGB",
                   [=] { tpxiYCbCr422ToBGR_8u_C2C4R(packed->data(), 2 * w, d4->data(), 4 * w, roi, 255); },
                   [=] { libyuv::YUY2ToARGB(packed->data(), 2 * w, d4->data(), 4 * w, w, h); }, 1.0});
    out.push_back({"dec 4:2:2", "tpxiCbYCr422ToBGR_8u_C2C4R", "libyuv UYVYToARGB",
                   [=] { tpxiCbYCr422ToBGR_8u_C2C4R(packed->data(), 2 * w, d4->data(), 4 * w, roi, 255); },
                   [=] { libyuv::UYVYToARGB(packed->data(), 2 * w, d4->data(), 4 * w, w, h); }, 1.0});

    // OpenCV takes the 4:2:0 planes stacked as one image of height 3h/2.
    auto m420 = std::make_shared<cv::Mat>(h + h / 2, w, CV_8UC1);
    std::copy(i420->begin(), i420->end(), m420->data);
    auto mNv12 = std::make_shared<cv::Mat>(h + h / 2, w, CV_8UC1);
    std::copy(y, y + size_t(w) * h, mNv12->data);
    std::copy(uv->begin(), uv->end(), mNv12->data + size_t(w) * h);
    auto mYuy2 = std::make_shared<cv::Mat>(h, w, CV_8UC2);
    std::copy(packed->begin(), packed->end(), mYuy2->data);
    auto o3 = std::make_shared<cv::Mat>(h, w, CV_8UC3), o4 = std::make_shared<cv::Mat>(h, w, CV_8UC4);
    out.push_back({"dec 4:2:0", "tpxiYCbCr420ToRGB_8u_P3C3R", "OpenCV YUV2RGB_I420",
                   [=] { tpxiYCbCr420ToRGB_8u_P3C3R(p->data(), steps->data(), o3->data, 3 * w, roi); },
                   [=] { cv::cvtColor(*m420, *o3, cv::COLOR_YUV2RGB_I420); }, 0.33});
    out.push_back({"dec 4:2:0", "tpxiYCbCr420ToBGR_8u_P2C4R", "OpenCV YUV2BGRA_NV12",
                   [=] { tpxiYCbCr420ToBGR_8u_P2C4R(mNv12->data, w, mNv12->data + size_t(w) * h, w, o4->data, 4 * w, roi, 255); },
                   [=] { cv::cvtColor(*mNv12, *o4, cv::COLOR_YUV2BGRA_NV12); }, 0.33});
    out.push_back({"dec 4:2:2", "tpxiYCbCr422ToBGR_8u_C2C3R", "OpenCV YUV2BGR_YUY2",
                   [=] { tpxiYCbCr422ToBGR_8u_C2C3R(packed->data(), 2 * w, o3->data, 3 * w, roi); },
                   [=] { cv::cvtColor(*mYuy2, *o3, cv::COLOR_YUV2BGR_YUY2); }, 0.33});
}
