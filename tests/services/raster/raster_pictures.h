// Pictures of one mark each, drawn in the source, for the raster and for its reference painter.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "tests/services/raster/raster_marks.h"

namespace raster_tests {

// Expected rows are those of the whole surface, after a first line break.
struct Picture {
    const char* name;
    int width, height;
    double pixelRatio;
    Mark mark;
    const char* expected;
};

inline void PrintTo(const Picture& picture, std::ostream* stream) {
    *stream << picture.name << ": " << picture.mark;
}

class RasterPicture : public testing::TestWithParam<Picture> {};

inline std::string nameOf(const testing::TestParamInfo<Picture>& info) {
    return info.param.name;
}

}  // namespace raster_tests
