// The table of exports covers every image export the header declares; every
// row describes a valid call and each export's checks in their order.
#include "support/export_table.hpp"
#include "support/checks.hpp"
#include "support/harness.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>

namespace {

std::string sourceDir() {
    const std::string here = __FILE__;
    return here.substr(0, here.rfind("/tests/"));
}

// Names declared in the public header with a TpxStatus result.
std::set<std::string> declaredImageExports() {
    std::ifstream in(sourceDir() + "/include/tpxcc.h");
    std::stringstream text;
    text << in.rdbuf();
    const std::string s = text.str(), marker = "TPXCC_API TpxStatus ";
    std::set<std::string> names;
    for (size_t at = s.find(marker); at != std::string::npos; at = s.find(marker, at + 1)) {
        const size_t from = at + marker.size(), to = s.find('(', from);
        names.insert(s.substr(from, to - from));
    }
    return names;
}

TEST(ExportTable, CoversEveryDeclaredImageExport) {
    const std::set<std::string> declared = declaredImageExports();
    ASSERT_GT(declared.size(), 100u);
    std::set<std::string> inTable;
    for (const tpxtest::Export& e : tpxtest::exportTable()) {
        EXPECT_TRUE(inTable.insert(e.name).second) << "twice in the table: " << e.name;
        EXPECT_TRUE(declared.count(e.name)) << "in the table but not declared: " << e.name;
    }
    for (const std::string& name : declared) {
        if (name == "tpxiReduceBitsGetBufferSize") continue;  // no image: its own test covers it
        EXPECT_TRUE(inTable.count(name)) << "declared but missing from the export table: " << name;
    }
}

// A small whole image passes every check (or the one a member has for
// such a size); the status is 0, or +35 where the member warns.
TEST(ExportTable, ShapesDescribeValidCalls) {
    for (const tpxtest::Export& e : tpxtest::exportTable())
        for (int64_t w : {8, 9}) {
            tpxtest::Buffers b(e, w, w, 7);
            const TpxStatus got = e.call(b.args), refused = tpxtest::checkStatus(tpxtest::faultsOf(e), b.args);
            if (e.shape.warn == tpxtest::Warn::Data) EXPECT_GE(got, 0) << e.name;
            else EXPECT_EQ(got, refused < 0 ? refused : tpxtest::successStatus(e.shape, b.args)) << e.name << " " << w;
        }
}

// Every check of every export in its order, alone and in pairs.
TEST(ExportTable, ChecksInOrderAndRefusedCallsWriteNothing) {
    for (const tpxtest::Export& e : tpxtest::exportTable()) tpxtest::expectChecks(e);
}

}  // namespace
