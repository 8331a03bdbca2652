// Analog YUV against OpenCV (target 0.5) and libyuv (same work, other
// coefficients: target 1.0); YCoCg, v210 and 12-bit packing against a memory
// copy of their traffic (target 1.3 at 3840x2160).
#include "peers.hpp"
#include "tpxcc.h"

#include <libyuv.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <cstring>

using peers::Pair;

TPX_PEERS(analogYuvPairs)(int w, int h, std::vector<Pair>& out) {
    const int cw = w / 2, ch = h / 2;
    auto rgb = std::make_shared<cv::Mat>(h, w, CV_8UC3), yuv = std::make_shared<cv::Mat>(h, w, CV_8UC3);
    cv::randu(*rgb, 0, 256);
    cv::randu(*yuv, 0, 256);
    auto y = peers::randomBytes(size_t(w) * h, 1), u = peers::randomBytes(size_t(cw) * ch, 2),
         v = peers::randomBytes(size_t(cw) * ch, 3);
    struct Arrays {
        const uint8_t* src[3];
        uint8_t* dst[3];
        int steps[3];
    };
    auto a = std::make_shared<Arrays>(Arrays{{y->data(), u->data(), v->data()}, {y->data(), u->data(), v->data()}, {w, cw, cw}});
    auto d3 = std::make_shared<cv::Mat>(h, w, CV_8UC3);
    const TpxSize roi{w, h};
    out.push_back({"analog yuv", "tpxiRGBToYUV_8u_C3R", "cvtColor RGB2YUV",
                   [=] { tpxiRGBToYUV_8u_C3R(rgb->data, 3 * w, d3->data, 3 * w, roi); },
                   [=] { cv::cvtColor(*rgb, *d3, cv::COLOR_RGB2YUV); }, 0.5});
    out.push_back({"analog yuv", "tpxiYUVToRGB_8u_C3R", "cvtColor YUV2RGB",
                   [=] { tpxiYUVToRGB_8u_C3R(yuv->data, 3 * w, d3->data, 3 * w, roi); },
                   [=] { cv::cvtColor(*yuv, *d3, cv::COLOR_YUV2RGB); }, 0.5});
    out.push_back({"analog yuv", "tpxiYUV420ToRGB_8u_P3C3R", "libyuv I420ToRAW",
                   [=] { tpxiYUV420ToRGB_8u_P3C3R(a->src, a->steps, d3->data, 3 * w, roi); },
                   [=] { libyuv::I420ToRAW(y->data(), w, u->data(), cw, v->data(), cw, d3->data, 3 * w, w, h); }, 1.0});
    out.push_back({"analog yuv", "tpxiRGBToYUV420_8u_C3P3R", "libyuv RAWToI420",
                   [=] { tpxiRGBToYUV420_8u_C3P3R(rgb->data, 3 * w, a->dst, a->steps, roi); },
                   [=] { libyuv::RAWToI420(rgb->data, 3 * w, y->data(), w, u->data(), cw, v->data(), cw, w, h); }, 1.0});
    peers::againstCopy("v210, 12-bit, YCoCg and analog YUV", "ycocg copy", 1.3, w, h, out);
}
