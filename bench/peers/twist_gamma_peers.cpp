// Colour twist against cv::transform (target 0.5), 8-bit gamma against
// cv::LUT (target 1.0), 16-bit gamma against a memory copy of its traffic
// (target 1.5 at 3840x2160).
#include "peers.hpp"
#include "tpxcc.h"

#include <opencv2/core.hpp>

using peers::Pair;

TPX_PEERS(twistGammaPairs)(int w, int h, std::vector<Pair>& out) {
    auto rgb = std::make_shared<cv::Mat>(h, w, CV_8UC3), rgbf = std::make_shared<cv::Mat>(h, w, CV_32FC3);
    cv::randu(*rgb, 0, 256);
    cv::randu(*rgbf, 0.0f, 1.0f);
    auto d8 = std::make_shared<cv::Mat>(h, w, CV_8UC3), d32 = std::make_shared<cv::Mat>(h, w, CV_32FC3);
    static const float kTwist[3][4] = {{0.9f, 0.1f, 0.05f, 3}, {0.05f, 0.8f, 0.2f, -2}, {0.1f, 0.05f, 0.95f, 1}};
    auto m = std::make_shared<cv::Mat>(3, 4, CV_32F, const_cast<float*>(&kTwist[0][0]));
    auto lut = std::make_shared<cv::Mat>(1, 256, CV_8U);
    for (int i = 0; i < 256; ++i) lut->at<uint8_t>(i) = uint8_t(255 - i);
    const TpxSize roi{w, h};
    const int s8 = 3 * w, s32 = 12 * w;
    out.push_back({"twist gamma", "tpxiColorTwist32f_8u_C3R", "cv::transform 8UC3",
                   [=] { tpxiColorTwist32f_8u_C3R(rgb->data, s8, d8->data, s8, roi, kTwist); },
                   [=] { cv::transform(*rgb, *d8, *m); }, 0.5});
    out.push_back({"twist gamma", "tpxiColorTwist_32f_C3R", "cv::transform 32FC3",
                   [=] {
                       tpxiColorTwist_32f_C3R(reinterpret_cast<const float*>(rgbf->data), s32,
                                              reinterpret_cast<float*>(d32->data), s32, roi, kTwist);
                   },
                   [=] { cv::transform(*rgbf, *d32, *m); }, 0.5});
    out.push_back({"twist gamma", "tpxiGammaFwd_8u_C3R", "cv::LUT 8UC3",
                   [=] { tpxiGammaFwd_8u_C3R(rgb->data, s8, d8->data, s8, roi); },
                   [=] { cv::LUT(*rgb, *lut, *d8); }, 1.0});
    peers::againstCopy("Colour twist and gamma", "gamma copy", 1.5, w, h, out, "Gamma");
}
