#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include <QObject>

namespace sonvex {
class BufferConfiguration;
} // namespace sonvex

namespace process {
class SpectrumConfig;
} // namespace process

namespace process::averaging {

/**
 * The mean of the latest vectors of doubles, element by element. The window has a size in cycles and a length in
 * milliseconds: the one that was set last holds, and when the clock changes it is the length that stays.
 *
 * The window starts out full of zeros, so that a result rises over as many cycles as the window has. A mean is moved
 * along for 100 cycles, then computed anew, so that rounding cannot add up.
 *
 * Threads: calculate() and isActive() on the processor's thread, the slots on the one that made the averager or sets
 * the configuration. The mutex guards all state; nothing under it emits a signal, and its lines go out behind it. It
 * may be destroyed on another thread once its own one has retired it.
 */
class MovingAverage : public QObject {
    Q_OBJECT

public:
    /// @param config, @param bufferConfiguration not owned; have to stay until it is retired
    MovingAverage(std::string name, SpectrumConfig *config, sonvex::BufferConfiguration *bufferConfiguration,
                  QObject *parent);

    bool isActive() const { return active; }

    /// The mean with @p input as the newest vector. The input itself while inactive or with a window of one cycle.
    std::vector<double> calculate(std::vector<double> input);

    /// No notice reaches it any more, whether or not the configuration is still there.
    void retire();

private Q_SLOTS:
    void movingAverageActivityChanged(std::string changedParameter);
    void windowSizeChanged(std::string changedParameter);
    void windowLengthChanged(std::string changedParameter);
    void clockConfigurationChanged(std::string changedParameter);
    void clockRefreshChanged(std::string changedParameter);
    void signalingSampleAmountChanged(std::string changedParameter);

private:
    void setWindowSize(unsigned int size);
    void setWindowLength(std::uint64_t milliseconds);
    void setVectorLength(std::size_t length);
    void updateWindowSize();
    void updateWindowLength();
    bool updateRefreshInterval(const char *context);
    // Both take the newest vector and replace it by the mean, in the storage of the one that leaves the window.
    void simpleMovingAverage(std::vector<double> &input);
    void performanceOptimizedMovingAverage(std::vector<double> &input);
    /// Whether the vector that leaves the window next is one of the zeros it starts with, not in the ring yet.
    bool isFilling() const { return ringIndex == ringBuffers.size(); }
    /// Puts it there. @return false, with a warning, if there is no memory for it
    bool addZeros(const char *context);
    void resetBuffers();

    const std::string name;
    std::vector<QMetaObject::Connection> connections;
    std::mutex mutex;
    SpectrumConfig *config;
    sonvex::BufferConfiguration *bufferConfiguration;
    std::atomic<bool> active{true};
    std::vector<std::vector<double>> ringBuffers; ///< grows up to windowSize; what is not there yet counts as zeros
    std::vector<double> average;
    std::size_t ringIndex = 0;          ///< of the oldest vector, or of the one that comes next
    unsigned int windowSize = 0;        ///< in cycles
    std::uint64_t windowLength = 0;     ///< in milliseconds; the longest window has more than 32 bits
    unsigned int refreshInterval = 500; ///< duration of a cycle in milliseconds
    unsigned int cycleCounter = 0;      ///< since the mean was computed anew
    std::size_t vectorLength = 0;
};

} // namespace process::averaging
