#include "discovery/Survey.h"

#include <cmath>
#include <memory>
#include <random>
#include <sstream>

#include <gtest/gtest.h>

#include "common/Text.h"
#include "support/Dissector.h"
#include "support/wireFrames.h"

namespace {

using discovery::Findings;
using discovery::Survey;
using discovery::WireStream;
using wire::Audio;
using wire::Frame;

constexpr std::uint64_t source = 0x020000000001;

/// From memory that ends with the frame, so that a sanitizer sees every read past it.
void add(Survey &survey, const Frame &frame, std::int64_t time = 0) {
    const auto exact = std::make_unique<std::uint8_t[]>(frame.size());
    std::copy(frame.begin(), frame.end(), exact.get());
    survey.add({exact.get(), frame.size()}, frame.size(), time);
}

Frame avtp(const Frame &payload, std::initializer_list<std::uint32_t> tags = {}) {
    return wire::ethernet(source, 0x22f0, payload, tags);
}

/// What a frame says of its stream, and whether that can be monitored.
std::string summary(const WireStream &stream) {
    std::ostringstream text;
    const auto show = [&text](const auto &value) { value ? text << *value << ' ' : text << "- "; };
    text << (stream.id ? common::toString(*stream.id) : "-") << ' ' << common::toString(stream.source) << ' ';
    stream.tag ? text << stream.tag->id << '/' << stream.tag->priority << ' ' : text << "- ";
    text << stream.format.name() << ' ';
    show(stream.format.rate);
    show(stream.format.channels);
    show(stream.samples ? std::optional(stream.samples->greatest) : std::nullopt);
    show(stream.format.bitDepth);
    text << (stream.obstacle.empty() ? "| " + stream.argument + (stream.hasSoundLevels ? " levels" : "")
                                     : "! " + stream.obstacle);
    return text.str();
}

Audio audio(unsigned format, unsigned rate, unsigned channels, unsigned depth, unsigned length) {
    Audio frame;
    frame.format = format;
    frame.rate = rate;
    frame.channels = channels;
    frame.depth = depth;
    frame.length = length;
    return frame;
}

Audio withFlags(unsigned flags) {
    Audio frame;
    frame.flags = flags;
    return frame;
}

TEST(Survey, tellsWhatEachKindOfStreamIsAndHowToMonitorIt) {
    const std::string usual = "0200000000010000 020000000001 ";
    const std::string stereo = "AAF int16 48000 2 6 16 | 0200000000010000,channels=2,samples=6,format=int16 levels";
    Audio foreign;
    foreign.id = 0xfedcba9876543210;
    Frame padded = avtp(audio(2, 5, 1, 32, 4).payload());
    padded.resize(60);
    Frame cut = avtp(Audio().payload());
    cut.pop_back();
    const std::vector<std::pair<Frame, std::string>> table = {
        {avtp(Audio().payload()), usual + "- " + stereo},
        {avtp(Audio().payload(), {0x81006002}), usual + "2/3 " + stereo},
        {avtp(Audio().payload(), {0x81000202}), usual + "514/0 " + stereo}, // looks like a subtype and its flags
        {avtp(Audio().payload(), {0x8100f000}), usual + "0/7 " + stereo},
        {avtp(foreign.payload()), "fedcba9876543210 020000000001 - AAF int16 48000 2 6 16 | "
                                  "fedcba9876543210,channels=2,samples=6,format=int16 levels"},
        {padded, usual + "- AAF int32 48000 1 1 32 | 0200000000010000,channels=1,samples=1,format=int32 levels"},
        {avtp(audio(2, 7, 8, 24, 384).payload()),
         usual + "- AAF int32 96000 8 12 24 | 0200000000010000,channels=8,samples=12,format=int32,rate=96000"},
        {avtp(audio(3, 4, 255, 24, 765).payload()),
         usual + "- AAF int24 44100 255 1 24 | 0200000000010000,channels=255,samples=1,format=int24,rate=44100"},
        {avtp(audio(1, 10, 3, 32, 768).payload()),
         usual + "- AAF float32 24000 3 64 32 | 0200000000010000,channels=3,samples=64,format=float32,rate=24000"},
        {avtp(audio(4, 5, 256, 16, 512).payload()), usual + "- AAF int16 48000 256 1 16 ! it has 256 channels, more"},
        {avtp(audio(4, 5, 0, 16, 512).payload()),
         usual + "- AAF int16 48000 0 - 16 ! its frames say that they hold no"},
        {avtp(audio(2, 5, 2, 32, 20).payload()),
         usual + "- AAF int32 48000 2 - 32 ! its data of 20 bytes leave a rest where 2 channels take 8 a sample"},
        {avtp(audio(4, 5, 2, 16, 0).payload()), usual + "- AAF int16 48000 2 0 16 ! its frames carry no samples"},
        {cut, usual + "- AAF int16 48000 2 6 16 ! its frames end before"},
        {avtp(audio(4, 0, 2, 16, 24).payload()), usual + "- AAF int16 - 2 6 16 ! its frames name no sample rate"},
        {avtp(audio(5, 5, 2, 16, 24).payload()), usual + "- AAF AES3 48000 - - - ! its samples have the format AES3"},
        {avtp(audio(9, 5, 2, 16, 24).payload()), usual + "- AAF format 9 48000 - - - ! its samples have the format"},
        {avtp(withFlags(0x01).payload()),
         "- 020000000001 - AAF int16 48000 2 6 16 | 020000000001,channels=2,samples=6,format=int16 levels"},
        {avtp(audio(0, 4, 2, 0, 56).iec61883()), usual + "- IEC 61883-6 96000 2 6 - ! it comes in the older form"},
        {avtp(wire::clockReference(7, 0, 0)), "0000000000000007 020000000001 - CRF clock 48000 - - - ! it is a clock"},
        {avtp(wire::clockReference(7, 0, 0, 3)), "0000000000000007 020000000001 - CRF clock 46080 - - - ! it is a"},
        {avtp({0x03, 0x80, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8}),
         "0102030405060708 020000000001 - compressed video - - - - ! it is no AVTP audio (AAF), but compressed video"},
        {avtp({0x55, 0x00, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8}), "- 020000000001 - subtype 85 - - - - ! it is no"}};
    for (const auto &[frame, expected] : table) {
        Survey survey;
        add(survey, frame);
        const Findings findings = survey.describe(1);
        ASSERT_EQ(findings.streams.size(), 1U) << expected;
        EXPECT_EQ(summary(findings.streams[0]).substr(0, expected.size()), expected);

        // Cut anywhere, what lies behind the captured bytes has no say.
        for (std::size_t size = 0; size <= 80 && size < frame.size(); ++size) {
            std::string told;
            for (const std::uint8_t behind : Frame{0x00, 0xff}) {
                Frame memory(frame.begin(), frame.begin() + static_cast<std::ptrdiff_t>(size));
                Survey ofCut;
                add(ofCut, memory);
                memory.resize(frame.size() + 80, behind);
                ofCut.add({memory.data(), size}, frame.size(), 0);
                const Findings cutFindings = ofCut.describe(1);
                std::string text = std::to_string(cutFindings.frames.incomplete);
                for (const WireStream &stream : cutFindings.streams) {
                    text += ' ' + summary(stream);
                }
                EXPECT_TRUE(behind == 0 || text == told) << size << ": " << told << "\n" << text;
                EXPECT_EQ(cutFindings.frames.incomplete + cutFindings.frames.avtp, 2U) << size;
                told = text;
            }
        }
    }
}

TEST(Survey, isFedWithFramesThatTheDissectorReadsAlike) {
    const support::Dissector dissector({avtp(audio(2, 7, 258, 24, 384).payload(), {0x81006002}),
                                        avtp(audio(0, 4, 8, 0, 200).iec61883()),
                                        avtp(wire::clockReference(7, 9, 11, 3))});
    EXPECT_EQ(
        dissector.fields({"vlan.id", "vlan.priority", "ieee1722.subtype", "aaf.format_info", "aaf.nominal_sample_rate",
                          "aaf.channels_per_frame", "aaf.bit_depth", "aaf.stream_data_len"}),
        "2 3 0x02 0x02 0x0007 258 24 384\n  0x00     \n  0x04     \n");
    EXPECT_EQ(dissector.fields({"iec61883.stream_data_len", "iec61883.tag", "iec61883.dbs", "iec61883.fmt",
                                "iec61883.fdf", "crf.type", "crf.seqnum", "crf.pull", "crf.base_frequency",
                                "crf.data_len", "crf.timestamp_interval", "crf.timestamp"}),
              "           \n200 0x01 0x08 0x10 0x00       \n     0x01 9 0x00000003 48000 8 96 0x000000000000000b\n");
}

TEST(Survey, countsWhatIsNoStreamOrCanNotBeRead) {
    Survey survey;
    for (const std::uint8_t control : Frame{0xfa, 0xfb, 0xfc, 0xfe}) {
        add(survey, avtp({control, 0x80, 0, 0}));
    }
    add(survey, avtp(Audio().payload(), {0x81000002, 0x81000003}));
    add(survey, avtp(Audio().payload(), {0x88a80002}));
    add(survey, avtp(Audio().payload(), {0x88a80002, 0x81000003}));
    add(survey, avtp(withFlags(0x91).payload()));           // version 1
    add(survey, wire::ethernet(source, 0x0800, {2, 0x81})); // the filter may let others pass
    Frame tagAtTheEnd = avtp({}, {0x81000002});
    tagAtTheEnd.resize(16);
    add(survey, tagAtTheEnd);
    add(survey, {});
    add(survey, avtp(wire::Frame(24, 0xff)));
    const Findings findings = survey.describe(1);
    EXPECT_EQ(findings.frames.control, 4U);
    EXPECT_EQ(findings.frames.avtp, 4U);
    EXPECT_EQ(findings.frames.severalTags, 3U);
    EXPECT_EQ(findings.frames.otherVersion, 2U);
    EXPECT_EQ(findings.frames.incomplete, 2U);
    EXPECT_TRUE(findings.streams.empty());
}

TEST(Survey, tellsStreamsOfOneSourceApart) {
    Survey survey;
    for (const std::uint64_t id : {3U, 1U, 2U, 1U}) {
        Audio frame;
        frame.id = id;
        frame.sequence = id == 1 && survey.streamAmount() == 3 ? 1 : 0;
        add(survey, avtp(frame.payload()));
    }
    add(survey, avtp(withFlags(0x01).payload()));
    const auto streams = survey.describe(1).streams;
    ASSERT_EQ(streams.size(), 4U);
    EXPECT_EQ(streams[0].frames, 2U);
    EXPECT_EQ(streams[0].framesOutOfOrder + streams[0].gaps, 0U);
    EXPECT_EQ(streams[2].argument.substr(0, 16), "0000000000000003");
    EXPECT_NE(streams[3].obstacle.find("its source sends other streams"), std::string::npos) << streams[3].obstacle;
}

TEST(Survey, followsTheSequenceAndEachChange) {
    const std::vector<std::pair<std::vector<unsigned>, std::string>> table = {
        {{254, 255, 0, 1}, "gaps 0 lost 0 disorder 0"},   {{254, 1, 2}, "gaps 1 lost 2 disorder 0"},
        {{1, 2, 3, 2, 4, 5}, "gaps 0 lost 0 disorder 1"}, {{1, 1, 2}, "gaps 0 lost 0 disorder 1"},
        {{90, 0, 1, 2}, "gaps 0 lost 0 disorder 1"},      {{1, 129, 2}, "gaps 1 lost 127 disorder 1"}};
    for (const auto &[sequence, expected] : table) {
        Survey survey;
        for (const unsigned number : sequence) {
            Audio frame;
            frame.sequence = number;
            add(survey, avtp(frame.payload()));
        }
        const WireStream stream = survey.describe(1).streams.at(0);
        EXPECT_EQ("gaps " + std::to_string(stream.gaps) + " lost " + std::to_string(stream.framesLost) + " disorder " +
                      std::to_string(stream.framesOutOfOrder),
                  expected)
            << sequence[0];
    }
    Survey survey;
    Audio frame;
    add(survey, avtp(frame.payload()), 1'000'000'000);
    add(survey, avtp(frame.payload(), {0x81000002}), 1'000'100'000);
    add(survey, wire::ethernet(source + 1, 0x22f0, frame.payload(), {0x81000002}), 1'000'400'000);
    frame.channels = 4;
    add(survey, wire::ethernet(source + 1, 0x22f0, frame.payload(), {0x81000002}), 1'000'500'000);
    frame.length = 48;
    frame.flags = 0x88;
    frame.uncertain = true;
    add(survey, wire::ethernet(source + 1, 0x22f0, frame.payload(), {0x81000002}), 1'000'600'000);
    const WireStream stream = survey.describe(2).streams.at(0);
    EXPECT_EQ(stream.addressChanges, 2U);
    EXPECT_EQ(stream.formatChanges, 1U);
    EXPECT_EQ(stream.clockRestarts, 1U);
    EXPECT_EQ(stream.timestampsValid, 4U);
    EXPECT_EQ(stream.timestampsUncertain, 1U);
    EXPECT_DOUBLE_EQ(stream.firstHeard, 1);
    EXPECT_DOUBLE_EQ(stream.lastHeard, 1.0006);
    EXPECT_NEAR(stream.framesPerSecond.value_or(0), 4 / 0.0006, 1e-6);
    EXPECT_NEAR(stream.arrivalDistance->least, 0.0001, 1e-12);
    EXPECT_NEAR(stream.arrivalDistance->mean, 0.00015, 1e-12);
    EXPECT_NEAR(stream.arrivalDistance->greatest, 0.0003, 1e-12);
    EXPECT_NE(stream.argument.find(",samples=0,"), std::string::npos) << stream.argument; // 3 to 6
}

/// A talker whose media clock is so many ppm too fast, as is the rate at which its frames arrive, with jitter.
struct Sender {
    double mediaPpm;
    double arrivalPpm;
    double jitter; ///< ns
    bool sparse = false;
    bool troubled = false; ///< loses frames, restarts its clock, and has time stamps that don't count
    bool isClock = false;
    bool bursts = false; ///< in the end pauses of 12 ms, and then what was due in them at once
};

WireStream heard(const Sender &sender, unsigned frames) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> jitter(0, sender.jitter);
    Survey survey;
    Audio audio;
    audio.sparse = sender.sparse;
    const double period = (sender.isClock ? 96 : 6) * 1e9 / 48000;
    double offset = 4294967296.0 - 1e8; // near the end of what 32 bits hold
    for (unsigned i = 0; i < frames; ++i) {
        const bool restarts = sender.troubled && i == frames / 2 + 500; // where no frame is lost
        offset += restarts ? 3e8 : 0;
        audio.flags = sender.troubled && i >= frames / 2 + 500 ? 0x89 : 0x81;
        audio.sequence = i;
        const bool counts = (!sender.sparse || i % 8 == 0) && !(sender.troubled && i % 5 == 0);
        audio.flags &= counts || sender.sparse ? 0xffU : 0xfeU; // a sparse one may call all of them valid
        const double time = offset + i * period / (1 + sender.mediaPpm * 1e-6);
        audio.timestamp = counts ? static_cast<std::uint64_t>(std::llround(time)) : 0x12345678U;
        if (sender.troubled && i % 1000 < 10) {
            continue;
        }
        double arrival = i * period / (1 + sender.arrivalPpm * 1e-6) + jitter(random);
        const double due = std::fmod(arrival, 1e8);
        arrival += sender.bursts && arrival > 3e9 ? (due < 8.8e7 ? 0 : 1e8 - due) : 0;
        add(survey, avtp(sender.isClock ? wire::clockReference(7, i, audio.timestamp) : audio.payload()),
            std::llround(arrival));
    }
    return survey.describe(3).streams.at(0);
}

TEST(Survey, measuresTheMediaClockByTimeStampsAndByArrivals) {
    for (const Sender &sender : {Sender{50, -20, 0},
                                 {-0.5, 90, 200000},
                                 {50, 10, 1000, true},
                                 {50, -20, 200000, false, true},
                                 {3, 4, 50000, false, false, true},
                                 {7, 8, 1000, false, false, false, true}}) {
        SCOPED_TRACE(sender.mediaPpm);
        const WireStream stream = heard(sender, sender.isClock ? 2000 : 32000); // 4 s
        ASSERT_TRUE(stream.timestampPpm && stream.arrivalPpm);
        EXPECT_NEAR(*stream.timestampPpm, sender.mediaPpm, 0.02);
        EXPECT_NEAR(*stream.arrivalPpm, sender.arrivalPpm, sender.troubled ? 5 : sender.isClock ? 2 : 1);
        EXPECT_EQ(stream.timestampLeaps, 0U);
        EXPECT_EQ(stream.clockRestarts, sender.troubled ? 1U : 0U);
        EXPECT_EQ(stream.timestampsValid, sender.sparse     ? 4000U
                                          : sender.troubled ? 32000U * 4 / 5 - 32 * 8
                                          : sender.isClock  ? 2000U
                                                            : 32000U);
    }
    EXPECT_FALSE(heard({0, 0, 0}, 100).arrivalPpm); // within 12 ms
    Survey survey;
    Audio leaping;
    for (const std::uint64_t time : {0U, 125'000U, 9'125'000U, 9'250'000U, 125'000U}) {
        leaping.timestamp = time;
        add(survey, avtp(leaping.payload()), static_cast<std::int64_t>(leaping.sequence) * 125'000);
        ++leaping.sequence;
    }
    EXPECT_EQ(survey.describe(1).streams.at(0).timestampLeaps, 2U);
}

TEST(Survey, keepsItsBoundsAmongVeryManyStreams) {
    Survey survey;
    Audio frame;
    for (std::uint64_t id = 0; id < 80'000; ++id) {
        frame.id = id;
        add(survey, avtp(frame.payload()));
        add(survey, wire::ethernet(source, 0x22ea,
                                   wire::reservations({wire::Talker{id << 16U, 0x91e0f0000000, 1, {0}}.message()})));
    }
    frame.id = 4095;
    frame.sequence = 1;
    add(survey, avtp(frame.payload()));
    const Findings findings = survey.describe(1);
    EXPECT_EQ(findings.streams.size(), Survey::greatestStreams);
    EXPECT_EQ(findings.streams.back().frames, 2U);
    EXPECT_EQ(findings.streamsBeyond, Survey::greatestStreamsBeyond);
    EXPECT_EQ(findings.offers.size(), Survey::greatestOffers);
    EXPECT_EQ(findings.announcementsBeyond, 80'000 - Survey::greatestOffers);
}

} // namespace
