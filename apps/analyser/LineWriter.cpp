#include "analyser/LineWriter.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <utility>

#include "common/Text.h"
#include "common/writeIfReady.h"

namespace analyser {

LineWriter::LineWriter(common::FileDescriptor newDescriptor) : descriptor(std::move(newDescriptor)) {}

void LineWriter::write(const std::string &line) {
    if (!isOpen() || !failure.empty()) {
        return;
    }
    if (leftOut > 0 && put(text::counted(leftOut, "line") + " left out\n")) {
        leftOut = 0;
    }
    if (leftOut > 0 || !put(line)) {
        ++leftOut;
    }
}

/// @return false if nothing is taken now
bool LineWriter::put(const std::string &line) {
    const auto wanted = static_cast<ssize_t>(std::min<std::size_t>(line.size(), PIPE_BUF));
    const auto written = common::writeIfReady(descriptor.get(), line);
    if (written < 0 && errno == EAGAIN) {
        return false;
    }
    if (written != wanted) {
        failure = std::strerror(written < 0 ? errno : ENOSPC);
    }
    return true;
}

} // namespace analyser
