// The demo: a colourful test image, every export of the library's table run
// on it (function, status, Mpix/s), and every round trip of the table with
// its largest error against the picture.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace demo {

// The test image: RGB, 8 bits per channel, tightly packed, with ramps, hues
// and sharp edges.
struct Picture {
    int width = 0, height = 0;
    std::vector<uint8_t> rgb;  // width * height * 3
    uint8_t at(int x, int y, int c) const { return rgb[(size_t(y) * size_t(width) + size_t(x)) * 3 + size_t(c)]; }
};

// The test image of the demo.
Picture makePicture(int w, int h);
// Runs every export and round trip on `pic` and prints one line for each.
void printTable(const Picture& pic);

}  // namespace demo
