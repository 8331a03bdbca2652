#include "demo_files.hpp"

#include "convert.hpp"
#include "demo.hpp"
#include "io.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <sys/stat.h>
#include <thread>

namespace conv {
namespace {

// The test image as rgb24, or as rgb48le with every sample times 257.
Frame pictureFrame(const demo::Picture& pic, int bytes) {
    Frame f(formatNamed(bytes == 1 ? "rgb24" : "rgb48le"), pic.width, pic.height);
    for (size_t i = 0; i < pic.rgb.size(); ++i) {
        if (bytes == 1) f.data[i] = pic.rgb[i];
        else reinterpret_cast<uint16_t*>(f.data.data())[i] = uint16_t(pic.rgb[i] * 257);
    }
    return f;
}

// The test image sampled through the mosaic of a Bayer format (the phase is
// in its name, e.g. bayer_rggb8: red at even columns of even rows).
Frame mosaicFrame(const demo::Picture& pic, const Format& f) {
    Frame m(f, pic.width, pic.height);
    const std::string phase = f.name.substr(6, 4);
    for (int y = 0; y < pic.height; ++y)
        for (int x = 0; x < pic.width; ++x) {
            const char c = phase[size_t((y & 1) * 2 + (x & 1))];
            const int v = pic.at(x, y, c == 'r' ? 0 : c == 'g' ? 1 : 2);
            const size_t at = size_t(y) * size_t(pic.width) + size_t(x);
            if (f.bytes == 1) m.data[at] = uint8_t(v);
            else reinterpret_cast<uint16_t*>(m.data.data())[at] = uint16_t(v * 257);
        }
    return m;
}

// Largest difference of an rgb24 or rgb48le frame from the test image, in 8-bit units.
int maxError(const demo::Picture& pic, const Frame& f) {
    int worst = 0;
    for (size_t i = 0; i < pic.rgb.size(); ++i) {
        const int v = f.view.fmt->bytes == 1 ? f.data[i] : (reinterpret_cast<const uint16_t*>(f.data.data())[i] + 128) / 257;
        worst = std::max(worst, std::abs(v - int(pic.rgb[i])));
    }
    return worst;
}

Frame convertTo(const Frame& src, const Format& to, const Options& opt, Route& route) {
    route = findRoute(*src.view.fmt, to, opt);
    Frame dst(to, src.view.w, src.view.h);
    convertFrames(route, {src.view}, {dst.view}, opt, int(std::max(1u, std::thread::hardware_concurrency())));
    return dst;
}

void save(const Frame& f, const std::string& path) {
    Output out(path, *f.view.fmt, isPnmName(path));
    out.write(f);
    out.commit();
}

void line(const std::string& name, const Route& there, const Route& back, int err) {
    char e[16] = "-";
    if (err >= 0) std::snprintf(e, sizeof e, "%d", err);
    std::printf("%-24s %-6s %7s  %s%s%s\n", name.c_str(), there.exact() && back.exact() ? "yes" : "no", e,
                there.describe().c_str(), there.steps.empty() || back.steps.empty() ? "" : ", back ",
                back.describe().c_str());
}

}  // namespace

int runDemo(const std::string& dir) {
    const demo::Picture pic = demo::makePicture(1920, 1080);
    demo::printTable(pic);
    if (mkdir(dir.c_str(), 0777) != 0 && errno != EEXIST) throw Failure("cannot make the folder '" + dir + "'");
    std::printf("\ntpxconv: the test image in every format and back (exact: bit for bit), written to %s/\n\n",
                dir.c_str());
    std::printf("%-24s %-6s %7s  %s\n", "format", "exact", "max err", "route");
    const Frame rgb[2] = {pictureFrame(pic, 1), pictureFrame(pic, 2)};
    for (const Format& f : formats()) {
        const Frame& source = rgb[f.bytes - 1];
        const Format& view = *source.view.fmt;
        const bool colour = f.channels.size() > 1 || f.isBayer();
        if (f.isBayer()) {
            const Frame m = mosaicFrame(pic, f);
            save(m, dir + "/" + f.name + ".raw");
            for (Method method : {Method::Bilinear, Method::Vng, Method::Ahd}) {
                Options opt;
                opt.method = method;
                Route there;
                const Frame out = convertTo(m, view, opt, there);
                const char* name = method == Method::Bilinear ? "bilinear" : method == Method::Vng ? "vng" : "ahd";
                save(out, dir + "/" + f.name + "-" + name + ".ppm");
                line(f.name + " " + name, there, Route{}, maxError(pic, out));
            }
            continue;
        }
        if (f.name == "v210") continue;  // read only: nothing converts to it
        Options opt;
        opt.dither = defaultDither(f);
        Route there, back;
        const Frame made = convertTo(source, f, opt, there);
        save(made, dir + "/" + f.name + ".raw");
        if (f.name == "monob") {  // written only: nothing converts from it
            line(f.name, there, back, -1);
            continue;
        }
        const Frame again = convertTo(made, view, opt, back);
        save(again, dir + "/" + f.name + ".ppm");
        line(f.name, there, back, colour ? maxError(pic, again) : -1);
    }
    return 0;
}

}  // namespace conv
