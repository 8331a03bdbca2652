// Peer comparison: our conversion against a peer library's doing the same
// work, timed alternately in one run, single-threaded. Each family registers
// its pairs with TPX_PEERS in a file of its own.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace peers {

struct Pair {
    std::string family;  // table heading
    std::string ours, peer;
    std::function<void()> runOurs, runPeer;
    double target;  // the ratio (our time / peer time) we aim at or below
};

// Fills `out` with the pairs of one family for a width x height image; the
// closures own their buffers.
using Maker = void (*)(int width, int height, std::vector<Pair>& out);
struct Registrar {
    explicit Registrar(Maker m);
};

// A buffer of random bytes, shared by the closures that use it.
std::shared_ptr<std::vector<uint8_t>> randomBytes(size_t n, uint32_t seed);

// Bytes the conversion `name` (a function name such as
// tpxiRGBToYCbCr420_8u_C3P3R) reads and writes over a width x height ROI:
// source bytes + destination bytes; 0 where the name gives no layouts.
size_t trafficBytes(const std::string& name, int width, int height);

// Every export of one family of the export table (its heading, e.g. "Chroma
// layout, interlaced and 16:20") against a memory copy of the bytes it reads
// and writes, on tightly packed images of random samples; only the exports
// whose name contains `nameHas`, when given.
void againstCopy(const char* tableFamily, const std::string& family, double target, int width, int height,
                 std::vector<Pair>& out, const char* nameHas = nullptr);

}  // namespace peers

#define TPX_PEERS(fn)                                         \
    static void fn(int, int, std::vector<peers::Pair>&);       \
    static const peers::Registrar fn##_registrar(fn);          \
    static void fn
