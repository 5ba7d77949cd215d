#include "discovery/readOffers.h"

#include <memory>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "discovery/Survey.h"
#include "support/Dissector.h"
#include "support/wireFrames.h"

namespace {

using discovery::Findings;
using discovery::Survey;
using wire::Frame;
using wire::Talker;

void add(Survey &survey, const Frame &payload) {
    const Frame frame = wire::ethernet(0x020000000001, 0x22ea, payload);
    survey.add({frame.data(), frame.size()}, frame.size(), 0);
}

std::string offersOf(const Survey &survey) {
    std::ostringstream text;
    for (const auto &offer : survey.describe(1).offers) {
        text << common::toString(offer.id) << ' ' << common::toString(offer.destination) << ' ' << offer.vlan << ' '
             << offer.priority << ' ' << offer.maxFrameSize << ' ' << offer.maxIntervalFrames << ' '
             << offer.failureCode.value_or(0) << (offer.isDelivered ? " here\n" : "\n");
    }
    return text.str();
}

// New, joining, joining of an empty one; then registered only, empty, leaving; a join.
constexpr std::uint8_t newJoinJoin = (0 * 6 + 1) * 6 + 3;
constexpr std::uint8_t inEmptyLeave = (2 * 6 + 4) * 6 + 5;
constexpr std::uint8_t join = 1 * 36;
constexpr std::uint8_t leave = 5 * 36;

const Frame many =
    wire::reservations({wire::listenerMessage(),
                        Talker{0x020000000001fffe, 0x91e0f000fefe, 7, {newJoinJoin, inEmptyLeave, join}}.message(),
                        Talker{0x0300000000010000, 0x91e0f0000100, 1, {join}, 8, 1}.message()});

TEST(Offers, areReadAsTheDissectorReadsThem) {
    const std::string type = "mrp-msrp.";
    EXPECT_EQ(
        support::Dissector({wire::ethernet(0x020000000001, 0x22ea, many)})
            .fields({type + "attribute_type", type + "leave_all_event", type + "number_of_values", type + "stream_id",
                     type + "stream_da", type + "vlan_id", type + "priority", type + "tspec_max_frame_size",
                     type + "tspec_max_interval_frames", type + "failure_code", type + "three_packed_event"}),
        "3,1,2 0,0,1 1,7,1 0x0200000000010000,0x020000000001fffe,0x0300000000010000 "
        "91:e0:f0:00:fe:fe,91:e0:f0:00:01:00 0x0002,0x0002 3,3 224,224 1,1 8 1,0,1,3,2,4,5,1,1\n");
    Survey survey;
    add(survey, many);
    // The count of the streams goes round, the address of the talker stays; destinations carry over.
    EXPECT_EQ(offersOf(survey), "0200000000010000 91e0f000ff00 2 3 224 1 0\n"
                                "0200000000010004 91e0f000ff04 2 3 224 1 0\n"
                                "020000000001fffe 91e0f000fefe 2 3 224 1 0\n"
                                "020000000001ffff 91e0f000feff 2 3 224 1 0\n"
                                "0300000000010000 91e0f0000100 2 3 224 1 8\n");
    EXPECT_EQ(survey.describe(1).frames.reservations, 1U);
}

TEST(Offers, followWhatTalkersSayLast) {
    Survey survey;
    add(survey, many);
    add(survey, wire::reservations({Talker{0x0300000000010000, 0x91e0f0000100, 1, {join}}.message(),
                                    Talker{0x020000000001fffe, 0x91e0f000fefe, 2, {leave + 5 * 6}}.message(),
                                    Talker{0x0200000000010000, 0, 0, {}, 0, 1}.message()}));
    const Frame heard = wire::ethernet(0x020000000001, 0x22f0, [] {
        wire::Audio audio;
        audio.id = 0x0200000000010004;
        return audio.payload();
    }());
    survey.add({heard.data(), heard.size()}, heard.size(), 0);
    EXPECT_EQ(offersOf(survey), "0200000000010000 91e0f000ff00 2 3 224 1 0\n"
                                "0200000000010004 91e0f000ff04 2 3 224 1 0 here\n"
                                "0300000000010000 91e0f0000100 2 3 224 1 0\n");
}

TEST(Offers, areReadUpToAFlaw) {
    Survey whole;
    add(whole, many);
    const std::string all = offersOf(whole);
    std::size_t before = 0;
    for (std::size_t size = 0; size < many.size(); ++size) {
        const auto exact = std::make_unique<std::uint8_t[]>(size); // a sanitizer sees every read past it
        std::copy_n(many.begin(), size, exact.get());
        std::size_t amount = 0;
        const bool inOrder = discovery::readOffers({exact.get(), size}, [&](const auto &announcement) {
            ++amount;
            EXPECT_TRUE(announcement.withdrawn || all.find(common::toString(announcement.offer.id)) < all.size());
        });
        const std::set<std::size_t> withoutEndMark{1, 19, 55, 98}; // behind the version and each message
        EXPECT_EQ(inOrder, withoutEndMark.count(size) > 0) << size;
        EXPECT_GE(amount, before) << size;
        before = amount;
    }
    EXPECT_EQ(before, 6U);

    Frame lengths = many;
    lengths[20] = 26; // a value of another size
    Frame amounts = many;
    amounts[23] = 0x1f; // more values than there are bytes
    Frame lists = many;
    lists[21] = 0xff;                                                      // a list beyond the frame
    Frame packed = wire::reservations({Talker{1, 2, 3, {216}}.message()}); // no three events
    for (const auto &[frame, isRead] : {std::pair(lengths, false), {amounts, false}, {lists, false}, {packed, true}}) {
        Survey survey;
        add(survey, frame);
        EXPECT_EQ(offersOf(survey), "");
        EXPECT_EQ(survey.describe(1).frames.reservations, isRead ? 1U : 0U);
    }
}

} // namespace
