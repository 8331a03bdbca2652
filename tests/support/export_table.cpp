#include "support/export_table.hpp"

#include "support/rows/rows.hpp"

#include <cctype>
#include <cstdlib>
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

namespace {

Elem elemOf(int bits, char kind) {
    if (kind == 'f') return bits == 64 ? Elem::F64 : Elem::F32;
    if (bits == 8) return Elem::U8;
    if (bits == 16) return kind == 's' ? Elem::S16 : Elem::U16;
    return kind == 's' ? Elem::S32 : Elem::U32;
}
// The subsampling named in one part of the operation (h, v; 0 when none).
void subsamplingOf(const std::string& part, int& h, int& v) {
    h = v = 0;
    if (part.find("1620") != std::string::npos) h = v = 4;
    else if (part.find("420") != std::string::npos) h = v = 2;
    else if (part.find("422") != std::string::npos) h = 2, v = 1;
    else if (part.find("411") != std::string::npos) h = 4, v = 1;
}

}  // namespace

Name readName(const char* name) {
    Name n;
    n.s = name;
    std::string rest = n.s;
    n.wide = rest.size() > 2 && !rest.compare(rest.size() - 2, 2, "_L");
    if (n.wide) rest.resize(rest.size() - 2);
    std::string lay = rest.substr(rest.rfind('_') + 1);
    rest.resize(rest.rfind('_'));
    const std::string types = rest.substr(rest.rfind('_') + 1), op = rest.substr(0, rest.rfind('_'));
    std::vector<Elem> el;
    for (size_t i = 0; i < types.size();) {
        size_t j = i;
        while (j < types.size() && isdigit(uint8_t(types[j]))) ++j;
        el.push_back(elemOf(std::atoi(types.c_str() + i), j < types.size() ? types[j] : 'u'));
        i = j + 1;
    }
    n.elem[0] = el.front(), n.elem[1] = el.back();
    n.steps = !lay.empty() && lay.back() == 'R';
    if (n.steps) lay.pop_back();
    const bool inPlace = lay.find('I') != std::string::npos;
    if (inPlace) lay.erase(lay.find('I'), 1);
    std::vector<std::string> tok;
    for (size_t i = 0; i < lay.size(); ++i) {  // a layout starts at A, or at C or P not after A
        if (lay[i] == 'A' || (isalpha(uint8_t(lay[i])) && (i == 0 || lay[i - 1] != 'A'))) tok.emplace_back();
        tok.back() += lay[i];
    }
    n.layout[0] = inPlace ? "" : tok.front(), n.layout[1] = tok.back();
    const size_t to = op.find("To");
    subsamplingOf(op.substr(0, to), n.hsub[0], n.vsub[0]);
    subsamplingOf(to == std::string::npos ? op : op.substr(to), n.hsub[1], n.vsub[1]);
    return n;
}

ImageShape Name::image(int d, StepUnit unit) const {
    const std::string& t = layout[d];
    if (t.empty()) return kNoImage;
    const bool alpha = t[0] == 'A';
    const char kind = t[alpha];
    const int count = t[alpha + 1] - '0', h = hsub[d] ? hsub[d] : 2, v = vsub[d] ? vsub[d] : 2;
    if (t == "C2") return kC2;
    if (t == "P2") return twoPlane(h, v);
    if (kind == 'P') return hsub[d] ? planar(h, v) : planes(count, elem[d], unit);
    return px(count, elem[d], alpha ? 3 : -1, unit);
}

const Family* Name::alpha() const {
    return layout[1] == "C4" && !layout[0].empty() && layout[0].back() < '4' ? &kAlpha : nullptr;
}

}  // namespace rows
namespace {

std::vector<Export> build() {
    // The table's heading of each family, the header's section, the shapes.
    const struct {
        const char *heading, *section;
        ExportShape (*shape)(const rows::Name&);
    } families[] = {
        {"RGB and YCbCr 4:4:4", "RGB and YCbCr 4:4:4", ycbcr444Shape},
        {"RGB to subsampled YCbCr", "RGB to subsampled YCbCr", encoderShape},
        {"Subsampled YCbCr to RGB", "subsampled YCbCr to RGB", decoderShape},
        {"Gray", "gray conversions", grayShape},
        {"Bayer demosaicing", nullptr, nullptr},
        {"Chroma layout, interlaced and 16:20", "chroma layout conversions", chromaLayoutShape},
        {"v210, 12-bit, YCoCg and analog YUV", "v210, 12-bit, YCoCg and analog YUV conversions", ycocgYuvShape},
        {"HSV, HLS and photo YCC", "HSV, HLS and photo YCC conversions", hsvHlsYccShape},
        {"XYZ, Lab and LUV", "XYZ, Lab and LUV conversions", xyzLabLuvShape},
        {"Colour twist and gamma", "colour twist and gamma correction", twistGammaShape},
        {"Bit-depth reduction and tone mapping", "bit-depth reduction and tone mapping", reduceBitsToneMapShape},
    };
    std::vector<Export> t;
    for (const auto& f : families) {
        const size_t first = t.size();
        if (!f.shape) addDemosaicRows(t);
        for (size_t i = 0; f.shape && i < kHeaderRowCount; ++i)
            if (!std::strcmp(kHeaderRows[i].section, f.section))
                t.push_back({kHeaderRows[i].name, f.shape(rows::readName(kHeaderRows[i].name)), kHeaderRows[i].call});
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
