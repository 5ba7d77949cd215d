#pragma once

#include <cstdint>
#include <optional>

namespace discovery {

/**
 * How far a rate is off its nominal value, by a straight line through all points of time and sample. Where the count of
 * samples or the time breaks off, a new stretch begins: all have the same slope, and each its own start.
 */
class RateMeter {
public:
    /// @param period nominal, ns a sample @param greatestStep of the time off its nominal course, ns
    RateMeter(double period, double greatestStep) : period(period), greatestStep(greatestStep) {}

    /// Begins a new stretch with the next point.
    void breakOff();
    /// @param position in samples, from any start @param time ns, from any start; both without a bound
    /// @return false if the time has leapt, and a new stretch begins with this point
    bool add(std::uint64_t position, std::int64_t time);

    /// Parts per million, positive for too fast; none if all stretches together are shorter than that many ns.
    std::optional<double> ppm(double least) const;

private:
    const double period;
    const double greatestStep;
    bool isOpen = false;
    std::uint64_t firstPosition = 0;
    std::int64_t firstTime = 0;
    double lastX = 0; ///< samples, from the stretch's first point
    double lastY = 0; ///< ns off the nominal course
    double points = 0;
    double meanX = 0;
    double meanY = 0;
    double squares = 0;  ///< of all stretches: of x around its means
    double products = 0; ///< of x and y
    double length = 0;   ///< ns, of the stretches before
};

} // namespace discovery
