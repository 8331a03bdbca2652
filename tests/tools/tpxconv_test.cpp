// tpxconv on the command line: conversions against per-pixel models, PPM/PGM
// files, threads, and every kind of bad input (one line on standard error, a
// non-zero exit and no output file).
#include "tool_run.hpp"
#include "tpxcc.h"

#include <algorithm>
#include <functional>
#include <random>

namespace {

using namespace tooltest;

Bytes randomBytes(size_t n, uint32_t seed) {
    std::mt19937 rng(seed);
    Bytes b(n);
    for (auto& v : b) v = uint8_t(rng());
    return b;
}

uint8_t clamp255(int v) { return uint8_t(std::min(255, std::max(0, v))); }

// tpxconv from a scratch file holding `input` (named `in`, whose extension
// may name its format) to the scratch file `out` with `options`: out's bytes.
Bytes convert(const Bytes& input, const std::string& options, const std::string& in = "conv.in",
              const std::string& out = "conv.out") {
    writeFile(path(in), input);
    const Result r = tpxconv(path(in) + " " + path(out) + " " + options);
    EXPECT_EQ(r.code, 0) << options << ": " << r.err;
    return readFile(path(out));
}

// RGB to studio-range YCbCr, 16-bit fixed point with the rounding folded into
// the offsets.
void encode601(int r, int g, int b, uint8_t* y, uint8_t* cb, uint8_t* cr) {
    *y = uint8_t((16843 * r + 33030 * g + 6423 * b + 1081344) >> 16);
    *cb = uint8_t((-9699 * r - 19071 * g + 28770 * b + 8421376) >> 16);
    *cr = uint8_t((28770 * r - 24117 * g - 4653 * b + 8421376) >> 16);
}

// Studio-range YCbCr to RGB: pixels in whole blocks of 8 from the row start
// use 16-bit products at scale 8192 with 4 fractional bits, the rest 32-bit
// products at scale 65536.
void decode601(int y, int cb, int cr, bool block, uint8_t* rgb) {
    if (block) {
        auto m = [](int x, int c) { return (x * c) >> 16; };
        const int yy = m((y - 16) * 128, 9535), u = (cb - 128) * 128, v = (cr - 128) * 128;
        rgb[0] = clamp255((yy + m(v, 13074) + 8) >> 4);
        rgb[1] = clamp255((yy - (m(u, 3211) + m(v, 6660)) + 8) >> 4);
        rgb[2] = clamp255((yy + m(u, 16523) + 8) >> 4);
    } else {
        rgb[0] = clamp255((76282 * y + 104593 * cr - 14575648) >> 16);
        rgb[1] = clamp255((76282 * y - 25689 * cb - 53279 * cr + 8920160) >> 16);
        rgb[2] = clamp255((76282 * y + 132184 * cb - 18107296) >> 16);
    }
}

TEST(Tpxconv, Yuv444RoundTripMatchesTheModelOnEveryFrame) {
    const int w = 37, h = 5, frames = 3;  // 37: four blocks of 8 and a remainder of 5
    const size_t n = size_t(w) * h;
    const Bytes rgb = randomBytes(n * 3 * frames, 1);
    const std::string size = " --size " + std::to_string(w) + "x" + std::to_string(h);
    const Bytes yuv = convert(rgb, "--pix-fmt rgb24 --to yuv444p" + size);
    ASSERT_EQ(yuv.size(), rgb.size());
    Bytes expectYuv(yuv.size());
    for (int f = 0; f < frames; ++f)
        for (size_t i = 0; i < n; ++i) {
            const uint8_t* px = &rgb[(f * n + i) * 3];
            uint8_t* planes = &expectYuv[f * n * 3];
            encode601(px[0], px[1], px[2], &planes[i], &planes[n + i], &planes[2 * n + i]);
        }
    EXPECT_EQ(yuv, expectYuv);

    const Bytes back = convert(yuv, "--pix-fmt yuv444p" + size, "rt.yuv", "back.rgb24");
    ASSERT_EQ(back.size(), rgb.size());
    int worst = 0;
    for (int f = 0; f < frames; ++f)
        for (size_t i = 0; i < n; ++i) {
            const uint8_t* planes = &yuv[f * n * 3];
            uint8_t expect[3];
            decode601(planes[i], planes[n + i], planes[2 * n + i], int(i % w) < w / 8 * 8, expect);
            for (int c = 0; c < 3; ++c) {
                ASSERT_EQ(back[(f * n + i) * 3 + c], expect[c]) << "frame " << f << " pixel " << i << " channel " << c;
                worst = std::max(worst, std::abs(int(back[(f * n + i) * 3 + c]) - int(rgb[(f * n + i) * 3 + c])));
            }
        }
    // Studio range keeps 220 luma levels of 256: a round trip moves a channel by at most 2.
    EXPECT_LE(worst, 2);

    // Frames converted in parallel give the same bytes.
    EXPECT_EQ(convert(yuv, "--pix-fmt yuv444p --threads 4" + size, "rt.yuv", "back4.rgb24"), back);
}

// Repacking conversions move every sample unchanged: expected output bytes
// from the layouts of the two formats.
struct Repack {
    const char* from;
    const char* to;
    const char* extra;
    int w, h;
    size_t inBytes;
    std::function<Bytes(const Bytes&)> model;
};

TEST(Tpxconv, RepackingIsExact) {
    const int w = 6, h = 4, n = w * h;
    const Repack cases[] = {
        {"rgb24", "bgra", "--alpha 7", w, h, size_t(n) * 3, [](const Bytes& in) {
             Bytes out;
             for (size_t i = 0; i < in.size(); i += 3) out.insert(out.end(), {in[i + 2], in[i + 1], in[i], 7});
             return out;
         }},
        {"yuyv422", "uyvy422", "", w, h, size_t(n) * 2, [](const Bytes& in) {
             Bytes out;
             for (size_t i = 0; i < in.size(); i += 4) out.insert(out.end(), {in[i + 1], in[i], in[i + 3], in[i + 2]});
             return out;
         }},
        {"yuv420p", "nv21", "", w, h, size_t(n) * 3 / 2, [](const Bytes& in) {
             const size_t q = size_t(n) / 4;
             Bytes out(in.begin(), in.begin() + n);
             for (size_t i = 0; i < q; ++i) out.insert(out.end(), {in[n + q + i], in[n + i]});
             return out;
         }},
        {"gray", "rgb24", "", w, h, size_t(n), [](const Bytes& in) {
             Bytes out;
             for (uint8_t v : in) out.insert(out.end(), {v, v, v});
             return out;
         }},
        {"rgb24", "bgr24", "--roi 2,1,3,2", w, h, size_t(n) * 3, [](const Bytes& in) {
             Bytes out;
             for (int y = 1; y < 3; ++y)
                 for (int x = 2; x < 5; ++x)
                     for (int c = 2; c >= 0; --c) out.push_back(in[size_t(y * w + x) * 3 + size_t(c)]);
             return out;
         }},
    };
    for (const Repack& r : cases) {
        SCOPED_TRACE(std::string(r.from) + " -> " + r.to + " " + r.extra);
        const Bytes in = randomBytes(r.inBytes, 2);
        EXPECT_EQ(convert(in, std::string("--pix-fmt ") + r.from + " --to " + r.to + " --size " + std::to_string(r.w) +
                                  "x" + std::to_string(r.h) + " " + r.extra),
                  r.model(in));
    }
}

Bytes pnm(const std::string& header, const Bytes& data) {
    Bytes b(header.begin(), header.end());
    b.insert(b.end(), data.begin(), data.end());
    return b;
}

TEST(Tpxconv, PpmAndPgmFilesReadAndWrite) {
    // 8-bit PPM, with a comment in the header, to raw rgb24 and back to PPM.
    const Bytes rgb = randomBytes(5 * 3 * 3, 3);
    EXPECT_EQ(convert(pnm("P6\n# made by a test\n5 3\n255\n", rgb), "", "a.ppm", "a.rgb24"), rgb);
    EXPECT_EQ(convert(rgb, "--pix-fmt rgb24 --size 5x3", "conv.in", "b.ppm"), pnm("P6\n5 3\n255\n", rgb));
    // 16-bit PGM samples are big-endian; gray16le swaps every pair of bytes;
    // a 16-bit PGM in gives a 16-bit PGM out.
    const Bytes gray = randomBytes(4 * 2 * 2, 4);
    Bytes le = gray;
    for (size_t i = 0; i < le.size(); i += 2) std::swap(le[i], le[i + 1]);
    EXPECT_EQ(convert(pnm("P5 4 2 65535\n", gray), "--to gray16le", "c.pgm"), le);
    EXPECT_EQ(convert(pnm("P5 4 2 65535\n", gray), "", "c.pgm", "d.pgm"), pnm("P5\n4 2\n65535\n", gray));
}

// Bands of one frame on several threads give the bytes of one thread, also
// for demosaicing, which reads rows around each band; VNG's own output has
// alpha, which --alpha sets.
TEST(Tpxconv, BandsOnThreadsGiveTheSameBytes) {
    const Bytes mosaic = randomBytes(64 * 48, 5);
    for (const char* method : {"bilinear", "vng", "ahd"}) {
        const std::string options = std::string("--pix-fmt bayer_grbg8 --size 64x48 --to rgb24 --roi 3,5,50,40 --demosaic ") + method;
        const Bytes one = convert(mosaic, options);
        EXPECT_EQ(one.size(), size_t(50 * 40 * 3)) << method;
        EXPECT_EQ(convert(mosaic, options + " --threads 3"), one) << method;
    }
    const Bytes bgra = convert(mosaic, "--pix-fmt bayer_grbg8 --size 64x48 --to bgra --demosaic vng --alpha 7");
    ASSERT_EQ(bgra.size(), size_t(64 * 48 * 4));
    for (size_t i = 3; i < bgra.size(); i += 4) ASSERT_EQ(bgra[i], 7) << i;
}

// 16 bits to 8: every dither keeps each sample within one code of its
// truncation; the types differ; error diffusion gives the same bytes on threads.
TEST(Tpxconv, SixteenBitsToEightWithEveryDither) {
    const int w = 64, h = 48;
    Bytes wide(size_t(w) * h * 2);
    for (int i = 0; i < w * h; ++i) wide[2 * i] = uint8_t(i * 37), wide[2 * i + 1] = uint8_t(i * 13 >> 4);
    const std::string options = "--pix-fmt gray16le --size 64x48 --to gray --dither ";
    std::vector<Bytes> outs;
    for (const char* d : {"none", "fs", "jjn", "stucki", "ordered"}) {
        outs.push_back(convert(wide, options + d));
        ASSERT_EQ(outs.back().size(), size_t(w) * h);
        for (int i = 0; i < w * h; ++i) {
            const int v = wide[2 * i] | wide[2 * i + 1] << 8, low = v * 255 / 65535;
            EXPECT_TRUE(outs.back()[size_t(i)] >= low - 1 && outs.back()[size_t(i)] <= low + 1) << d << " " << i;
        }
    }
    for (size_t k = 1; k < outs.size(); ++k) EXPECT_NE(outs[0], outs[k]) << k;
    EXPECT_EQ(convert(wide, options + "fs --threads 4"), outs[1]);
}

// v210 rows (six pixels in four words, rows of whole 128 bytes) give their
// 10-bit luma, here of a region from the second group of the second row;
// monob packs gray above the threshold as 1 bits, first pixel in the top bit,
// rows of whole bytes.
TEST(Tpxconv, V210InAndMonobOut) {
    const Bytes v210 = randomBytes(128 * 2, 10);  // 8x2: a group and two pixels a row, then padding
    const uint8_t* g = &v210[128 + 16];  // pixels 6 and 7: bits 10-19 of its word 0, bits 0-9 of word 1
    const int y6 = (g[1] >> 2 | g[2] << 6) & 1023, y7 = (g[4] | g[5] << 8) & 1023;
    EXPECT_EQ(convert(v210, "--pix-fmt v210 --size 8x2 --to gray16le --roi 6,1,2,1"),
              (Bytes{uint8_t(y6), uint8_t(y6 >> 8), uint8_t(y7), uint8_t(y7 >> 8)}));
    const Bytes gray = randomBytes(11 * 3, 11);
    Bytes expect(2 * 3);
    for (int i = 0; i < 11 * 3; ++i) expect[size_t(i / 11 * 2 + i % 11 / 8)] |= uint8_t((gray[size_t(i)] > 100) << (7 - i % 11 % 8));
    EXPECT_EQ(convert(gray, "--pix-fmt gray --size 11x3 --dither none --threshold 100", "conv.in", "g.monob"), expect);
}

// --gamma corrects the converted output in place, alpha untouched, on bands
// on threads too: the library's gamma applied to the output without it.
TEST(Tpxconv, GammaCorrectsTheOutput) {
    const Bytes in = randomBytes(40 * 32 * 2, 12);  // two 8-bit gray frames or one 16-bit
    auto run = [&](const std::string& options) { return convert(in, "--size 40x32 --threads 2 --pix-fmt " + options); };
    Bytes rgba = run("gray --to rgba --alpha 9"), rgb48 = run("gray16le --to rgb48le");
    ASSERT_EQ(rgba.size() + rgb48.size(), size_t(40 * 64 * 4 + 40 * 32 * 6));
    ASSERT_EQ(tpxiGammaFwd_8u_AC4IR(rgba.data(), 40 * 4, {40, 64}), tpxStatusOk);
    ASSERT_EQ(tpxiGammaInv_16u_C3IR(reinterpret_cast<Tpx16u*>(rgb48.data()), 40 * 6, {40, 32}), tpxStatusOk);
    EXPECT_EQ(run("gray --to rgba --alpha 9 --gamma fwd"), rgba);
    EXPECT_EQ(run("gray16le --to rgb48le --gamma inv"), rgb48);
}

TEST(Tpxconv, BadInputGivesOneLineAndNoOutput) {
    writeFile(path("48.raw"), randomBytes(48, 6));    // one 4x4 rgb24 frame
    writeFile(path("100.raw"), randomBytes(100, 7));  // two 4x4 rgb24 frames and 4 bytes
    writeFile(path("bad.ppm"), pnm("P6\n4 x\n255\n", Bytes(48)));
    writeFile(path("short.ppm"), pnm("P6\n4 4\n255\n", Bytes(40)));
    const std::string raw4 = " --pix-fmt rgb24 --size 4x4";
    const struct {
        const char* what;
        std::string input, output, options;
    } cases[] = {
        {"unknown format", path("48.raw"), path("out.raw"), " --pix-fmt rgb25 --size 4x4 --to gray"},
        {"unknown output format", path("48.raw"), path("out.raw"), raw4 + " --to yuv999"},
        {"output format not named", path("48.raw"), path("out.raw"), raw4},
        {"file shorter than a frame", path("48.raw"), path("out.gray"), " --pix-fmt rgb24 --size 5x4"},
        {"truncated last frame", path("100.raw"), path("out.gray"), raw4},
        {"missing input", path("missing.raw"), path("out.gray"), raw4},
        {"input is a folder", scratch(), path("out.gray"), raw4},
        {"output folder missing", path("48.raw"), path("no/such/out.gray"), raw4},
        {"output is a folder", path("48.raw"), scratch() + "/", raw4 + " --to gray"},
        {"size without format", path("48.raw"), path("out.gray"), " --size 4x4"},
        {"raw without size", path("48.raw"), path("out.gray"), " --pix-fmt rgb24"},
        {"odd size for 4:2:0", path("48.raw"), path("out.raw"), raw4 + " --to yuv420p --roi 0,0,3,4"},
        {"region outside", path("48.raw"), path("out.gray"), raw4 + " --roi 2,2,3,3"},
        {"no BT.709 route", path("48.raw"), path("out.raw"), raw4 + " --to yuv444p --matrix 709"},
        {"bad matrix", path("48.raw"), path("out.gray"), raw4 + " --matrix 2020"},
        {"bad thread count", path("48.raw"), path("out.gray"), raw4 + " --threads 0"},
        {"unknown option", path("48.raw"), path("out.gray"), raw4 + " --speed 3"},
        {"damaged PPM header", path("bad.ppm"), path("out.pgm"), ""},
        {"truncated PPM", path("short.ppm"), path("out.pgm"), ""},
        {"PPM holding gray", path("48.raw"), path("out.ppm"), raw4 + " --to gray"},
        {"demosaic below 5x5", path("48.raw"), path("out.ppm"), " --pix-fmt bayer_rggb8 --size 4x4"},
        {"monob with ordered dither", path("48.raw"), path("out.raw"), raw4 + " --to monob --dither ordered"},
        {"threshold out of range", path("48.raw"), path("out.monob"), raw4 + " --threshold 256"},
        {"gamma on gray", path("48.raw"), path("out.gray"), raw4 + " --gamma fwd"},
        {"v210 output", path("48.raw"), path("out.v210"), raw4},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const std::vector<std::string> before = scratchNames();
        const Result r = tpxconv(c.input + " " + c.output + c.options);
        EXPECT_NE(r.code, 0);
        EXPECT_EQ(r.err.rfind("tpxconv: ", 0), 0u) << r.err;
        EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
        EXPECT_EQ(r.err.back(), '\n');
        EXPECT_EQ(scratchNames(), before) << "an output or temporary file was left";
    }

    // A failing conversion leaves an existing output as it was.
    writeFile(path("keep.gray"), {1, 2, 3});
    EXPECT_NE(tpxconv(path("100.raw") + " " + path("keep.gray") + raw4).code, 0);
    EXPECT_EQ(readFile(path("keep.gray")), (Bytes{1, 2, 3}));
}

}  // namespace
