// Bytes a conversion reads and writes, from its name: the element size
// (8u, 16s, 32f, ...) and the source and destination layouts that follow it
// (C3C1R; one layout such as C3R means both sides). Cn and ACn pixels are n
// elements (ACn touches its unused channel's bytes too). A planar side whose
// part of the name carries 420, 422 or 411 has one full luma plane and two
// chroma planes (or one interleaved plane) of the subsampled size; other
// planar sides have n full planes.
#include "peers.hpp"

#include <cstdio>
#include <cstdlib>
#include <regex>
#include <sstream>

namespace peers {
namespace {

// Chroma samples of a subsampled planar side, 0 where the side is not subsampled.
size_t chromaSamples(const std::string& side, size_t w, size_t h) {
    if (side.find("420") != std::string::npos) return (w + 1) / 2 * ((h + 1) / 2);
    if (side.find("422") != std::string::npos) return (w + 1) / 2 * h;
    if (side.find("411") != std::string::npos) return (w + 3) / 4 * h;
    return 0;
}

// Elements of one side for a layout such as "C3", "AC4", "P2"; 0 if unknown.
size_t sideElements(const std::string& layout, const std::string& side, size_t w, size_t h) {
    const size_t pos = layout.find_first_of("CP");
    if (pos == std::string::npos || pos + 1 >= layout.size()) return 0;
    const size_t n = size_t(std::atoi(layout.c_str() + pos + 1));
    if (layout[pos] == 'P')
        if (const size_t c = chromaSamples(side, w, h)) return w * h + 2 * c;
    return n * w * h;
}

// Splits "C3P3R" into {"C3", "P3"} and "AC4R" into {"AC4", "AC4"}; empty if
// the token is no layout.
std::vector<std::string> layouts(const std::string& token) {
    static const std::regex whole("((?:A?[CP][0-9])+)R"), one("A?[CP][0-9]");
    if (!std::regex_match(token, whole)) return {};
    std::vector<std::string> out;
    for (std::sregex_iterator m(token.begin(), token.end(), one), end; m != end; ++m) out.push_back(m->str());
    if (out.size() == 1) out.push_back(out[0]);
    return out.size() == 2 ? out : std::vector<std::string>{};
}

}  // namespace

size_t trafficBytes(const std::string& name, int width, int height) {
    std::vector<std::string> tokens;
    std::istringstream in(name);
    for (std::string t; std::getline(in, t, '_');) tokens.push_back(t);
    for (size_t i = 1; i + 1 < tokens.size(); ++i) {
        char kind = 0;
        int bits = 0;
        if (std::sscanf(tokens[i].c_str(), "%d%c", &bits, &kind) != 2 || (kind != 'u' && kind != 's' && kind != 'f'))
            continue;
        const std::vector<std::string> lay = layouts(tokens[i + 1]);
        if (lay.empty()) return 0;
        const size_t to = tokens[0].find("To");
        const std::string src = tokens[0].substr(0, to), dst = to == std::string::npos ? "" : tokens[0].substr(to);
        const size_t w = size_t(width), h = size_t(height);
        const size_t a = sideElements(lay[0], src, w, h), b = sideElements(lay[1], dst, w, h);
        return a && b ? (a + b) * size_t(bits / 8) : 0;
    }
    return 0;
}

}  // namespace peers
