#include "discovery/RateMeter.h"

#include <cmath>

namespace discovery {

void RateMeter::breakOff() {
    if (isOpen) {
        length += lastX * period;
        isOpen = false;
    }
}

bool RateMeter::add(std::uint64_t position, std::int64_t time) {
    const double x = isOpen ? static_cast<double>(position - firstPosition) : 0;
    const double y = isOpen ? static_cast<double>(time - firstTime) - x * period : 0;
    const bool leapt = isOpen && std::abs(y - lastY) > greatestStep;
    if (leapt) {
        breakOff();
    }
    if (!isOpen) {
        isOpen = true;
        firstPosition = position;
        firstTime = time;
        lastX = lastY = meanX = meanY = 0;
        points = 1;
        return !leapt;
    }
    lastX = x;
    lastY = y;
    points += 1;
    const double fromMean = x - meanX;
    meanX += fromMean / points;
    meanY += (y - meanY) / points;
    squares += fromMean * (x - meanX);
    products += fromMean * (y - meanY);
    return true;
}

std::optional<double> RateMeter::ppm(double least) const {
    if (squares <= 0 || length + (isOpen ? lastX * period : 0) < least) {
        return std::nullopt;
    }
    const double measured = period + products / squares;
    return measured > 0 ? std::optional((period / measured - 1) * 1e6) : std::nullopt;
}

} // namespace discovery
