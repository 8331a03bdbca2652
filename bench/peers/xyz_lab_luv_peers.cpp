// XYZ, Lab and LUV against OpenCV's linear-RGB conversions (target 0.5).
#include "peers.hpp"
#include "tpxcc.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

using peers::Pair;

TPX_PEERS(xyzLabLuvPairs)(int w, int h, std::vector<Pair>& out) {
    auto rgb = std::make_shared<cv::Mat>(h, w, CV_8UC3), rgbf = std::make_shared<cv::Mat>(h, w, CV_32FC3);
    auto labf = std::make_shared<cv::Mat>(h, w, CV_32FC3);
    cv::randu(*rgb, 0, 256);
    cv::randu(*rgbf, 0.0f, 1.0f);
    cv::randu(*labf, cv::Scalar(0, -100, -100), cv::Scalar(100, 100, 100));
    auto d8 = std::make_shared<cv::Mat>(h, w, CV_8UC3), d32 = std::make_shared<cv::Mat>(h, w, CV_32FC3);
    const TpxSize roi{w, h};
    const int s8 = 3 * w, s32 = 12 * w;
    auto f = [](const std::shared_ptr<cv::Mat>& m) { return reinterpret_cast<float*>(m->data); };
    out.push_back({"xyz lab luv", "tpxiRGBToXYZ_8u_C3R", "cvtColor RGB2XYZ",
                   [=] { tpxiRGBToXYZ_8u_C3R(rgb->data, s8, d8->data, s8, roi); },
                   [=] { cv::cvtColor(*rgb, *d8, cv::COLOR_RGB2XYZ); }, 0.5});
    out.push_back({"xyz lab luv", "tpxiRGBToXYZ_32f_C3R", "cvtColor RGB2XYZ 32f",
                   [=] { tpxiRGBToXYZ_32f_C3R(f(rgbf), s32, f(d32), s32, roi); },
                   [=] { cv::cvtColor(*rgbf, *d32, cv::COLOR_RGB2XYZ); }, 0.5});
    out.push_back({"xyz lab luv", "tpxiRGBToLab_8u_C3R", "cvtColor LRGB2Lab",
                   [=] { tpxiRGBToLab_8u_C3R(rgb->data, s8, d8->data, s8, roi); },
                   [=] { cv::cvtColor(*rgb, *d8, cv::COLOR_LRGB2Lab); }, 0.5});
    out.push_back({"xyz lab luv", "tpxiRGBToLab_32f_C3R", "cvtColor LRGB2Lab 32f",
                   [=] { tpxiRGBToLab_32f_C3R(f(rgbf), s32, f(d32), s32, roi); },
                   [=] { cv::cvtColor(*rgbf, *d32, cv::COLOR_LRGB2Lab); }, 0.5});
    out.push_back({"xyz lab luv", "tpxiLabToRGB_32f_C3R", "cvtColor Lab2LRGB 32f",
                   [=] { tpxiLabToRGB_32f_C3R(f(labf), s32, f(d32), s32, roi); },
                   [=] { cv::cvtColor(*labf, *d32, cv::COLOR_Lab2LRGB); }, 0.5});
    out.push_back({"xyz lab luv", "tpxiRGBToLUV_8u_C3R", "cvtColor LRGB2Luv",
                   [=] { tpxiRGBToLUV_8u_C3R(rgb->data, s8, d8->data, s8, roi); },
                   [=] { cv::cvtColor(*rgb, *d8, cv::COLOR_LRGB2Luv); }, 0.5});
}
