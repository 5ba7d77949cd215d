#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <QTemporaryDir>

namespace support {

/// How tshark reads frames, as another decoder of the same standards.
class Dissector {
public:
    explicit Dissector(const std::vector<std::vector<std::uint8_t>> &frames);

    /// A line for each frame: the fields by their names, separated by blanks.
    /// @param occurrence of a field that a frame has several times: "a" for all, "l" for the last
    std::string fields(const std::vector<std::string> &names, const std::string &occurrence = "a") const;
    /// The frames that are malformed or strange to it.
    std::string complaints() const;

private:
    std::string run(const std::vector<std::string> &arguments) const;

    QTemporaryDir folder;
    std::string path;
};

} // namespace support
