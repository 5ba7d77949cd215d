#pragma once

#include <map>
#include <memory>
#include <string>

#include <QObject>

#include <sonvex/ISonvex.h>

#include "core/facade/ApplicationEnd.h"
#include "core/messages/BaseMessage.h"
#include "engine/Run.h"
#include "engine/processing/ProcessorEngine.h"
#include "engine/streaming/StreamingEngine.h"

namespace sonvex {
class MeteringDataSource;
} // namespace sonvex

/**
 * The facade: converts the host's references to the library's own classes, drives the two engines in order, keeps the
 * metering data sources and forwards messages. It holds the run, and alone says when one begins and ends. No lock: it
 * belongs to the thread that loaded the library.
 */
class Sonvex : public ISonvex, public QObject {
public:
    Sonvex();
    /// Ends everything: the sources first, then all processors, then all captures.
    ~Sonvex() override;

    Sonvex(const Sonvex &) = delete;
    Sonvex &operator=(const Sonvex &) = delete;

    sonvex::ihandles::INetworkReceiverHandle &
    addRemoteStreamReceiver(sonvex::IStreamConfiguration &configuration) override;
    sonvex::ihandles::IProcessorHandle &addProcessor(sonvex::IProcessConfiguration &configuration) override;
    void removeProcessor(sonvex::ihandles::IProcessorHandle &handle) override;
    sonvex::IMeteringDataSource &getMeteringDataSource(sonvex::ihandles::IProcessorHandle &handle) override;
    void
    setMessageReceiver(const std::function<void(std::shared_ptr<sonvex::imessages::IBaseMessage>)> &receiver) override;

    const facts::ReceptionFacts &getFacts() const { return streamingEngine.getFacts(); }

    /**
     * Ends the run: stops everything and returns once nothing reads a configuration any more. What the run has made
     * stays, idle, so that results on their way arrive; the next thing that is added begins a new run and drops it.
     * @return false, with a warning and without effect, on another thread than the one that added the processors
     */
    bool endRun();

private:
    void beginRun();
    void stopRun();
    /// Leaves no thread of the library with an event to deliver. All can be started again.
    void pauseRun();
    void forwardMessage(std::shared_ptr<sonvex::BaseMessage> message);

    std::shared_ptr<engine::Run> run; ///< the current or the last one
    engine::streaming::StreamingEngine streamingEngine;
    engine::processing::ProcessorEngine processorEngine;
    std::map<std::string, std::unique_ptr<sonvex::MeteringDataSource>> meteringDataSources; ///< by handle's unique ID
    std::function<void(std::shared_ptr<sonvex::imessages::IBaseMessage>)> messageReceiver;
    ApplicationEnd applicationEnd;
};
