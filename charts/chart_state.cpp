#include "charts/chart_state.h"

#include <cstddef>
#include <iterator>

namespace charts {
namespace {

using services::rgb;

constexpr services::Colour builtIn[] = {
    rgb(0, 0, 255), rgb(32, 32, 170), rgb(0, 190, 0), rgb(64, 64, 64), rgb(128, 0, 0),
    rgb(128, 128, 0), rgb(200, 64, 32), rgb(0, 200, 200), rgb(0, 128, 128), rgb(204, 204, 0),
    rgb(0, 0, 255), rgb(32, 32, 170), rgb(0, 190, 0), rgb(64, 64, 64), rgb(128, 0, 0),
    rgb(128, 128, 0), rgb(200, 64, 32), rgb(0, 200, 200), rgb(0, 128, 128), rgb(204, 204, 0),
    // The training chart has two values more than the overview. These two odd colours are the ones
    // its users have always seen (the second has a byte beyond blue, which no channel shows); saved
    // settings hold them, so they stay as they are.
    0x00F16EEB, 0x0153542F};

static_assert(std::size(builtIn) == trainingValueCount);

}  // namespace

ChartState state;

ColourTable builtInColours() {
    ColourTable colours = {};
    for (std::size_t i = 0; i < overviewValueCount; ++i)
        colours[i] = builtIn[i];
    for (std::size_t i = 0; i < trainingValueCount; ++i)
        colours[firstTrainingValue + i] = builtIn[i];
    return colours;
}

}  // namespace charts
