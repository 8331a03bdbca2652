// The argument checks of any export, in its order, from its row of the
// table: each check as a fault that valid arguments can be given and a test
// of whether arguments hold it. The status of a call is that of the first
// fault in the order its arguments hold; the check-order test and the fuzzer
// both ask this.
#pragma once

#include "support/export_table.hpp"

#include <functional>
#include <string>
#include <vector>

namespace tpxtest {

struct Fault {
    std::string name;
    TpxStatus status;
    std::function<void(Args&)> apply;
    std::function<bool(const Args&)> present;
};

// Every check of `e` in order.
std::vector<Fault> faultsOf(const Export& e);

// The status the checks give: that of the first fault present, else tpxStatusOk.
TpxStatus checkStatus(const std::vector<Fault>& faults, const Args& a);
// The status of a call that passes its checks (the member's warnings).
TpxStatus successStatus(const ExportShape& s, const Args& a);

}  // namespace tpxtest
