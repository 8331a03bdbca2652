// Gray conversions against libyuv's full-range luma and OpenCV's RGB2GRAY.
#include "peers.hpp"

#include "tpxcc.h"

#include <libyuv/convert.h>
#include <libyuv/convert_from_argb.h>
#include <opencv2/imgproc.hpp>

#include <memory>

namespace {

// A w x h interleaved source of `ch` channels and a gray destination, shared by
// our call and the peers'.
struct Frame {
    std::shared_ptr<std::vector<uint8_t>> src;
    std::shared_ptr<std::vector<uint8_t>> dst;
    Frame(int w, int h, int ch, int elem)
        : src(peers::randomBytes(size_t(w) * size_t(h) * size_t(ch * elem), 5)),
          dst(std::make_shared<std::vector<uint8_t>>(size_t(w) * size_t(h) * size_t(elem))) {}
};

}  // namespace

TPX_PEERS(grayPairs)(int w, int h, std::vector<peers::Pair>& out) {
    const TpxSize roi{w, h};
    for (int ch : {4, 3}) {
        Frame f(w, h, ch, 1);
        auto ours = [=] {
            if (ch == 4) tpxiRGBToGray_8u_AC4C1R(f.src->data(), 4 * w, f.dst->data(), w, roi);
            else tpxiRGBToGray_8u_C3C1R(f.src->data(), 3 * w, f.dst->data(), w, roi);
        };
        auto yuv = [=] {
            if (ch == 4) libyuv::ARGBToJ400(f.src->data(), 4 * w, f.dst->data(), w, w, h);
            else libyuv::RGB24ToJ400(f.src->data(), 3 * w, f.dst->data(), w, w, h);
        };
        auto cvSrc = std::make_shared<cv::Mat>(h, w, CV_8UC(ch), f.src->data());
        auto cvDst = std::make_shared<cv::Mat>(h, w, CV_8UC1, f.dst->data());
        auto cv = [=] { cv::cvtColor(*cvSrc, *cvDst, ch == 4 ? cv::COLOR_RGBA2GRAY : cv::COLOR_RGB2GRAY); };
        const char* name = ch == 4 ? "RGBToGray_8u_AC4C1R" : "RGBToGray_8u_C3C1R";
        out.push_back({"gray", name, ch == 4 ? "libyuv ARGBToJ400" : "libyuv RGB24ToJ400", ours, yuv, 1.0});
        out.push_back({"gray", name, ch == 4 ? "cvtColor RGBA2GRAY 8u" : "cvtColor RGB2GRAY 8u", ours, cv, 0.5});
    }
    // 32f: random bytes reinterpreted would hold NaNs and denormals; use values in 0..1.
    auto src = std::make_shared<std::vector<float>>(size_t(w) * size_t(h) * 3);
    for (size_t i = 0; i < src->size(); ++i) (*src)[i] = float((i * 2654435761u) % 1000) / 1000.0f;
    auto dst = std::make_shared<std::vector<float>>(size_t(w) * size_t(h));
    auto cvSrc = std::make_shared<cv::Mat>(h, w, CV_32FC3, src->data());
    auto cvDst = std::make_shared<cv::Mat>(h, w, CV_32FC1, dst->data());
    out.push_back({"gray", "RGBToGray_32f_C3C1R", "cvtColor RGB2GRAY 32f",
                   [=] { tpxiRGBToGray_32f_C3C1R(src->data(), 12 * w, dst->data(), 4 * w, roi); },
                   [=] { cv::cvtColor(*cvSrc, *cvDst, cv::COLOR_RGB2GRAY); }, 0.5});
}
