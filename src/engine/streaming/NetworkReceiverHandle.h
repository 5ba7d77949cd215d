#pragma once

#include <functional>
#include <memory>
#include <string>

#include <QObject>

#include <sonvex/INetworkReceiverHandle.h>

#include "core/data/StringOverloadBase.h"
#include "engine/Run.h"

namespace engine::streaming {

/// What the host holds of a network receiver. It outlives the receiver; once its run is over, it only warns. Calls and
/// signals run on the caller's thread.
class NetworkReceiverHandle : public QObject,
                              public StringOverloadBase,
                              public sonvex::ihandles::INetworkReceiverHandle {
    Q_OBJECT

public:
    /// @param uid the adapter's system name, @param runningState answers isRunning() until @p run is over
    NetworkReceiverHandle(std::string uid, std::function<bool()> runningState, std::shared_ptr<const Run> run,
                          QObject *parent);

    void start() override;
    void stop() override;
    bool isRunning() const override;
    std::string getUid() const override;
    std::string toString() const override;

Q_SIGNALS:
    /// Both carry the handle's UID.
    void start(std::string uid);
    void stop(std::string uid);

private:
    std::string uid;
    std::function<bool()> runningState;
    std::shared_ptr<const Run> run;
};

} // namespace engine::streaming
