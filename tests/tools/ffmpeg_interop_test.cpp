// tpxconv against ffmpeg: frames of ffmpeg's test pattern in several raw
// formats, converted by both, compared sample by sample within a tolerance
// per pair.
//
// ffmpeg is asked for the arithmetic closest to the library's: exact rounding
// (accurate_rnd, bitexact), chroma at full resolution inside the scaler
// (full_chroma_int), studio range with the named matrix for YCbCr and full
// range for gray. Chroma subsampling by the box filter (area) is the library's
// sum over each chroma block; chroma upsampling by nearest neighbour is its
// replication. What remains is fixed-point rounding, at most one code value:
// the library's 16-bit products round each term, and its subsampled decoders
// truncate to 3 fractional bits (white decodes to 254 in B and R), where
// ffmpeg rounds once. Repacking is exact: the library's channel selection
// moves samples unchanged. Skipped, with exit code 77, without ffmpeg.
#include "tool_run.hpp"

#include <set>

namespace {

using namespace tooltest;

constexpr int kW = 320, kH = 240, kFrames = 3;
const std::string kSize = std::to_string(kW) + "x" + std::to_string(kH);
const std::string kExact = "accurate_rnd+full_chroma_int+bitexact";

// How ffmpeg is asked to convert: moving samples, encoding to or decoding
// from studio-range YCbCr, or to and from full-range gray.
enum class Kind { Copy, Encode, Decode, ToGray, FromGray };

std::string scale(Kind k, const std::string& matrix) {
    switch (k) {
        case Kind::Encode: return "out_color_matrix=" + matrix + ":out_range=tv:flags=area+" + kExact;
        case Kind::Decode: return "in_color_matrix=" + matrix + ":in_range=tv:flags=neighbor+" + kExact;
        case Kind::ToGray: return "out_range=pc:flags=" + kExact;
        case Kind::FromGray: return "in_range=pc:flags=" + kExact;
        default: return "flags=" + kExact;
    }
}

struct Pair {
    const char* from;
    const char* to;
    const char* matrix;
    Kind kind;
    int tolerance;
};

const Pair kPairs[] = {
    {"yuv420p", "nv12", "bt601", Kind::Copy, 0},     {"yuv420p", "nv21", "bt601", Kind::Copy, 0},
    {"nv12", "yuv420p", "bt601", Kind::Copy, 0},     {"yuv422p", "yuyv422", "bt601", Kind::Copy, 0},
    {"yuyv422", "uyvy422", "bt601", Kind::Copy, 0},  {"uyvy422", "yuv422p", "bt601", Kind::Copy, 0},
    {"nv21", "yuv420p", "bt601", Kind::Copy, 0},     {"nv12", "nv21", "bt601", Kind::Copy, 0},
    {"yuv422p", "uyvy422", "bt601", Kind::Copy, 0},  {"uyvy422", "yuyv422", "bt601", Kind::Copy, 0},
    {"yuyv422", "yuv422p", "bt601", Kind::Copy, 0},
    {"rgb24", "bgr24", "bt601", Kind::Copy, 0},      {"rgb24", "bgra", "bt601", Kind::Copy, 0},
    {"bgra", "rgb24", "bt601", Kind::Copy, 0},       {"gray", "rgb24", "bt601", Kind::FromGray, 0},
    {"rgb24", "yuv444p", "bt601", Kind::Encode, 1},  {"rgb24", "yuv422p", "bt601", Kind::Encode, 1},
    {"rgb24", "yuv420p", "bt601", Kind::Encode, 1},  {"rgb24", "yuv411p", "bt601", Kind::Encode, 1},
    {"rgb24", "nv12", "bt601", Kind::Encode, 1},     {"rgb24", "nv21", "bt601", Kind::Encode, 1},
    {"rgb24", "yuyv422", "bt601", Kind::Encode, 1},  {"rgb24", "uyvy422", "bt601", Kind::Encode, 1},
    {"bgr24", "yuv420p", "bt709", Kind::Encode, 1},  {"bgr24", "nv12", "bt709", Kind::Encode, 1},
    {"rgb24", "gray", "bt601", Kind::ToGray, 1},     {"yuv444p", "rgb24", "bt601", Kind::Decode, 1},
    {"yuv422p", "rgb24", "bt601", Kind::Decode, 1},  {"yuv420p", "rgb24", "bt601", Kind::Decode, 1},
    {"yuv411p", "rgb24", "bt601", Kind::Decode, 1},  {"nv12", "rgb24", "bt601", Kind::Decode, 1},
    {"nv21", "rgb24", "bt601", Kind::Decode, 1},     {"yuyv422", "rgb24", "bt601", Kind::Decode, 1},
    {"uyvy422", "rgb24", "bt601", Kind::Decode, 1},  {"yuv420p", "bgr24", "bt709", Kind::Decode, 1},
    {"yuv444p", "bgr24", "bt709", Kind::Decode, 1},
};

bool isYuv(const std::string& f) { return f.rfind("yuv", 0) == 0 || f.rfind("nv", 0) == 0 || f.rfind("uyvy", 0) == 0; }

std::string sourceFile(const Pair& p) { return path(std::string("src.") + p.from + "." + p.matrix); }
std::string theirFile(const Pair& p) { return sourceFile(p) + "." + p.to; }

Result ffmpeg(const std::string& args) { return shell("ffmpeg -nostdin -loglevel error -y " + args); }

// One output of an ffmpeg run: its scale filter, format and file.
std::string output(const std::string& scaleArgs, const std::string& fmt, const std::string& file) {
    return " -vf scale=" + scaleArgs + " -pix_fmt " + fmt + " -f rawvideo " + file;
}

std::string rawInput(const std::string& fmt, const std::string& file) {
    return "-f rawvideo -pix_fmt " + fmt + " -s " + kSize + " -i " + file;
}

class FfmpegInterop : public ::testing::Test {
protected:
    // ffmpeg runs once for the test pattern, once for every source format,
    // and once per source for all of that source's pairs.
    static void SetUpTestSuite() {
        if (shell("ffmpeg -version").code != 0) {
            std::printf("ffmpeg is not on PATH: the interoperability test is skipped\n");
            std::fflush(stdout);
            removeScratch();
            std::exit(77);
        }
        const std::string rgb = path("pattern.rgb24");
        ASSERT_EQ(ffmpeg("-f lavfi -i testsrc2=size=" + kSize + ":rate=25 -frames:v " + std::to_string(kFrames) +
                         " -pix_fmt rgb24 -f rawvideo " + rgb).code, 0);
        std::set<std::string> sources;
        std::string makeSources = rawInput("rgb24", rgb);
        for (const Pair& p : kPairs)
            if (sources.insert(sourceFile(p)).second) {
                const Kind k = isYuv(p.from) ? Kind::Encode : std::string(p.from) == "gray" ? Kind::ToGray : Kind::Copy;
                makeSources += output(scale(k, p.matrix), p.from, sourceFile(p));
            }
        ASSERT_EQ(ffmpeg(makeSources).code, 0);
        for (const std::string& src : sources) {
            std::string convert;
            for (const Pair& p : kPairs)
                if (sourceFile(p) == src) {
                    if (convert.empty()) convert = rawInput(p.from, src);
                    convert += output(scale(p.kind, p.matrix), p.to, theirFile(p));
                }
            ASSERT_EQ(ffmpeg(convert).code, 0);
        }
    }

