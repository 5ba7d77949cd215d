#include "discovery/listen.h"

#include <algorithm>

#include "discovery/Adapter.h"
#include "discovery/Survey.h"

namespace discovery {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds slice(50);   // between two looks at whether it is to stop
constexpr milliseconds period(250); // of the reports

double seconds(Clock::duration duration) {
    return std::chrono::duration<double>(duration).count();
}

} // namespace

Findings listen(const std::string &name, milliseconds duration, const std::function<void(const Progress &)> &report,
                const std::function<bool(const Survey &heard)> &isStopped) {
    Adapter adapter(name);
    Survey survey;
    const auto begin = Clock::now();
    const auto wallBegin =
        std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now().time_since_epoch());
    const auto end = begin + duration;
    auto nextReport = begin;
    auto now = begin;
    for (; now < end && !(isStopped && isStopped(survey)); now = Clock::now()) {
        if (report && now >= nextReport) {
            report({seconds(now - begin), seconds(duration), survey.streamAmount()});
            nextReport = now + period;
        }
        const auto rest = std::chrono::ceil<milliseconds>(end - now);
        adapter.receive(static_cast<int>(std::min(rest, slice).count()),
                        [&](Bytes frame, std::size_t wireSize, std::int64_t time) {
                            // What the kernel gathered before has a hole where the filter was set.
                            if (time >= wallBegin.count()) {
                                survey.add(frame, wireSize, time - wallBegin.count());
                            }
                        });
    }
    Findings findings = survey.describe(seconds(now - begin));
    findings.kernelDrops = adapter.drops();
    return findings;
}

} // namespace discovery
