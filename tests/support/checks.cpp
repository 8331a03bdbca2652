#include "support/checks.hpp"

#include <climits>

namespace tpxtest {
namespace {

bool arrays(const ImageShape& im) { return im.pass == Pass::Planes || im.pass == Pass::PlaneSteps; }

const void* plane(const Args& a, int d, int p) { return d ? a.dst[p] : a.src[p]; }
void clearPlane(Args& a, int d, int p) {
    if (d) a.dst[p] = nullptr;
    else a.src[p] = nullptr;
}
bool& arrayFlag(Args& a, int d) { return d ? a.nullDstArray : a.nullSrcArray; }
bool arrayNull(const Args& a, int d) { return d ? a.nullDstArray : a.nullSrcArray; }
bool stepsNull(const Args& a, int d) { return d ? a.nullDstSteps : a.nullSrcSteps; }
const char* sideName(int d) { return d ? "destination" : "source"; }

// Null pointers passed directly: images, plane and step arrays, family data.
void nullFaults(const ExportShape& s, std::vector<Fault>& f) {
    for (int d = 0; d < 2; ++d) {
        const ImageShape& im = side(s, d);
        if (im.pass == Pass::None) continue;
        if (!arrays(im)) {
            for (int p = 0; p < im.planes; ++p)
                f.push_back({std::string("null ") + sideName(d) + " " + std::to_string(p), tpxStatusNullPtr,
                             [d, p](Args& a) { clearPlane(a, d, p); },
                             [d, p](const Args& a) { return plane(a, d, p) == nullptr; }});
            continue;
        }
        f.push_back({std::string("null ") + sideName(d) + " array", tpxStatusNullPtr,
                     [d](Args& a) { arrayFlag(a, d) = true; }, [d](const Args& a) { return arrayNull(a, d); }});
        if (im.pass == Pass::PlaneSteps && !s.noSteps)
            f.push_back({std::string("null ") + sideName(d) + " step array", tpxStatusNullPtr,
                         [d](Args& a) { (d ? a.nullDstSteps : a.nullSrcSteps) = true; },
                         [d](const Args& a) { return stepsNull(a, d); }});
    }
    if (s.family && s.family->extraRequired)
        f.push_back({"null family data", tpxStatusNullPtr, [](Args& a) { a.nullExtra = true; },
                     [](const Args& a) { return a.nullExtra || !a.extra; }});
}

// Null entries inside plane arrays (unseen while the array itself is null).
void entryFaults(const ExportShape& s, std::vector<Fault>& f) {
    for (int d = 0; d < 2; ++d) {
        const ImageShape& im = side(s, d);
        if (!arrays(im)) continue;
        for (int p = 0; p < im.planes; ++p)
            f.push_back({std::string("null ") + sideName(d) + " plane " + std::to_string(p), tpxStatusNullPtr,
                         [d, p](Args& a) { clearPlane(a, d, p); },
                         [d, p](const Args& a) { return !arrayNull(a, d) && plane(a, d, p) == nullptr; }});
    }
}

// The ROI below the member's minimum, as its callers pass it (32 bits unless
// the member is 64-bit); for a mosaic, the mosaic's sides.
void sizeFaults(const ExportShape& s, std::vector<Fault>& f) {
    const bool wide = s.wide;
    auto narrow = [wide](int64_t v) { return wide ? v : int64_t(int32_t(v)); };
    const int64_t minW = s.minW, minH = s.minH;
    auto small = [=](const Args& a) {
        const int64_t w = s.bayer() ? a.imageWidth : a.width, h = s.bayer() ? a.imageHeight : a.height;
        return narrow(w) < minW || (minH > 0 && narrow(h) < minH);  // minH 0: the height is not checked
    };
    auto setW = [bay = s.bayer()](Args& a, int64_t v) { (bay ? a.imageWidth : a.width) = v; };
    auto setH = [bay = s.bayer()](Args& a, int64_t v) { (bay ? a.imageHeight : a.height) = v; };
    f.push_back({"width " + std::to_string(minW - 1), tpxStatusBadSize, [=](Args& a) { setW(a, minW - 1); }, small});
    if (minH < 1) return;  // a height below 1 converts nothing
    f.push_back({"height " + std::to_string(minH - 1), tpxStatusBadSize, [=](Args& a) { setH(a, minH - 1); }, small});
    f.push_back({"height -7", tpxStatusBadSize, [=](Args& a) { setH(a, -7); }, small});
}

// Every step argument below 1.
void stepFaults(const ExportShape& s, std::vector<Fault>& f) {
    for (int d = 0; d < 2; ++d) {
        const ImageShape& im = side(s, d);
        const int n = im.pass == Pass::None ? 0 : im.pass == Pass::Planes ? 1 : im.planes;
        for (int p = 0; p < n; ++p) {
            const int64_t bad = d ? -1 : 0;
            f.push_back({std::string(sideName(d)) + " step " + std::to_string(p) + " " + std::to_string(bad),
                         tpxStatusBadStep, [=](Args& a) { (d ? a.dstStep : a.srcStep)[p] = bad; },
                         [=](const Args& a) {
                             // The 32-bit members see the step as a 32-bit value.
                             const int64_t v = (d ? a.dstStep : a.srcStep)[p];
                             return (s.wide ? v : int64_t(int32_t(v))) < 1;
                         }});
        }
    }
}

// A 64-bit size or rectangle value beyond 2^31 - 1.
void wideFaults(const ExportShape& s, std::vector<Fault>& f) {
    auto over = [](const Args& a) {
        for (int64_t v : {a.width, a.height, a.x, a.y, a.imageWidth, a.imageHeight})
            if (v > INT32_MAX) return true;
        return false;
    };
    f.push_back({"width 2^31", tpxStatusSizeTooLarge, [](Args& a) { a.width = int64_t(1) << 31; }, over});
    if (s.bayer())
        f.push_back({"mosaic height 2^31", tpxStatusSizeTooLarge, [](Args& a) { a.imageHeight = int64_t(1) << 31; },
                     over});
}

}  // namespace

std::vector<Fault> faultsOf(const Export& e) {
    const ExportShape& s = e.shape;
    std::vector<Fault> f;
    for (const char* c = s.checks(); *c; ++c) {
        switch (*c) {
            case 'n': nullFaults(s, f); break;
            case 'p': entryFaults(s, f); break;
            case 's': sizeFaults(s, f); break;
            case 't': stepFaults(s, f); break;
            case 'l': wideFaults(s, f); break;
            default: {
                const int k = *c - '0';
                const FamilyCheck& fc = s.family->checks[k];
                f.push_back({fc.name, fc.status, fc.apply, fc.present});
            }
        }
    }
    return f;
}

TpxStatus successStatus(const ExportShape& s, const Args& a) {
    const bool warn = (s.warn == Warn::OddSize && ((a.width | a.height) & 1)) ||
                      (s.warn == Warn::WidthQuad && a.width % 4) ||
                      (s.warn == Warn::FieldBlock && (a.width % 2 || a.height % 4));
    return warn ? tpxStatusOddSize : tpxStatusOk;
}

TpxStatus checkStatus(const std::vector<Fault>& faults, const Args& a) {
    for (const Fault& f : faults)
        if (f.present(a)) return f.status;
    return tpxStatusOk;
}

}  // namespace tpxtest
