// tpxconv: converts images and raw frame sequences between pixel formats
// with the library's conversions; with no arguments, runs the demo.
#include "convert.hpp"
#include "demo_files.hpp"
#include "io.hpp"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using namespace conv;

const char kUsage[] =
    "usage: tpxconv INPUT OUTPUT [options]     (no arguments: run the demo)\n"
    "  --pix-fmt F        format of a raw INPUT (with --size); PPM/PGM inputs need neither\n"
    "  --size WxH         frame size of a raw INPUT; several frames in one file are converted one by one\n"
    "  --to F             output format (default: from OUTPUT's extension: .ppm, .pgm or a format name)\n"
    "  --matrix 601|709   YCbCr colour matrix (default 601)\n"
    "  --demosaic M       bilinear (default), vng or ahd, for Bayer inputs\n"
    "  --alpha N          alpha value 0..255 written where the output has alpha (default 255)\n"
    "  --dither D         16-bit to 8-bit: none, fs, jjn, stucki or ordered (default ordered);\n"
    "                     monob: none or stucki (default stucki)\n"
    "  --threshold N      monob: gray samples above N (0..255, default 128) are white\n"
    "  --gamma fwd|inv    forward or inverse video gamma on an RGB output, as the last step\n"
    "  --roi x,y,w,h      convert this rectangle of the input only\n"
    "  --threads N        convert frames, or bands of a frame, on N threads (default 1)\n"
    "formats: rgb24 bgr24 rgba bgra gray gray16le rgb48le bgra64le yuv444p yuv422p yuv420p yuv411p\n"
    "         nv12 nv21 yuyv422 uyvy422 bayer_{bggr,rggb,gbrg,grbg}8 bayer_{bggr,rggb,gbrg,grbg}16le\n"
    "         v210 (input only: its 10-bit luma as gray16le) monob (output only: 1 bit per pixel)\n";

constexpr int kMaxSide = 1 << 20;

struct Args {
    std::string input, output, pixFmt, to;
    int w = 0, h = 0, threads = 1;
    bool roiGiven = false, ditherGiven = false;
    int roi[4] = {0, 0, 0, 0};
    Options opt;
};

// Parses "a<sep>b<sep>..." into exactly n non-negative integers.
bool parseInts(const std::string& text, char sep, int* out, int n) {
    const char* p = text.c_str();
    for (int i = 0; i < n; ++i) {
        char* end = nullptr;
        if (!std::isdigit(static_cast<unsigned char>(*p))) return false;
        const long v = std::strtol(p, &end, 10);
        if (v > 1 << 28) return false;
        out[i] = int(v);
        if (i + 1 < n && *end != sep) return false;
        p = end + (i + 1 < n);
    }
    return *p == '\0';
}

Args parse(int argc, char** argv) {
    Args a;
    std::vector<std::string> positional;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "-h" || arg == "--help") {
            std::fputs(kUsage, stdout);
            std::exit(0);
        }
        if (arg.size() < 2 || arg.compare(0, 2, "--") != 0) {
            positional.push_back(arg);
            continue;
        }
        if (i + 1 >= argc) throw Failure("option " + arg + " needs a value (see tpxconv --help)");
        const std::string v = argv[++i];
        if (arg == "--pix-fmt") a.pixFmt = v;
        else if (arg == "--to") a.to = v;
        else if (arg == "--size") {
            int wh[2];
            if (!parseInts(v, 'x', wh, 2) || wh[0] < 1 || wh[1] < 1 || wh[0] > kMaxSide || wh[1] > kMaxSide)
                throw Failure("--size wants WxH, each 1.." + std::to_string(kMaxSide) + ", got '" + v + "'");
            a.w = wh[0], a.h = wh[1];
        } else if (arg == "--matrix") {
            if (v != "601" && v != "709") throw Failure("--matrix wants 601 or 709, got '" + v + "'");
            a.opt.matrix = v == "709" ? Matrix::Bt709 : Matrix::Bt601;
        } else if (arg == "--demosaic") {
            if (v == "bilinear") a.opt.method = Method::Bilinear;
            else if (v == "vng") a.opt.method = Method::Vng;
            else if (v == "ahd") a.opt.method = Method::Ahd;
            else throw Failure("--demosaic wants bilinear, vng or ahd, got '" + v + "'");
        } else if (arg == "--alpha") {
            if (!parseInts(v, ',', &a.opt.alpha, 1) || a.opt.alpha > 255) throw Failure("--alpha wants 0..255, got '" + v + "'");
        } else if (arg == "--dither") {
            static const char* const kNames[] = {"none", "fs", "jjn", "stucki", "ordered"};
            const auto at = std::find(std::begin(kNames), std::end(kNames), v);
            if (at == std::end(kNames)) throw Failure("--dither wants none, fs, jjn, stucki or ordered, got '" + v + "'");
            a.opt.dither = int(at - std::begin(kNames));
            a.ditherGiven = true;
        } else if (arg == "--threshold") {
            if (!parseInts(v, ',', &a.opt.threshold, 1) || a.opt.threshold > 255)
                throw Failure("--threshold wants 0..255, got '" + v + "'");
        } else if (arg == "--gamma") {
            if (v != "fwd" && v != "inv") throw Failure("--gamma wants fwd or inv, got '" + v + "'");
            a.opt.gamma = v == "fwd" ? Gamma::Fwd : Gamma::Inv;
        } else if (arg == "--roi") {
            if (!parseInts(v, ',', a.roi, 4) || a.roi[2] < 1 || a.roi[3] < 1) throw Failure("--roi wants x,y,w,h, got '" + v + "'");
            a.roiGiven = true;
        } else if (arg == "--threads") {
            if (!parseInts(v, ',', &a.threads, 1) || a.threads < 1 || a.threads > 256)
                throw Failure("--threads wants 1..256, got '" + v + "'");
        } else {
            throw Failure("unknown option " + arg + " (see tpxconv --help)");
        }
    }
    if (positional.size() != 2) throw Failure("need INPUT and OUTPUT (see tpxconv --help)");
    a.input = positional[0], a.output = positional[1];
    if (!a.pixFmt.empty() && (a.w == 0)) throw Failure("raw input needs --size WxH with --pix-fmt");
    if (a.pixFmt.empty() && a.w != 0) throw Failure("raw input needs --pix-fmt with --size");
    return a;
}

