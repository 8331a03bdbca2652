// Runs every registered pair at the sizes given (default 1920x1080) and
// prints our time, the peer's time and their ratio (ours / peer: below 1 is
// faster than the peer). Usage: tpxcc_peers [WxH ...] [--markdown] [--only TEXT]
// (--only keeps the pairs whose family or our function contains TEXT).
#include "peers.hpp"

#include <opencv2/core.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
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
    for (int i = 1; i < argc; ++i) {
        int w = 0, h = 0;
        if (!std::strcmp(argv[i], "--markdown")) markdown = true;
        else if (!std::strcmp(argv[i], "--only") && i + 1 < argc) only = argv[++i];
        else if (std::sscanf(argv[i], "%dx%d", &w, &h) == 2) sizes.push_back({w, h});
    }
    if (sizes.empty()) sizes.push_back({1920, 1080});
    for (auto [w, h] : sizes) {
        std::vector<peers::Pair> pairs;
        for (auto m : peers::makers()) m(w, h, pairs);
        std::printf(markdown ? "\n### %dx%d, single-threaded\n\n" : "\n%dx%d, single-threaded\n", w, h);
        if (markdown) std::printf("| family | ours | peer | our ms | peer ms | ratio | target |\n|---|---|---|---|---|---|---|\n");
        else std::printf("%-14s %-36s %-28s %8s %8s %6s %6s\n", "family", "ours", "peer", "our ms", "peer ms", "ratio", "target");
        for (auto& p : pairs) {
            if (!only.empty() && p.family.find(only) == std::string::npos && p.ours.find(only) == std::string::npos)
                continue;
            for (int i = 0; i < 3; ++i) { p.runOurs(); p.runPeer(); }
            // Rounds of consecutive runs of each side, so that each side runs
            // as it would on every frame of a video, and both see the same
            // machine state over the measurement.
            std::vector<double> a, b;
            for (int round = 0; round < 5; ++round) {
                for (int i = 0; i < 7; ++i) a.push_back(peers::once(p.runOurs));
                for (int i = 0; i < 7; ++i) b.push_back(peers::once(p.runPeer));
            }
            const double ta = peers::median(a) * 1e3, tb = peers::median(b) * 1e3;
            const char* fmt = markdown ? "| %s | %s | %s | %.3f | %.3f | %.2f | %.2f |\n"
                                       : "%-14s %-36s %-28s %8.3f %8.3f %6.2f %6.2f\n";
            std::printf(fmt, p.family.c_str(), p.ours.c_str(), p.peer.c_str(), ta, tb, ta / tb, p.target);
        }
    }
    return 0;
}
