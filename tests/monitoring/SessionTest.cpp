#include "monitoring/Session.h"

#include <gtest/gtest.h>

#include "monitoring/results.h"
#include "support/Frames.h"
#include "support/waitFor.h"
#include "talker/RawSocket.h"

namespace {

constexpr char mac[] = "020000000001";

/// A session on frames that the test sends to the loopback adapter, and the newest result of each analysis.
class SessionRun {
public:
    explicit SessionRun(const std::vector<std::pair<std::string, std::string>> &analyses)
        : session(settings(analyses)) {
        session.onResult([this](const auto &result) {
            newest[result->analysis->name()] = result;
            gaps[result->analysis->name()] += result->behindGap ? 1 : 0;
        });
        session.open();
        session.start();
    }

    void send(unsigned frames, unsigned channels = 2) {
        for (unsigned i = 0; i < frames; ++i) {
            const auto frame =
                support::makeFrame(mac, sequence++, channels, 6, [](unsigned, unsigned) { return 1000; });
            socket.send(frame.data(), frame.size());
        }
    }
    void lose(unsigned frames) { sequence = static_cast<std::uint8_t>(sequence + frames); }
    std::uint64_t endOf(const std::string &name) const {
        const auto found = newest.find(name);
        return found == newest.end() ? 0 : found->second->endSample;
    }
    bool reaches(const std::string &name, std::uint64_t sample) const {
        return support::waitFor([&] { return endOf(name) >= sample; });
    }

    std::map<std::string, std::shared_ptr<const monitoring::Result>> newest;
    std::map<std::string, int> gaps;
    monitoring::Session session; // behind the maps, as its end delivers results too

private:
    static monitoring::SessionSettings settings(const std::vector<std::pair<std::string, std::string>> &analyses) {
        monitoring::SessionSettings settings;
        settings.device = "lo";
        settings.streams = {{mac, 2, 6}};
        settings.bufferSize = 96000;
        for (const auto &[kind, value] : analyses) {
            settings.analyses.push_back(support::makeAnalysis(kind, value));
        }
        return settings;
    }

    talker::RawSocket socket{"lo"};
    std::uint8_t sequence = 0;
};

TEST(Session, placesEachResultInItsStream) {
    SessionRun run(
        {{"waveform", "0:480"}, {"waveform", "1:480"}, {"levels", "0"}, {"spectrum", "0:8:average=cycles:5"}});
    const std::string waveform = "waveform_020000000001_ch0";
    const std::string other = "waveform_020000000001_ch1";
    const std::string levels = "levels_020000000001_ch0";
    const std::string spectrum = "spectrum_020000000001_ch0";
    const auto messagesAre = [&](std::uint64_t amount) {
        return support::waitFor([&] { return run.session.examine().messages == amount; });
    };
    run.send(4000);
    ASSERT_TRUE(run.reaches(other, 24000) && messagesAre(1));

    // The position runs on while the stream is without a channel.
    run.send(1, 1);
    ASSERT_TRUE(messagesAre(2));
    run.send(3999, 1);
    ASSERT_TRUE(run.reaches(waveform, 48000));
    run.send(1);
    ASSERT_TRUE(messagesAre(3));
    run.send(4959);
    ASSERT_TRUE(run.reaches(waveform, 77760) && run.reaches(other, 77754)); // a packet is counted soon, not at once
    EXPECT_LE(run.endOf(other), 77766U);
    EXPECT_EQ(run.gaps[waveform], 0);
    EXPECT_EQ(run.gaps[other], 1);

    run.send(80); // to 163 cycles of the clock: one in which the filters of the levels are made, and 27 times six
    ASSERT_TRUE(run.reaches(levels, 78240) && run.reaches(spectrum, 78240));
    EXPECT_EQ(run.endOf(levels), 78240U);
    EXPECT_LT(std::chrono::system_clock::now() - run.newest[levels]->endTime.value(), std::chrono::seconds(20));
    EXPECT_EQ(run.gaps[levels] + run.gaps[spectrum], 0);

    run.lose(1);
    run.send(81); // the first one is dropped, as it shows the gap
    ASSERT_TRUE(run.reaches(waveform, 78720));
    run.send(1000);
    ASSERT_TRUE(run.reaches(spectrum, 84480) && run.reaches(waveform, 84480));
    EXPECT_GE(run.gaps[waveform], 1);
    EXPECT_GE(run.gaps[spectrum], 4) << "all that are averaged with what lies before the gap";
    EXPECT_LE(run.gaps[spectrum], 5);
}

} // namespace
