#pragma once

#include <functional>
#include <memory>
#include <string>

#include <QObject>

#include <sonvex/IProcessorHandle.h>

#include "core/data/StringOverloadBase.h"
#include "engine/Run.h"

namespace engine::processing {

/**
 * What the host holds of a processor. It outlives the processor, and is bound again when one of the same unique ID is
 * added in the same run; once that is over, it only warns. Calls and signals run on the caller's thread, the host's.
 */
class ProcessorHandle : public QObject, public StringOverloadBase, public sonvex::ihandles::IProcessorHandle {
    Q_OBJECT

public:
    ProcessorHandle(std::string uniqueId, std::shared_ptr<const Run> run, QObject *parent);

    void start() override;
    void stop() override;
    bool isProcessingActive() const override;
    std::string getUniqueId() const override;
    bool isHandleBound() const override;
    std::string toString() const override;

    void setActiveStateProvider(std::function<bool()> provider);
    /// Unbinding forgets the provider as well.
    void setHandleBound(bool bound);

Q_SIGNALS:
    /// Both carry the handle's unique ID.
    void start(std::string uniqueId);
    void stop(std::string uniqueId);

private:
    std::string uniqueId;
    std::function<bool()> activeStateProvider; ///< never empty
    bool boundToSocket = false;
    std::shared_ptr<const Run> run;
};

} // namespace engine::processing
