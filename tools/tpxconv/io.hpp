// Reading raw frames and PPM/PGM images, and writing outputs under a
// temporary name that becomes the output's name only when complete.
#pragma once

#include "formats.hpp"

#include <cstdio>
#include <string>

namespace conv {

class Input {
public:
    // A raw file of `fmt` frames of w x h, or (fmt null) a PPM/PGM image.
    Input(const std::string& path, const Format* fmt, int w, int h);
    ~Input();
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;

    const Format& format() const { return *fmt_; }
    int width() const { return w_; }
    int height() const { return h_; }
    long long frames() const { return frames_; }
    // The next frame into a new buffer.
    Frame read();

private:
    std::string path_;
    std::FILE* file_ = nullptr;
    const Format* fmt_ = nullptr;
    int w_ = 0, h_ = 0;
    long long frames_ = 0;
    bool pnm_ = false;
};

class Output {
public:
    // Frames of `fmt` go to `path`, as PPM/PGM images when `pnm`.
    Output(const std::string& path, const Format& fmt, bool pnm);
    ~Output();  // removes the temporary file unless commit() succeeded
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void write(const Frame& frame);
    void commit();

private:
    std::string path_, temp_;
    std::FILE* file_ = nullptr;
    const Format& fmt_;
    bool pnm_;
};

// True for a PPM/PGM file name (.ppm, .pgm, .pnm, any case).
bool isPnmName(const std::string& path);
std::string extensionOf(const std::string& path);

}  // namespace conv
