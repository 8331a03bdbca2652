// Exports of a table family against a memory copy of the same traffic.
#include "peers.hpp"
#include "support/buffers.hpp"
#include "support/export_table.hpp"

#include <cstring>

namespace peers {

void againstCopy(const char* tableFamily, const std::string& family, double target, int w, int h,
                 std::vector<Pair>& out, const char* nameHas) {
    for (const tpxtest::Export& e : tpxtest::exportTable()) {
        if (std::strcmp(e.family, tableFamily) || (nameHas && !std::strstr(e.name, nameHas))) continue;
        auto b = std::make_shared<tpxtest::Buffers>(e, w, h, 1, tpxtest::Layout{tpxtest::StepKind::Tight, tpxtest::StepKind::Tight});
        const size_t bytes = trafficBytes(e.name, w, h);
        auto a = std::make_shared<std::vector<uint8_t>>(bytes / 2, 1), c = std::make_shared<std::vector<uint8_t>>(bytes / 2);
        const tpxtest::Export* ep = &e;
        out.push_back({family, e.name, "memcpy", [ep, b] { ep->call(b->args); },
                       [a, c] { std::memcpy(c->data(), a->data(), a->size()); }, target});
    }
}

}  // namespace peers
