#include "core/data/StringOverloadBase.h"

#include <QDebug>

QDebug operator<<(QDebug stream, const StringOverloadBase &object) {
    const QDebugStateSaver saver(stream);
    stream.noquote() << QString::fromStdString(object.toString());
    return stream;
}
