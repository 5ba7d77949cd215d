#include "core/logging/Log.h"

#include <QMessageLogContext>

#include "core/logging/HeldLines.h"

namespace logging::detail {

void write(QtMsgType level, QString line) {
    if (line.endsWith(QLatin1Char(' '))) {
        line.chop(1); // the blank that the stream puts behind each item
    }
    if (!HeldLines::keep(level, line)) {
        qt_message_output(level, QMessageLogContext(nullptr, 0, nullptr, "default"), line);
    }
}

} // namespace logging::detail
