#pragma once

#include <functional>

#include <QObject>

#include "core/data/ChannelData.h"

namespace process {

/// The end of a processor's signal: lives on the thread that added the processor and delivers there.
class ProcessConnection : public QObject, public sonvex::DataObjectBase {
    Q_OBJECT

public:
    ProcessConnection(const std::string &name, QObject *parent);

    void setCallbackMethod(const std::function<void(sonvex::ChannelData &)> &method);

public Q_SLOTS:
    /// Hands the result on; until a callback is set, results are dropped with a warning.
    void signalToCallbackConnector(sonvex::ChannelData channel);

private:
    bool callbackInitialized = false;
    std::function<void(sonvex::ChannelData &)> callback;
};

} // namespace process
