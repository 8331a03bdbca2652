// The demo of tpxconv: the table of every conversion, then the test image
// through every format, written into a folder.
#pragma once

#include <string>

namespace conv {

// Prints the demo and writes its images into `dir`; returns the exit status.
int runDemo(const std::string& dir);

}  // namespace conv
