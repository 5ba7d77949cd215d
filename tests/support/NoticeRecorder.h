#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/data/ConfigurationData.h"

namespace support {

/// Collects what a configuration announces.
class NoticeRecorder {
public:
    explicit NoticeRecorder(sonvex::ConfigurationData &configuration) {
        QObject::connect(&configuration, &sonvex::ConfigurationData::configurationChanged, &receiver,
                         [this](const std::string &notice) { notices.push_back(notice); });
    }

    /// The notices since the last call, in order.
    std::vector<std::string> take() { return std::exchange(notices, {}); }

private:
    QObject receiver;
    std::vector<std::string> notices;
};

} // namespace support
