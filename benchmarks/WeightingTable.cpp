// The A and C weighting of the level processor, measured with sines, against the class 1 limits of IEC 61672-1:2013.
#include <cmath>
#include <cstdio>
#include <limits>
#include <vector>

#include <QtGlobal>

#include "DrivenProcessor.h"
#include "avb/AvbAudioBuffer.h"
#include "core/configuration/BufferConfiguration.h"
#include "process/SoundLevelValueProcessor.h"
#include "process/configuration/SoundLevelValueConfig.h"

namespace {

constexpr double none = -std::numeric_limits<double>::infinity();

/// A nominal frequency in Hz, the goals in dB, and the limits of the deviation from them.
struct Row {
    double nominal;
    double a;
    double c;
    double upper;
    double lower;
};

constexpr Row rows[] = {
    {10, -70.4, -14.3, 3.0, none},  {12.5, -63.4, -11.2, 2.5, none}, {16, -56.7, -8.5, 2.0, -4.0},
    {20, -50.5, -6.2, 2.0, -2.0},   {25, -44.7, -4.4, 2.0, -1.5},    {31.5, -39.4, -3.0, 1.5, -1.5},
    {40, -34.6, -2.0, 1.0, -1.0},   {50, -30.2, -1.3, 1.0, -1.0},    {63, -26.2, -0.8, 1.0, -1.0},
    {80, -22.5, -0.5, 1.0, -1.0},   {100, -19.1, -0.3, 1.0, -1.0},   {125, -16.1, -0.2, 1.0, -1.0},
    {160, -13.4, -0.1, 1.0, -1.0},  {200, -10.9, 0.0, 1.0, -1.0},    {250, -8.6, 0.0, 1.0, -1.0},
    {315, -6.6, 0.0, 1.0, -1.0},    {400, -4.8, 0.0, 1.0, -1.0},     {500, -3.2, 0.0, 1.0, -1.0},
    {630, -1.9, 0.0, 1.0, -1.0},    {800, -0.8, 0.0, 1.0, -1.0},     {1000, 0.0, 0.0, 0.7, -0.7},
    {1250, 0.6, 0.0, 1.0, -1.0},    {1600, 1.0, -0.1, 1.0, -1.0},    {2000, 1.2, -0.2, 1.0, -1.0},
    {2500, 1.3, -0.3, 1.0, -1.0},   {3150, 1.2, -0.5, 1.0, -1.0},    {4000, 1.0, -0.8, 1.0, -1.0},
    {5000, 0.5, -1.3, 1.5, -1.5},   {6300, -0.1, -2.0, 1.5, -2.0},   {8000, -1.1, -3.0, 1.5, -2.5},
    {10000, -2.5, -4.4, 2.0, -3.0}, {12500, -4.3, -6.2, 2.0, -5.0},  {16000, -6.6, -8.5, 2.5, -16.0},
    {20000, -9.3, -11.2, 3.0, none}};

/// The levels of a sine that has sounded for 20 seconds.
std::vector<double> levelsOf(double frequency) {
    constexpr unsigned signaled = 8000;
    sonvex::BufferConfiguration bufferConfig("buffer", 6 * signaled, signaled);
    avb::AvbAudioBuffer buffer("channel", bufferConfig);
    process::SoundLevelValueConfig config("levels", 6 * signaled);
    std::vector<double> levels;
    DrivenProcessor processor(process::SoundLevelValueProcessor::createInstance("levels", config, buffer), buffer,
                              signaled, [&](sonvex::ChannelData result) { levels = result.getVectorData().getY(); });
    processor.cycle(); // sets the filters up
    std::size_t n = 0;
    for (int cycle = 0; cycle < 120; ++cycle) {
        std::vector<float> samples(signaled);
        for (float &sample : samples) {
            sample = static_cast<float>(0.5 * std::sin(2 * M_PI * frequency * static_cast<double>(n++) / 48000));
        }
        buffer.writeSamples(samples.data(), samples.size());
        processor.cycle();
    }
    return levels;
}

/// Prints one weighting. @return whether it is inside
bool print(double level, double goal, const Row &row) {
    const double deviation = level - goal;
    const bool isInside = deviation <= row.upper && deviation >= row.lower;
    std::printf("  %8.2f %6.1f %+6.2f  %+4.1f %+6.1f %-3s", level, goal, deviation, row.upper, row.lower,
                isInside ? "in" : "OUT");
    return isInside;
}

} // namespace

int main() {
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    std::printf("%8s  %8s %6s %6s  %11s    %12s %6s %6s  %11s\n", "Hz", "A dB", "goal", "off", "limits", "C dB", "goal",
                "off", "limits");
    int outside = 0;
    for (const Row &row : rows) {
        // The nominal frequencies are rounded; the goals belong to the exact tenths of a decade.
        const double exact = 1000 * std::pow(10.0, std::round(10 * std::log10(row.nominal / 1000)) / 10.0);
        const std::vector<double> levels = levelsOf(exact);
        std::printf("%8g", row.nominal);
        outside += print(levels.at(1) - levels.at(5), row.a, row) ? 0 : 1;
        outside += print(levels.at(3) - levels.at(5), row.c, row) ? 0 : 1;
        std::printf("\n");
    }
    std::printf(outside == 0 ? "All are inside the class 1 limits.\n" : "%d are outside the class 1 limits.\n",
                outside);
    return 0;
}
