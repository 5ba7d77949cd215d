#pragma once

#include <functional>
#include <string>

#include <QObject>

#include <sonvex/INetworkReceiverHandle.h>

#include "core/data/StringOverloadBase.h"

namespace engine::streaming {

/// What the host holds of a network receiver. Calls and signals run on the caller's thread.
class NetworkReceiverHandle : public QObject,
                              public StringOverloadBase,
                              public sonvex::ihandles::INetworkReceiverHandle {
    Q_OBJECT

public:
    /// @param uid the adapter's system name, @param runningState answers isRunning()
    NetworkReceiverHandle(std::string uid, std::function<bool()> runningState, QObject *parent);

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
};

} // namespace engine::streaming
