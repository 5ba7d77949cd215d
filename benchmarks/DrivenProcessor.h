#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include <QObject>

#include "avb/AvbAudioBuffer.h"
#include "core/data/ChannelData.h"
#include "process/Processor.h"

/// A started processor on this thread, driven cycle by cycle as the signal of a channel's buffer drives it.
class DrivenProcessor {
public:
    /// Takes the processor over. @param buffer has no signals for it any more
    /// @param sampleAmount that a cycle stands for @param receive gets each result at once
    DrivenProcessor(process::Processor *processor, const avb::AvbAudioBuffer &buffer, std::size_t sampleAmount,
                    std::function<void(sonvex::ChannelData)> receive);

    void cycle();

private:
    QObject receiver;
    std::unique_ptr<process::Processor> processor;
    int calculate = -1; ///< index of the slot
    std::string clock = "channel";
    std::size_t sampleAmount;
};
