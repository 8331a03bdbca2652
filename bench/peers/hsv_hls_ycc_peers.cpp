// HSV and HLS against OpenCV (target 0.5); photo YCC against a memory copy
// of its traffic (target 1.5 at 3840x2160).
#include "peers.hpp"
#include "tpxcc.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

using peers::Pair;

TPX_PEERS(hsvHlsPairs)(int w, int h, std::vector<Pair>& out) {
    auto rgb = std::make_shared<cv::Mat>(h, w, CV_8UC3), code = std::make_shared<cv::Mat>(h, w, CV_8UC3);
    auto rgbf = std::make_shared<cv::Mat>(h, w, CV_32FC3), hlsf = std::make_shared<cv::Mat>(h, w, CV_32FC3);
    cv::randu(*rgb, 0, 256);
    cv::randu(*code, 0, 256);
    cv::randu(*rgbf, 0.0f, 1.0f);
    cv::randu(*hlsf, 0.0f, 1.0f);
    auto d8 = std::make_shared<cv::Mat>(h, w, CV_8UC3), d32 = std::make_shared<cv::Mat>(h, w, CV_32FC3);
    // OpenCV's float HLS takes hue in degrees.
    auto hlsDeg = std::make_shared<cv::Mat>(hlsf->clone());
    cv::Mat ch[3];
    cv::split(*hlsDeg, ch);
    ch[0] *= 360.0f;
    cv::merge(ch, 3, *hlsDeg);
    const TpxSize roi{w, h};
    const int s8 = 3 * w, s32 = 12 * w;
    out.push_back({"hsv hls", "tpxiRGBToHSV_8u_C3R", "cvtColor RGB2HSV_FULL",
                   [=] { tpxiRGBToHSV_8u_C3R(rgb->data, s8, d8->data, s8, roi); },
                   [=] { cv::cvtColor(*rgb, *d8, cv::COLOR_RGB2HSV_FULL); }, 0.5});
    out.push_back({"hsv hls", "tpxiHSVToRGB_8u_C3R", "cvtColor HSV2RGB_FULL",
                   [=] { tpxiHSVToRGB_8u_C3R(code->data, s8, d8->data, s8, roi); },
                   [=] { cv::cvtColor(*code, *d8, cv::COLOR_HSV2RGB_FULL); }, 0.5});
    out.push_back({"hsv hls", "tpxiRGBToHLS_8u_C3R", "cvtColor RGB2HLS_FULL",
                   [=] { tpxiRGBToHLS_8u_C3R(rgb->data, s8, d8->data, s8, roi); },
                   [=] { cv::cvtColor(*rgb, *d8, cv::COLOR_RGB2HLS_FULL); }, 0.5});
    out.push_back({"hsv hls", "tpxiRGBToHLS_32f_C3R", "cvtColor RGB2HLS 32f",
                   [=] { tpxiRGBToHLS_32f_C3R(reinterpret_cast<const float*>(rgbf->data), s32,
                                              reinterpret_cast<float*>(d32->data), s32, roi); },
                   [=] { cv::cvtColor(*rgbf, *d32, cv::COLOR_RGB2HLS); }, 0.5});
    out.push_back({"hsv hls", "tpxiHLSToRGB_32f_C3R", "cvtColor HLS2RGB 32f",
                   [=] { tpxiHLSToRGB_32f_C3R(reinterpret_cast<const float*>(hlsf->data), s32,
                                              reinterpret_cast<float*>(d32->data), s32, roi); },
                   [=] { cv::cvtColor(*hlsDeg, *d32, cv::COLOR_HLS2RGB); }, 0.5});
    peers::againstCopy("HSV, HLS and photo YCC", "ycc copy", 1.5, w, h, out, "YCC");
}
