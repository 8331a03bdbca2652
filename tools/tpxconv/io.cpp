#include "io.hpp"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace conv {
namespace {

std::string quoted(const std::string& path) { return "'" + path + "'"; }
std::string reason() { return std::strerror(errno); }

// 16-bit PPM/PGM samples are big-endian, the raw 16-bit formats and v210's
// 32-bit words little-endian; in memory they are in the processor's order.
constexpr bool kHostBigEndian = __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__;
bool needsSwap(const Format& f, bool fileBigEndian) { return f.bytes > 1 && fileBigEndian != kHostBigEndian; }

// Reverses the bytes of every element of `bytes` bytes.
void swapBytes(uint8_t* p, size_t n, int bytes) {
    for (size_t i = 0; i + size_t(bytes) <= n; i += size_t(bytes)) std::reverse(p + i, p + i + bytes);
}

// The next header number of a PPM/PGM file, skipping blanks and comments.
long pnmNumber(std::FILE* f, const std::string& path) {
    int c = std::fgetc(f);
    while (c == '#' || std::isspace(c)) {
        if (c == '#')
            while (c != '\n' && c != EOF) c = std::fgetc(f);
        c = std::fgetc(f);
    }
    long v = 0;
    if (!std::isdigit(c)) throw Failure(quoted(path) + " has a damaged PPM/PGM header");
    for (; std::isdigit(c); c = std::fgetc(f)) {
        v = v * 10 + (c - '0');
        if (v > 1 << 24) throw Failure(quoted(path) + " has a damaged PPM/PGM header");
    }
    return v;  // the one blank after the number is consumed
}

}  // namespace

std::string extensionOf(const std::string& path) {
    const size_t slash = path.find_last_of('/'), dot = path.find_last_of('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return "";
    std::string ext = path.substr(dot + 1);
    std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return char(std::tolower(c)); });
    return ext;
}

bool isPnmName(const std::string& path) {
    const std::string e = extensionOf(path);
    return e == "ppm" || e == "pgm" || e == "pnm";
}

Input::Input(const std::string& path, const Format* fmt, int w, int h) : path_(path), fmt_(fmt), w_(w), h_(h) {
    file_ = std::fopen(path.c_str(), "rb");
    struct stat st;
    if (!file_ || fstat(fileno(file_), &st) != 0) throw Failure("cannot read " + quoted(path) + ": " + reason());
    if (!S_ISREG(st.st_mode)) throw Failure("cannot read " + quoted(path) + ": not a regular file");
    long long length = st.st_size;
    if (!fmt_) {
        char magic[2] = {0, 0};
        if (std::fread(magic, 1, 2, file_) != 2 || magic[0] != 'P' || (magic[1] != '5' && magic[1] != '6'))
            throw Failure(quoted(path) + " is not a binary PPM/PGM image; raw input needs --size WxH and --pix-fmt");
        const long wl = pnmNumber(file_, path), hl = pnmNumber(file_, path), maxval = pnmNumber(file_, path);
        if (wl < 1 || hl < 1 || wl > 1 << 20 || hl > 1 << 20 || maxval < 1 || maxval > 65535)
            throw Failure(quoted(path) + " has a damaged PPM/PGM header");
        w_ = int(wl), h_ = int(hl);
        pnm_ = true;
        const bool deep = maxval > 255;
        fmt_ = &formatNamed(magic[1] == '5' ? (deep ? "gray16le" : "gray") : (deep ? "rgb48le" : "rgb24"));
        length -= std::ftell(file_);
        if (length < (long long)fmt_->frameBytes(w_, h_))
            throw Failure(quoted(path) + " is truncated: the image needs " + std::to_string(fmt_->frameBytes(w_, h_)) +
                          " bytes, the file holds " + std::to_string(length));
        frames_ = 1;
        return;
    }
    const long long frame = (long long)fmt_->frameBytes(w_, h_);
    const std::string what = std::to_string(w_) + "x" + std::to_string(h_) + " " + fmt_->name + " frame";
    if (length < frame)
        throw Failure(quoted(path) + " holds " + std::to_string(length) + " bytes, less than one " + what + " (" +
                      std::to_string(frame) + " bytes)");
    if (length % frame != 0)
        throw Failure(quoted(path) + " holds " + std::to_string(length) + " bytes, not a whole number of " + what +
                      "s of " + std::to_string(frame) + " bytes: the last frame is truncated");
    frames_ = length / frame;
}

Input::~Input() {
    if (file_) std::fclose(file_);
}

Frame Input::read() {
    Frame f(*fmt_, w_, h_);
    if (std::fread(f.data.data(), 1, f.bytes(), file_) != f.bytes())
        throw Failure("cannot read " + quoted(path_) + ": " + (std::ferror(file_) ? reason() : "file is shorter than it was"));
    if (needsSwap(*fmt_, pnm_)) swapBytes(f.data.data(), f.bytes(), fmt_->bytes);
    return f;
}

Output::Output(const std::string& path, const Format& fmt, bool pnm) : path_(path), fmt_(fmt), pnm_(pnm) {
    const size_t slash = path.find_last_of('/');
    const std::string dir = slash == std::string::npos ? "." : path.substr(0, slash + (slash == 0));
    std::string pattern = dir + "/.tpxconv-XXXXXX";
    const int fd = mkstemp(pattern.data());
    if (fd < 0) throw Failure("cannot write " + quoted(path) + ": " + reason());
    temp_ = pattern;
    file_ = fdopen(fd, "wb");
    if (!file_) {
        ::close(fd);
        throw Failure("cannot write " + quoted(path) + ": " + reason());
    }
}

Output::~Output() {
    if (file_) std::fclose(file_);
    if (!temp_.empty()) ::unlink(temp_.c_str());
}

void Output::write(const Frame& frame) {
    bool ok = true;
    if (pnm_) {
        const bool gray = fmt_.channels.size() == 1;
        ok = std::fprintf(file_, "P%c\n%d %d\n%d\n", gray ? '5' : '6', frame.view.w, frame.view.h,
                          fmt_.bytes == 1 ? 255 : 65535) > 0;
    }
    if (needsSwap(fmt_, pnm_)) {
        std::vector<uint8_t> swapped(frame.data.begin(), frame.data.begin() + std::ptrdiff_t(frame.bytes()));
        swapBytes(swapped.data(), swapped.size(), fmt_.bytes);
        ok = ok && std::fwrite(swapped.data(), 1, swapped.size(), file_) == swapped.size();
    } else {
        ok = ok && std::fwrite(frame.data.data(), 1, frame.bytes(), file_) == frame.bytes();
    }
    if (!ok) throw Failure("cannot write " + quoted(path_) + ": " + reason());
}

void Output::commit() {
    const mode_t mask = umask(0);
    umask(mask);
    const bool ok = std::fflush(file_) == 0 && fchmod(fileno(file_), 0666 & ~mask) == 0;
    const bool closed = std::fclose(file_) == 0;
    file_ = nullptr;
    if (!ok || !closed || std::rename(temp_.c_str(), path_.c_str()) != 0)
        throw Failure("cannot write " + quoted(path_) + ": " + reason());
    temp_.clear();
}

}  // namespace conv
