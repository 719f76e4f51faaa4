#include "charts/marks/mark_painting.h"

namespace charts {

services::DeviceBox rulePixels(double pixelRatio, const GridRule& rule) {
    return rule.vertical ? services::verticalRulePixels(pixelRatio, rule.x, rule.y, rule.length)
                         : services::horizontalRulePixels(pixelRatio, rule.x, rule.y, rule.length);
}

services::DeviceBox meanPixels(double pixelRatio, const ChartFrame& frame, const MeanMark& mark) {
    return services::horizontalRulePixels(pixelRatio, frame.left, mark.y, frame.width - 2);
}

services::Colour ruleColour(const GridRule& rule) {
    return rule.border ? services::black : gridColour;
}

void paintGrid(services::Surface& surface, std::span<const GridRule> rules) {
    for (const GridRule& rule : rules) {
        const services::Colour colour = ruleColour(rule);
        if (rule.vertical) {
            services::drawVerticalRule(surface, rule.x, rule.y, rule.length, colour);
        } else {
            services::drawHorizontalRule(surface, rule.x, rule.y, rule.length, colour);
        }
    }
}

void paintBars(services::Surface& surface, const BarMarks& marks, services::Colour colour) {
    for (const BarMark& bar : marks.bars) {
        services::blendBox(surface, bar.x, bar.y, marks.width, bar.height, colour);
    }
}

void paintLine(services::Surface& surface, std::span<const LineMark> marks,
               services::Colour colour) {
    for (const LineMark& mark : marks) {
        services::drawLine(surface, mark.x1, mark.y1, mark.x2, mark.y2, colour);
        services::drawLine(surface, mark.shiftedX1, mark.y1, mark.shiftedX2, mark.y2, colour);
    }
}

void paintCircles(services::Surface& surface, const PointMarks& marks, services::Colour colour) {
    for (const PointMark& point : marks.points) {
        services::fillCircle(surface, point.x, point.y, marks.size, colour);
    }
}

void paintSquares(services::Surface& surface, const PointMarks& marks, services::Colour colour) {
    for (const PointMark& point : marks.points) {
        services::fillBox(surface, point.x, point.y, marks.size, marks.size, colour);
    }
}

void paintMean(services::Surface& surface, const ChartFrame& frame, const MeanMark& mark,
               services::Colour colour) {
    services::drawHorizontalRule(surface, frame.left, mark.y, frame.width - 2, colour);
}

void paintTrend(services::Surface& surface, const TrendMark& mark) {
    services::drawLine(surface, mark.x1, mark.y1, mark.x2, mark.y2, trendColour);
}

void paintFrame(services::Surface& surface, const ChartFrame& frame) {
    services::drawFrame(surface, frame.left - 1, frame.top - 2, frame.width + 2, frame.height + 3,
                        services::black);
}

}  // namespace charts
