// Chroma layout conversions against libyuv (target 1.0), and every member of
// the family against a memory copy of its traffic (target 1.2 at 3840x2160).
#include "peers.hpp"
#include "tpxcc.h"

#include <libyuv.h>

using peers::Pair;

TPX_PEERS(chromaPairs)(int w, int h, std::vector<Pair>& out) {
    const int cw = w / 2, ch = h / 2;
    // I420 planes, an NV12 chroma plane, a packed 4:2:2 image, I422 chroma planes; destinations of each.
    auto y = peers::randomBytes(size_t(w) * h, 1), u = peers::randomBytes(size_t(cw) * h, 2),
         v = peers::randomBytes(size_t(cw) * h, 3), uv = peers::randomBytes(size_t(w) * ch, 4),
         yuy2 = peers::randomBytes(size_t(w) * h * 2, 5);
    auto dy = peers::randomBytes(size_t(w) * h, 6), du = peers::randomBytes(size_t(cw) * h, 7),
         dv = peers::randomBytes(size_t(cw) * h, 8), duv = peers::randomBytes(size_t(w) * ch, 9),
         d2 = peers::randomBytes(size_t(w) * h * 2, 10);
    const TpxSize roi{w, h};
    struct Arrays {
        const uint8_t* src[3];
        uint8_t* dst[3];
        int s420[3], s422[3];
    };
    auto a = std::make_shared<Arrays>(Arrays{{y->data(), u->data(), v->data()},
                                             {dy->data(), du->data(), dv->data()},
                                             {w, cw, cw},
                                             {w, cw, cw}});
    auto keep = [=] { (void)y, (void)u, (void)v, (void)uv, (void)yuy2, (void)dy, (void)du, (void)dv, (void)duv, (void)d2; };
    out.push_back({"chroma", "tpxiYCbCr420_8u_P2P3R", "libyuv NV12ToI420",
                   [=] { keep(); tpxiYCbCr420_8u_P2P3R(y->data(), w, uv->data(), w, a->dst, a->s420, roi); },
                   [=] { libyuv::NV12ToI420(y->data(), w, uv->data(), w, dy->data(), w, du->data(), cw, dv->data(), cw, w, h); }, 1.0});
    out.push_back({"chroma", "tpxiYCbCr420_8u_P3P2R", "libyuv I420ToNV12",
                   [=] { tpxiYCbCr420_8u_P3P2R(a->src, a->s420, dy->data(), w, duv->data(), w, roi); },
                   [=] { libyuv::I420ToNV12(y->data(), w, u->data(), cw, v->data(), cw, dy->data(), w, duv->data(), w, w, h); }, 1.0});
    out.push_back({"chroma", "tpxiYCbCr422_8u_C2P3R", "libyuv YUY2ToI422",
                   [=] { tpxiYCbCr422_8u_C2P3R(yuy2->data(), 2 * w, a->dst, a->s422, roi); },
                   [=] { libyuv::YUY2ToI422(yuy2->data(), 2 * w, dy->data(), w, du->data(), cw, dv->data(), cw, w, h); }, 1.0});
    out.push_back({"chroma", "tpxiYCbCr422_8u_P3C2R", "libyuv I422ToYUY2",
                   [=] { tpxiYCbCr422_8u_P3C2R(a->src, a->s422, d2->data(), 2 * w, roi); },
                   [=] { libyuv::I422ToYUY2(y->data(), w, u->data(), cw, v->data(), cw, d2->data(), 2 * w, w, h); }, 1.0});
    // I420ToYUY2 reads planes Y, U, V; the YCrCb member reads {Y, Cr, Cb}.
    auto crcb = std::make_shared<Arrays>(Arrays{{y->data(), v->data(), u->data()}, {}, {w, cw, cw}, {}});
    out.push_back({"chroma", "tpxiYCrCb420ToYCbCr422_8u_P3C2R", "libyuv I420ToYUY2",
                   [=] { tpxiYCrCb420ToYCbCr422_8u_P3C2R(crcb->src, crcb->s420, d2->data(), 2 * w, roi); },
                   [=] { libyuv::I420ToYUY2(y->data(), w, u->data(), cw, v->data(), cw, d2->data(), 2 * w, w, h); }, 1.0});
    out.push_back({"chroma", "tpxiYCbCr422ToGray_8u_C2C1R", "libyuv YUY2ToY",
                   [=] { tpxiYCbCr422ToGray_8u_C2C1R(yuy2->data(), 2 * w, dy->data(), w, roi); },
                   [=] { libyuv::YUY2ToY(yuy2->data(), 2 * w, dy->data(), w, w, h); }, 1.0});
    out.push_back({"chroma", "tpxiYCbCr422ToYCbCr420_8u_C2P3R", "libyuv YUY2ToI420",
                   [=] { tpxiYCbCr422ToYCbCr420_8u_C2P3R(yuy2->data(), 2 * w, a->dst, a->s420, roi); },
                   [=] { libyuv::YUY2ToI420(yuy2->data(), 2 * w, dy->data(), w, du->data(), cw, dv->data(), cw, w, h); }, 1.0});
    peers::againstCopy("Chroma layout, interlaced and 16:20", "chroma copy", 1.2, w, h, out);
}
