#include "pcapplus/UntaggedFrame.h"

#include <algorithm>
#include <memory>
#include <numeric>
#include <vector>

#include <gtest/gtest.h>

namespace {

using Bytes = std::vector<std::uint8_t>;

/// Addresses that differ in each byte, then @p rest.
Bytes frame(const Bytes &rest) {
    Bytes bytes(12 + rest.size());
    std::iota(bytes.begin(), bytes.begin() + 12, std::uint8_t{1});
    std::copy(rest.begin(), rest.end(), bytes.begin() + 12);
    return bytes;
}

TEST(UntaggedFrame, takesOneTagOutAndRefusesWhatItCannotRead) {
    constexpr int none = pcapplus::UntaggedFrame::untagged;
    constexpr int refused = -2;
    const Bytes audio = {0x22, 0xF0, 2, 0x81, 7};
    struct Row {
        Bytes captured; ///< behind the addresses
        int tag;
        Bytes handedOn;
    };
    const std::vector<Row> rows = {
        {audio, none, audio},
        {{0x81, 0x00, 0x60, 0x02, 0x22, 0xF0, 2, 0x81, 7}, 0x6002, audio},
        {{0x81, 0x00, 0x02, 0x02, 0x22, 0xF0, 2, 0x81, 7}, 0x0202, audio}, // looks like the subtype
        {{0x81, 0x00, 0x00, 0x00, 0x22, 0xF0, 2, 0x81, 7}, 0, audio},
        {{0x81, 0x00, 0xFF, 0xFF, 0x22, 0xF0}, 0xFFFF, {0x22, 0xF0}},
        {{0x81, 0x00, 0x60, 0x02, 0x22}, refused, {}},
        {{0x81, 0x00, 0x60, 0x02}, refused, {}},
        {{0x81, 0x00}, refused, {}},
        {{0x81, 0x00, 0x02, 0x02, 0x81, 0x00, 0x60, 0x02, 0x22, 0xF0, 2}, refused, {}},
        {{0x81, 0x00, 0x02, 0x02, 0x88, 0xA8, 0x60, 0x02, 0x22, 0xF0, 2}, refused, {}},
        {{0x88, 0xA8, 0x02, 0x02, 0x22, 0xF0, 2, 0x81, 7}, refused, {}},
        {{0x91, 0x00, 0x02, 0x02, 0x22, 0xF0, 2, 0x81, 7}, refused, {}},
        {{0x81, 0x01, 0x02, 0x02, 0x22, 0xF0, 2}, none, {0x81, 0x01, 0x02, 0x02, 0x22, 0xF0, 2}}, // a type like others
        {{0x81}, none, {0x81}},
    };
    for (std::size_t i = 0; i < rows.size(); ++i) {
        SCOPED_TRACE(i);
        const Bytes captured = frame(rows[i].captured);
        const auto exact = std::make_unique<std::uint8_t[]>(captured.size()); // a sanitizer sees its end
        std::copy(captured.begin(), captured.end(), exact.get());
        pcap_pkthdr header{};
        header.ts.tv_usec = 5;
        header.caplen = static_cast<bpf_u_int32>(captured.size());
        header.len = header.caplen + 100;
        const pcapplus::UntaggedFrame untagged(header, exact.get());
        ASSERT_EQ(untagged.isReadable(), rows[i].tag != refused);
        if (untagged.isReadable()) {
            EXPECT_EQ(untagged.tag(), rows[i].tag);
            EXPECT_EQ(Bytes(untagged.bytes(), untagged.bytes() + untagged.header().caplen), frame(rows[i].handedOn));
            EXPECT_EQ(untagged.header().len, untagged.header().caplen + 100);
            EXPECT_EQ(untagged.header().ts.tv_usec, 5);
        }
    }
}

} // namespace
