#pragma once

#include <cstdint>
#include <string>

#include "common/FileDescriptor.h"

namespace analyser {

/// Writes lines of a log without ever waiting: what is not taken at once is left out, and counted.
class LineWriter {
public:
    /// Writes nothing.
    LineWriter() = default;
    explicit LineWriter(common::FileDescriptor newDescriptor);

    bool isOpen() const { return descriptor.get() >= 0; }
    /// Says before the line how many were left out since the last one.
    void write(const std::string &line);
    /// The system's reason for the first write that failed; empty while all is well.
    const std::string &getFailure() const { return failure; }

private:
    bool put(const std::string &line);

    common::FileDescriptor descriptor;
    std::uint64_t leftOut = 0;
    std::string failure;
};

} // namespace analyser
