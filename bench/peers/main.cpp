// Runs every registered pair at the sizes given (default 1920x1080) and
// prints our time, the peer's time, their ratio (ours / peer: below 1 is
// faster than the peer) and the memory-copy floor of our conversion: a memcpy
// of half its traffic, so that the copy reads and writes as many bytes in total
// as the conversion does. Usage:
//   tpxcc_peers [WxH ...] [--markdown] [--only TEXT] [--rounds N] [--json FILE]
// --only keeps the pairs whose family or our function contains TEXT; --rounds
// sets the rounds of 7 runs per side (default 5); --json also writes every
// result, the compiler and the library's kernel tier to FILE.
#include "frame/cpu.hpp"
#include "peers.hpp"

#include <opencv2/core.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

namespace peers {
namespace {
std::vector<Maker>& makers() {
    static std::vector<Maker> m;
    return m;
}

double once(const std::function<void()>& fn) {
    auto t0 = std::chrono::steady_clock::now();
    fn();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
}

double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

// Median milliseconds of each side over rounds of 7 consecutive runs per side,
// so that each side runs as it would on every frame of a video, and all sides
// see the same machine state over the measurement.
std::vector<double> medianMs(const std::vector<std::function<void()>>& sides, int rounds) {
    for (int i = 0; i < 3; ++i)
        for (auto& f : sides) f();
    std::vector<std::vector<double>> t(sides.size());
    for (int round = 0; round < rounds; ++round)
        for (size_t s = 0; s < sides.size(); ++s)
            for (int i = 0; i < 7; ++i) t[s].push_back(once(sides[s]));
    std::vector<double> ms;
    for (auto& v : t) ms.push_back(median(v) * 1e3);
    return ms;
}

// A memcpy of `bytes` / 2 bytes between two buffers of its own.
std::function<void()> copyOf(size_t bytes) {
    auto a = std::make_shared<std::vector<uint8_t>>(bytes / 2, 1);
    auto b = std::make_shared<std::vector<uint8_t>>(bytes / 2);
    return [a, b] { std::memcpy(b->data(), a->data(), a->size()); };
}

const char* compiler() {
#if defined(__clang__)
    return "clang " __clang_version__;
#elif defined(__GNUC__)
    return "gcc " __VERSION__;
#else
    return "unknown";
#endif
}
}  // namespace

Registrar::Registrar(Maker m) { makers().push_back(m); }

std::shared_ptr<std::vector<uint8_t>> randomBytes(size_t n, uint32_t seed) {
    auto v = std::make_shared<std::vector<uint8_t>>(n);
    std::mt19937 rng(seed);
    for (auto& b : *v) b = uint8_t(rng());
    return v;
}

}  // namespace peers

int main(int argc, char** argv) {
    cv::setNumThreads(1);
    std::vector<std::pair<int, int>> sizes;
    bool markdown = false;
    std::string only;
    int rounds = 5;
    FILE* json = nullptr;
    for (int i = 1; i < argc; ++i) {
        int w = 0, h = 0;
        if (!std::strcmp(argv[i], "--markdown")) markdown = true;
        else if (!std::strcmp(argv[i], "--only") && i + 1 < argc) only = argv[++i];
        else if (!std::strcmp(argv[i], "--rounds") && i + 1 < argc) rounds = std::max(1, std::atoi(argv[++i]));
        else if (!std::strcmp(argv[i], "--json") && i + 1 < argc) {
            if (!(json = std::fopen(argv[++i], "w"))) {
                std::fprintf(stderr, "tpxcc_peers: cannot write %s\n", argv[i]);
                return 1;
            }
        } else if (std::sscanf(argv[i], "%dx%d", &w, &h) == 2) sizes.push_back({w, h});
    }
    if (sizes.empty()) sizes.push_back({1920, 1080});
    if (json)
        std::fprintf(json, "{\"compiler\": \"%s\", \"tier\": \"%s%s\", \"threads\": 1, \"rounds\": %d, \"runs\": 7,\n \"results\": [",
                     peers::compiler(), tpx::tierName(tpx::activeTier()), tpx::activeAvx512Vbmi() ? " with VBMI" : "",
                     rounds);
    const char* sep = "\n";
    for (auto [w, h] : sizes) {
        std::printf(markdown ? "\n### %dx%d, single-threaded\n\n" : "\n%dx%d, single-threaded\n", w, h);
        if (markdown) std::printf("| family | ours | peer | our ms | peer ms | ratio | target | floor ms |\n|---|---|---|---|---|---|---|---|\n");
        else std::printf("%-14s %-36s %-28s %8s %8s %6s %6s %8s\n", "family", "ours", "peer", "our ms", "peer ms", "ratio", "target", "floor ms");
        // One family's pairs at a time: their buffers are freed before the next's.
        for (auto m : peers::makers()) {
            std::vector<peers::Pair> pairs;
            m(w, h, pairs);
            for (auto& p : pairs) {
                if (!only.empty() && p.family.find(only) == std::string::npos && p.ours.find(only) == std::string::npos)
                    continue;
                const size_t bytes = peers::trafficBytes(p.ours, w, h);
                std::vector<std::function<void()>> sides{p.runOurs, p.runPeer};
                if (bytes) sides.push_back(peers::copyOf(bytes));
                const std::vector<double> ms = peers::medianMs(sides, rounds);
                const double floorMs = bytes ? ms[2] : 0.0;
                const char* fmt = markdown ? "| %s | %s | %s | %.3f | %.3f | %.2f | %.2f | %.3f |\n"
                                           : "%-14s %-36s %-28s %8.3f %8.3f %6.2f %6.2f %8.3f\n";
                std::printf(fmt, p.family.c_str(), p.ours.c_str(), p.peer.c_str(), ms[0], ms[1], ms[0] / ms[1], p.target,
                            floorMs);
                std::fflush(stdout);
                if (json)
                    std::fprintf(json,
                                 "%s  {\"width\": %d, \"height\": %d, \"family\": \"%s\", \"ours\": \"%s\", \"peer\": \"%s\", "
                                 "\"our_ms\": %.4f, \"peer_ms\": %.4f, \"target\": %.2f, \"bytes\": %zu, \"floor_ms\": %.4f}",
                                 sep, w, h, p.family.c_str(), p.ours.c_str(), p.peer.c_str(), ms[0], ms[1], p.target,
                                 bytes, floorMs);
                sep = ",\n";
            }
        }
    }
    if (json) {
        std::fprintf(json, "\n]}\n");
        std::fclose(json);
    }
    return 0;
}
