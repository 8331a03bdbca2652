#include "support/export_table.hpp"

#include "support/rows/rows.hpp"

#include <cstring>

namespace tpxtest {
namespace rows {
namespace {

void alphaInit(Args& a, std::vector<uint8_t>&, uint32_t seed) {
    a.code[0] = int64_t(seed * 2654435761u >> 16);  // any 16-bit value; 8-bit members take its low byte
    a.value[0] = 0.25 + double(seed % 7);
}

}  // namespace

const Family kAlpha{alphaInit, nullptr, nullptr, 0, false};

}  // namespace rows
namespace {

std::vector<Export> build() {
    const struct {
        const char* heading;
        void (*add)(std::vector<Export>&);
    } families[] = {
        {"RGB and YCbCr 4:4:4", addYCbCr444Rows},
        {"RGB to subsampled YCbCr", addEncoderRows},
        {"Subsampled YCbCr to RGB", addDecoderRows},
        {"Gray", addGrayRows},
        {"Bayer demosaicing", addDemosaicRows},
        {"Chroma layout, interlaced and 16:20", addChromaLayoutRows},
        {"v210, 12-bit, YCoCg and analog YUV", addYCoCgYuvRows},
        {"HSV, HLS and photo YCC", addHsvHlsYccRows},
        {"XYZ, Lab and LUV", addXyzLabLuvRows},
        {"Colour twist and gamma", addTwistGammaRows},
        {"Bit-depth reduction and tone mapping", addReduceBitsToneMapRows},
    };
    std::vector<Export> t;
    for (const auto& f : families) {
        const size_t first = t.size();
        f.add(t);
        for (size_t i = first; i < t.size(); ++i) t[i].family = f.heading;
    }
    return t;
}

}  // namespace

const std::vector<Export>& exportTable() {
    static const std::vector<Export> kTable = build();
    return kTable;
}

const Export* findExport(const char* name) {
    for (const Export& e : exportTable())
        if (!std::strcmp(e.name, name)) return &e;
    return nullptr;
}

}  // namespace tpxtest
