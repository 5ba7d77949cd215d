#pragma once

#include <string>

#include <QObject>

#include "core/data/DataObjectBase.h"

namespace sonvex {

/**
 * Base of all configuration objects: a name and the announcement of changes.
 * The signal is emitted on the thread that calls a setter; setters are meant for one thread at a time.
 */
class ConfigurationData : public QObject, public DataObjectBase {
    Q_OBJECT

public:
    ConfigurationData(std::string name, QObject *parent);

Q_SIGNALS:
    /// Names the changed parameter with one of the texts in ChangeNotices.h, or a clock type.
    void configurationChanged(std::string);
};

} // namespace sonvex
