#pragma once

#include <mutex>
#include <string>

#include <QObject>

#include "core/data/StringOverloadBase.h"

class QThread;

namespace threading {

/**
 * An object with its work. Built on its creator's thread, then taken by a Controller to a thread of its own: progress()
 * and queued slots run there, end() on the thread that destroys the controller, possibly while progress() still runs.
 * progress() has to return soon after end().
 */
class Worker : public QObject, public StringOverloadBase {
    Q_OBJECT

public:
    Worker(const std::string &name, QObject *parent);
    ~Worker() override;

    /// Called once on the controlling thread, to move further objects to @p thread; the base version only logs.
    virtual void registerThreadChilds(QThread *thread);
    virtual std::string getName() const;

public Q_SLOTS:
    virtual void end() = 0;
    virtual void progress() = 0;

Q_SIGNALS:
    /// For subclasses to say that their work is done; the worker's life is not tied to it.
    void finished();

protected:
    /// For a name that completes only later.
    void setName(const std::string &newName);

private:
    mutable std::mutex nameMutex; ///< guards the name, which the worker's thread may log while it is replaced
    std::string name;
};

} // namespace threading