    // Converts the pair's source with tpxconv and compares with ffmpeg's result.
    static void compare(const Pair& p) {
        SCOPED_TRACE(std::string(p.from) + " -> " + p.to + " " + p.matrix);
        const std::string ours = path("tpxconv.out");
        const Result r = tpxconv(sourceFile(p) + " " + ours + " --pix-fmt " + p.from + " --size " + kSize + " --to " +
                                 p.to + " --matrix " + (std::string(p.matrix) == "bt709" ? "709" : "601"));
        ASSERT_EQ(r.code, 0) << r.err;
        report(p, readFile(theirFile(p)), readFile(ours));
    }

    // Compares ffmpeg's bytes with ours and prints the largest difference seen.
    static void report(const Pair& p, const Bytes& a, const Bytes& b) {
        ASSERT_EQ(a.size(), b.size());
        ASSERT_FALSE(a.empty());
        int worst = 0;
        size_t differ = 0;
        for (size_t i = 0; i < a.size(); ++i) {
            const int d = std::abs(int(a[i]) - int(b[i]));
            worst = std::max(worst, d);
            differ += d != 0;
        }
        std::printf("[  ffmpeg  ] %-8s -> %-8s %s: largest difference %d (tolerance %d), %.2f%% of samples differ\n",
                    p.from, p.to, p.matrix, worst, p.tolerance, 100.0 * double(differ) / double(a.size()));
        EXPECT_LE(worst, p.tolerance);
    }

    static void compareAll(std::initializer_list<Kind> kinds) {
        for (const Pair& p : kPairs)
            if (std::find(kinds.begin(), kinds.end(), p.kind) != kinds.end()) compare(p);
    }
};

TEST_F(FfmpegInterop, RepackingIsExact) { compareAll({Kind::Copy, Kind::FromGray}); }

TEST_F(FfmpegInterop, EncodersWithinOneCodeValue) { compareAll({Kind::Encode, Kind::ToGray}); }

TEST_F(FfmpegInterop, DecodersWithinOneCodeValue) { compareAll({Kind::Decode}); }

// v210 as ffmpeg's encoder writes it (rows of whole 128 bytes) decodes to the
// luma plane of ffmpeg's own decoder; monob as tpxconv writes it reads in
// ffmpeg as the gray source thresholded at 128.
TEST_F(FfmpegInterop, PackedFormatsAreExact) {
    const std::string v210 = path("src.v210"), size = " --size " + kSize;
    ASSERT_EQ(ffmpeg(rawInput("rgb24", path("pattern.rgb24")) + " -pix_fmt yuv422p10le -c:v v210 -f rawvideo " + v210).code, 0);
    ASSERT_EQ(ffmpeg("-f v210 -s " + kSize + " -i " + v210 + " -vf extractplanes=y -f rawvideo " + path("their.y")).code, 0);
    ASSERT_EQ(tpxconv(v210 + " " + path("our.gray16le") + " --pix-fmt v210" + size).code, 0);
    report({"v210", "gray16le", "-", Kind::Copy, 0}, readFile(path("their.y")), readFile(path("our.gray16le")));

    const Pair gray = {"gray", "monob", "-", Kind::Copy, 0};
    ASSERT_EQ(tpxconv(path("src.gray.bt601") + " " + path("our.monob") + " --pix-fmt gray --dither none" + size).code, 0);
    ASSERT_EQ(ffmpeg(rawInput("monob", path("our.monob")) + " -pix_fmt gray -f rawvideo " + path("their.gray")).code, 0);
    Bytes expect = readFile(path("src.gray.bt601"));
    for (uint8_t& v : expect) v = v > 128 ? 255 : 0;
    report(gray, expect, readFile(path("their.gray")));
}

}  // namespace
