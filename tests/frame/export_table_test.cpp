// The table of exports covers every image export the header declares; every
// row describes a valid call and each export's checks in their order.
#include "support/export_table.hpp"
#include "support/checks.hpp"
#include "support/harness.hpp"
#include "support/rows/rows.hpp"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

// The rows come from the header's declarations, the demosaicing rows from
// their own list: each declared image export is in the table once.
TEST(ExportTable, CoversEveryDeclaredImageExport) {
    std::map<std::string, int> seen;
    for (const tpxtest::Export& e : tpxtest::exportTable()) ++seen[e.name];
    for (size_t i = 0; i < tpxtest::kHeaderRowCount; ++i) EXPECT_EQ(seen[tpxtest::kHeaderRows[i].name], 1) << tpxtest::kHeaderRows[i].name;
    EXPECT_EQ(seen.size(), tpxtest::kHeaderRowCount);
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