// The output format: --to, else the extension (.ppm/.pgm keep the input's depth).
const Format& outputFormat(const Args& a, const Format& in) {
    const std::string ext = extensionOf(a.output);
    const bool deep = in.bytes == 2;
    const Format* f = nullptr;
    if (!a.to.empty()) f = &formatNamed(a.to);
    else if (ext == "ppm" || ext == "pnm") f = &formatNamed(deep ? "rgb48le" : "rgb24");
    else if (ext == "pgm") f = &formatNamed(deep ? "gray16le" : "gray");
    else
        for (const Format& g : formats())
            if (g.name == ext) f = &g;
    if (!f) throw Failure("cannot tell the output format of '" + a.output + "': give --to FORMAT or a .ppm/.pgm name");
    if (isPnmName(a.output)) {
        const bool gray = f->name == "gray" || f->name == "gray16le";
        const bool rgb = f->name == "rgb24" || f->name == "rgb48le";
        if (!(ext == "pgm" ? gray : ext == "ppm" ? rgb : gray || rgb))
            throw Failure("a ." + ext + " file holds " + (ext == "pgm" ? "gray or gray16le" : "rgb24 or rgb48le") +
                          ", not " + f->name);
    }
    return *f;
}

void progress(long long done, long long total) {
    const int width = 40, filled = int(width * done / total);
    std::fprintf(stderr, "\r[%s%s] %lld/%lld frames", std::string(size_t(filled), '#').c_str(),
                 std::string(size_t(width - filled), '.').c_str(), done, total);
    if (done == total) std::fputc('\n', stderr);
}

void convert(const Args& a) {
    Input in(a.input, a.pixFmt.empty() ? nullptr : &formatNamed(a.pixFmt), a.w, a.h);
    const Format& from = in.format();
    int roi[4] = {0, 0, in.width(), in.height()};
    if (a.roiGiven) {
        std::copy(a.roi, a.roi + 4, roi);
        if ((long long)roi[0] + roi[2] > in.width() || (long long)roi[1] + roi[3] > in.height())
            throw Failure("--roi reaches outside the " + std::to_string(in.width()) + "x" +
                          std::to_string(in.height()) + " input");
        if (roi[0] % from.startW() || roi[1] % from.blockH())
            throw Failure("--roi of " + from.name + " must start at multiples of " + std::to_string(from.startW()) +
                          "x" + std::to_string(from.blockH()));
    }
    const Format& to = outputFormat(a, from);
    Options opt = a.opt;
    if (!a.ditherGiven) opt.dither = defaultDither(to);
    const Route route = findRoute(from, to, opt);
    checkRouteSize(route, from, roi[2], roi[3]);
    Output out(a.output, to, isPnmName(a.output));

    const bool bar = in.frames() > 1 && isatty(STDERR_FILENO);
    for (long long done = 0; done < in.frames();) {
        const int batch = int(std::min<long long>(a.threads, in.frames() - done));
        std::vector<Frame> srcs, dsts;
        std::vector<View> sv, dv;
        for (int i = 0; i < batch; ++i) {
            srcs.push_back(in.read());
            dsts.emplace_back(to, roi[2], roi[3]);
            sv.push_back(viewOf(from, srcs.back().data.data(), in.width(), in.height(), roi[0], roi[1], roi[2], roi[3]));
            dv.push_back(dsts.back().view);
        }
        convertFrames(route, sv, dv, opt, a.threads);
        for (const Frame& f : dsts) out.write(f);
        done += batch;
        if (bar) progress(done, in.frames());
    }
    out.commit();
}

}  // namespace

int main(int argc, char** argv) {
    try {
        if (argc == 1) return conv::runDemo("tpxconv-demo");
        convert(parse(argc, argv));
        return 0;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "tpxconv: %s\n", e.what());
        return 1;
    }
}
