#include "support/export_table.hpp"

#include "support/rows/rows.hpp"

#include <cstring>

namespace tpxtest {
namespace {

std::vector<Export> build() {
    std::vector<Export> t;
    addYCbCr444Rows(t);
    addEncoderRows(t);
    addDecoderRows(t);
    addGrayRows(t);
    addDemosaicRows(t);
    addChromaLayoutRows(t);
    addYCoCgYuvRows(t);
    addHsvHlsYccRows(t);
    addXyzLabLuvRows(t);
    addTwistGammaRows(t);
    addReduceBitsToneMapRows(t);
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
