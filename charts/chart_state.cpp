#include "charts/chart_state.h"

#include <cstddef>
#include <iterator>

namespace charts {
namespace {

using services::rgb;

constexpr services::Colour overviewColours[] = {
    rgb(0, 0, 255),   rgb(32, 32, 170), rgb(0, 190, 0),   rgb(64, 64, 64),  rgb(128, 0, 0),
    rgb(128, 128, 0), rgb(200, 64, 32), rgb(0, 200, 200), rgb(0, 128, 128), rgb(204, 204, 0),
    rgb(0, 0, 255),   rgb(32, 32, 170), rgb(0, 190, 0),   rgb(64, 64, 64),  rgb(128, 0, 0),
    rgb(128, 128, 0), rgb(200, 64, 32), rgb(0, 200, 200), rgb(0, 128, 128), rgb(204, 204, 0)};
static_assert(std::size(overviewColours) == overviewValueCount);

// The first values of a training have the colours of the overview's, the others their own. These
// two odd ones are those that users have always seen (the second has a byte beyond blue, which no
// channel shows); saved settings hold them, so they stay as they are.
constexpr std::size_t sharedColours = 20;
constexpr services::Colour ownTrainingColours[] = {0x00F16EEB, 0x0153542F};
static_assert(sharedColours <= std::size(overviewColours));
static_assert(sharedColours + std::size(ownTrainingColours) == trainingValueCount);

}  // namespace

ChartState state;

ColourTable builtInColours() {
    ColourTable colours = {};
    for (std::size_t i = 0; i < overviewValueCount; ++i)
        colours[i] = overviewColours[i];
    for (std::size_t i = 0; i < trainingValueCount; ++i) {
        colours[firstTrainingValue + i] =
            i < sharedColours ? overviewColours[i] : ownTrainingColours[i - sharedColours];
    }
    return colours;
}

}  // namespace charts
