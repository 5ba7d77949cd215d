#pragma once

#include <array>
#include <cstdint>
#include <string>

#include <sonvex/export.h>

namespace sonvex {

/**
 * Names a stream on the wire, where a device that sends several tells them apart by it: most take their address and two
 * bytes that count.
 */
class SONVEX_EXPORT StreamId {
public:
    using Bytes = std::array<std::uint8_t, 8>;

    /// @param bytes in the order of the frame
    explicit StreamId(const Bytes &bytes);
    /**
     * @param text 16 hexadecimal digits, in pairs that may be separated by ':', '-' or '.'
     * @throws exceptions::InstanceNotCreateable for any other text
     */
    explicit StreamId(const std::string &text);

    Bytes getBytes() const;
    /// 16 lower-case digits: what stands for the stream wherever the address of a device would.
    std::string toString() const;

private:
    Bytes bytes;
};

} // namespace sonvex
