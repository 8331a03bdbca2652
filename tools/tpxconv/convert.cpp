#include "convert.hpp"

#include <algorithm>
#include <exception>
#include <mutex>
#include <string>
#include <thread>

namespace conv {
namespace {

// Bands are whole 4:2:0 blocks and ordered-dither periods high, and tall
// enough for demosaicing.
constexpr int kBandAlign = 4, kMinBand = 16;

// Error diffusion carries errors from row to row: such a route runs a frame whole.
bool diffuses(const Route& route, const Options& opt) {
    if (opt.dither < 1 || opt.dither > 3) return false;
    for (const Step& s : route.steps)
        if (s.function.find("ReduceBits") != std::string::npos) return true;
    return false;
}

struct Task {
    size_t frame;
    int y0, y1;
};

}  // namespace

void convertFrames(const Route& route, const std::vector<View>& srcs, const std::vector<View>& dsts,
                   const Options& opt, int threads) {
    std::vector<Task> tasks;
    const int perFrame = diffuses(route, opt) ? 1 : std::max(1, threads / std::max(1, int(srcs.size())));
    for (size_t i = 0; i < srcs.size(); ++i) {
        const int h = srcs[i].h;
        const int bands = std::max(1, std::min(perFrame, h / kMinBand));
        for (int b = 0, y0 = 0; b < bands; ++b) {
            const int y1 = b + 1 == bands ? h : (h * (b + 1) / bands) / kBandAlign * kBandAlign;
            tasks.push_back({i, y0, y1});
            y0 = y1;
        }
    }
    std::mutex lock;
    std::string error;
    auto work = [&](const Task& t) {
        try {
            runRoute(route, srcs[t.frame].band(t.y0, t.y1), dsts[t.frame].band(t.y0, t.y1), opt);
        } catch (const std::exception& e) {
            const std::lock_guard<std::mutex> guard(lock);
            if (error.empty()) error = e.what();
        }
    };
    if (tasks.size() == 1) {
        work(tasks.front());
    } else {
        std::vector<std::thread> pool;
        for (const Task& t : tasks) pool.emplace_back(work, t);
        for (auto& th : pool) th.join();
    }
    if (!error.empty()) throw Failure(error);
}

void checkRouteSize(const Route& route, const Format& from, int w, int h) {
    std::vector<const Format*> all{&from};
    for (const Step& s : route.steps) all.push_back(s.to);
    for (const Format* f : all) {
        if (f->isBayer() && (w < 5 || h < 5))
            throw Failure("demosaicing needs at least 5x5 pixels; the region is " + std::to_string(w) + "x" +
                          std::to_string(h));
        if (w % f->blockW() || h % f->blockH())
            throw Failure(f->name + " needs a width and height in multiples of " + std::to_string(f->blockW()) + "x" +
                          std::to_string(f->blockH()) + "; the region is " + std::to_string(w) + "x" +
                          std::to_string(h));
    }
}

}  // namespace conv
