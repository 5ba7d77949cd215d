#pragma once

#include <memory>
#include <utility>
#include <vector>

#include <QCoreApplication>
#include <QMetaObject>

#include "process/Processor.h"
#include "threading/Controller.h"

namespace support {

/// A processor on a thread of its own, and the results that reached the thread which made this.
class ProcessorRun : public QObject {
public:
    explicit ProcessorRun(process::Processor *runningProcessor) : processor(runningProcessor) {
        connect(processor, &process::Processor::newProcessData, this,
                [this](sonvex::ChannelData result) { results.push_back(std::move(result)); });
        controller = std::make_unique<threading::Controller>(std::unique_ptr<threading::Worker>(processor));
    }

    process::Processor *operator->() const { return processor; }

    /// Returns when all that was queued for the processor has run and what it queued for this thread as well.
    void settle() const {
        QMetaObject::invokeMethod(
            processor, [] {}, Qt::BlockingQueuedConnection);
        QCoreApplication::processEvents();
    }

    /// Ends the processor and its thread.
    void end() { controller.reset(); }

    std::vector<sonvex::ChannelData> results;

private:
    process::Processor *processor; ///< owned by its thread
    std::unique_ptr<threading::Controller> controller;
};

} // namespace support
