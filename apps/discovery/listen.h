#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

#include "discovery/Findings.h"

namespace discovery {

class Survey;

/// How far the listening is.
struct Progress {
    double seconds;
    double duration; ///< seconds
    std::size_t streams;
};

/**
 * Listens at an adapter and tells what it has heard. Sends nothing, prints nothing, needs no event loop; ends with the
 * time, or as soon as it is to stop.
 * @param report is called a few times a second, on this thread; may be empty
 * @param isStopped is asked some ten times a second with what was heard so far, on this thread; may be empty
 * @throws common::Refusal with what helps, if the adapter can't be opened or is gone before the end
 */
Findings listen(const std::string &adapter, std::chrono::milliseconds duration,
                const std::function<void(const Progress &)> &report = {},
                const std::function<bool(const Survey &heard)> &isStopped = {});

} // namespace discovery
