// tpxconv against ffmpeg: frames made by ffmpeg in several raw formats,
// converted by both, compared sample by sample within a tolerance per pair.
//
// ffmpeg is asked for the arithmetic closest to the library's: exact rounding
// (accurate_rnd, bitexact), chroma at full resolution inside the scaler
// (full_chroma_int), studio range with the named matrix for YCbCr and full
// range for gray. Chroma subsampling by the box filter (area) is the library's
// sum over each chroma block; chroma upsampling by nearest neighbour is its
// replication. What remains is fixed-point rounding: one code value.
// Repacking is exact (the library's channel selection moves samples
// unchanged). Skipped, with exit code 77, where ffmpeg is not installed.
#include "tool_run.hpp"

#include <map>

namespace {

using namespace tooltest;

constexpr int kW = 320, kH = 240, kFrames = 3;
const std::string kSize = std::to_string(kW) + "x" + std::to_string(kH);
const std::string kExact = "accurate_rnd+full_chroma_int+bitexact";

std::string encode(const char* matrix) {
    return std::string("out_color_matrix=") + matrix + ":out_range=tv:flags=area+" + kExact;
}
std::string decode(const char* matrix) {
    return std::string("in_color_matrix=") + matrix + ":in_range=tv:flags=neighbor+" + kExact;
}
const std::string kCopy = "flags=" + kExact;
const std::string kToGray = "out_range=pc:flags=" + kExact;
const std::string kFromGray = "in_range=pc:flags=" + kExact;

bool isYuv(const std::string& f) { return f.rfind("yuv", 0) == 0 || f.rfind("nv", 0) == 0 || f.rfind("uyvy", 0) == 0; }

class FfmpegInterop : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        if (shell("ffmpeg -version").code != 0) {
            std::printf("ffmpeg is not on PATH: the interoperability test is skipped\n");
            std::fflush(stdout);
            removeScratch();
            std::exit(77);
        }
    }

    static Result ffmpeg(const std::string& args) {
        return shell("ffmpeg -nostdin -loglevel error -y " + args);
    }

    // kFrames frames of ffmpeg's test pattern in `fmt` (YCbCr made with `matrix`).
    static std::string source(const std::string& fmt, const char* matrix) {
        static std::map<std::string, std::string> made;
        const std::string key = fmt + "." + matrix;
        if (made.count(key)) return made[key];
        const std::string rgb = path("src.rgb24"), file = path("src." + key);
        if (!exists(rgb)) {
            EXPECT_EQ(ffmpeg("-f lavfi -i testsrc2=size=" + kSize + ":rate=25 -frames:v " + std::to_string(kFrames) +
                             " -pix_fmt rgb24 -f rawvideo " + rgb).code, 0);
        }
        const std::string scale = isYuv(fmt) ? encode(matrix) : fmt == "gray" ? kToGray : kCopy;
        EXPECT_EQ(convertWithFfmpeg(rgb, "rgb24", file, fmt, scale).code, 0);
        return made[key] = file;
    }

    static Result convertWithFfmpeg(const std::string& in, const std::string& from, const std::string& out,
                                    const std::string& to, const std::string& scale) {
        return ffmpeg("-f rawvideo -pix_fmt " + from + " -s " + kSize + " -i " + in + " -vf scale=" + scale +
                      " -pix_fmt " + to + " -f rawvideo " + out);
    }

    // Converts with both and compares; prints the largest difference seen.
    static void compare(const std::string& from, const std::string& to, const char* matrix, const std::string& scale,
                        int tolerance) {
        SCOPED_TRACE(from + " -> " + to + " " + matrix);
        const std::string in = source(from, matrix), theirs = path("ffmpeg.out"), ours = path("tpxconv.out");
        ASSERT_EQ(convertWithFfmpeg(in, from, theirs, to, scale).code, 0);
        const Result r = tpxconv(in + " " + ours + " --pix-fmt " + from + " --size " + kSize + " --to " + to +
                                 " --matrix " + (std::string(matrix) == "bt709" ? "709" : "601"));
        ASSERT_EQ(r.code, 0) << r.err;
        const Bytes a = readFile(theirs), b = readFile(ours);
        ASSERT_EQ(a.size(), b.size());
        int worst = 0;
        size_t differ = 0;
        for (size_t i = 0; i < a.size(); ++i) {
            const int d = std::abs(int(a[i]) - int(b[i]));
            worst = std::max(worst, d);
            differ += d != 0;
        }
        std::printf("[  ffmpeg  ] %-8s -> %-8s %s: largest difference %d (tolerance %d), %.2f%% of samples differ\n",
                    from.c_str(), to.c_str(), matrix, worst, tolerance, 100.0 * double(differ) / double(a.size()));
        EXPECT_LE(worst, tolerance);
    }
};

TEST_F(FfmpegInterop, RepackingIsExact) {
    const char* pairs[][2] = {{"yuv420p", "nv12"}, {"yuv420p", "nv21"}, {"nv12", "yuv420p"},  {"yuv422p", "yuyv422"},
                              {"yuyv422", "uyvy422"}, {"uyvy422", "yuv422p"}, {"rgb24", "bgr24"}, {"rgb24", "bgra"},
                              {"bgra", "rgb24"}};
    for (const auto& p : pairs) compare(p[0], p[1], "bt601", kCopy, 0);
    compare("gray", "rgb24", "bt601", kFromGray, 0);
}

TEST_F(FfmpegInterop, EncodersWithinOneCodeValue) {
    for (const char* to : {"yuv444p", "yuv422p", "yuv420p", "yuv411p", "nv12", "nv21", "yuyv422", "uyvy422"})
        compare("rgb24", to, "bt601", encode("bt601"), 1);
    compare("bgr24", "yuv420p", "bt709", encode("bt709"), 1);
    compare("bgr24", "nv12", "bt709", encode("bt709"), 1);
    compare("rgb24", "gray", "bt601", kToGray, 1);
}

TEST_F(FfmpegInterop, DecodersWithinOneCodeValue) {
    for (const char* from : {"yuv444p", "yuv422p", "yuv420p", "yuv411p", "nv12", "nv21", "yuyv422", "uyvy422"})
        compare(from, "rgb24", "bt601", decode("bt601"), 1);
    compare("yuv420p", "bgr24", "bt709", decode("bt709"), 1);
    compare("yuv444p", "bgr24", "bt709", decode("bt709"), 1);
}

}  // namespace
