// VNG and AHD against the peer's VNG demosaic (8 bits, 1920x1080).
#include "peers.hpp"
#include "tpxcc.h"

#include <opencv2/imgproc.hpp>

TPX_PEERS(vngahdPairs)(int w, int h, std::vector<peers::Pair>& out) {
    auto src = peers::randomBytes(size_t(w) * size_t(h), 71);
    auto bgra = std::make_shared<std::vector<uint8_t>>(size_t(w) * size_t(h) * 4);
    auto rgb = std::make_shared<std::vector<uint8_t>>(size_t(w) * size_t(h) * 3);
    auto peerOut = std::make_shared<cv::Mat>();
    // Our RGGB is the peer's "BG" pattern.
    auto runPeer = [=] {
        const cv::Mat in(h, w, CV_8UC1, src->data());
        cv::cvtColor(in, *peerOut, cv::COLOR_BayerBG2BGR_VNG);
    };
    out.push_back({"demosaic", "tpxiCFAToBGRA_VNG_8u_C1C4R", "cvtColor BayerBG2BGR_VNG",
                   [=] {
                       const Tpx32f one[4] = {1, 1, 1, 1};
                       tpxiCFAToBGRA_VNG_8u_C1C4R(src->data(), {0, 0, w, h}, {w, h}, w, one, bgra->data(), w * 4,
                                                  tpxBayerRGGB);
                   },
                   runPeer, 0.5});
    out.push_back({"demosaic", "tpxiDemosaicAHD_8u_C1C3R", "cvtColor BayerBG2BGR_VNG",
                   [=] {
                       tpxiDemosaicAHD_8u_C1C3R(src->data(), {0, 0, w, h}, {w, h}, w, rgb->data(), w * 3,
                                                tpxBayerRGGB);
                   },
                   runPeer, 1.0});
}
