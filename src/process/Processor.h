#pragma once

#include <atomic>

#include "core/data/ChannelData.h"
#include "threading/Worker.h"

namespace process {

/**
 * Turns audio into results, one ChannelData at a time; the worker's name is the name of every result.
 *
 * Threads: start(), stop() and isProcessingActive() on any thread, end() and retire() on the one that made the
 * processor; results are emitted on the worker's thread. The flag is atomic and nothing is ordered around it: a
 * calculation that is in work finishes.
 */
class Processor : public threading::Worker {
    Q_OBJECT

public:
    Processor(const std::string &name, QObject *parent);

    virtual void start();
    virtual void stop();
    virtual bool isProcessingActive() const;
    std::string toString() const override;

    /// For good, on a stopped processor, before what it reads goes away: lets go of all but its own thread.
    virtual void retire();

public Q_SLOTS:
    /// Stops and retires.
    void end() override;

Q_SIGNALS:
    void newProcessData(sonvex::ChannelData);

private:
    std::atomic<bool> processingActive{false};
};

} // namespace process
