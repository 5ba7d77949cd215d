#pragma once

#include <new>
#include <string>
#include <utility>

#include <QDebug>
#include <QString>

/**
 * The one way to log: a context (the qualified function name) and items, with a blank between two of them and without
 * file or line, in Qt's category "default". A std::string comes out in double quotes, a literal and a printable object
 * bare. Where a lock is held, HeldLines keeps the lines until it is free.
 */
namespace logging {

namespace detail {

template <class Item>
const Item &printable(const Item &item) {
    return item;
}
inline QString printable(const std::string &item) {
    return QString::fromStdString(item);
}
inline unsigned printable(unsigned char item) {
    return item;
}

/// Hands a line to the process's log handler, or to the thread's HeldLines.
void write(QtMsgType level, QString line);

/// A line that finds no memory is lost: what it tells of goes on.
template <class Context, class... Items>
void log(QtMsgType level, const Context &context, const Items &...items) {
    try {
        QString line;
        {
            QDebug stream(&line);
            stream << printable(context);
            (void)(stream << ... << printable(items));
        }
        write(level, std::move(line));
    } catch (const std::bad_alloc &) {
    }
}

} // namespace detail

template <class Context, class... Items>
void debug(const Context &context, const Items &...items) {
    detail::log(QtDebugMsg, context, items...);
}

template <class Context, class... Items>
void warning(const Context &context, const Items &...items) {
    detail::log(QtWarningMsg, context, items...);
}

/// The one way to refuse: the warning line first, then the exception. The caller has changed nothing yet.
template <class Exception, class... Items>
[[noreturn]] void refuseWith(const Exception &exception, const char *context, const Items &...items) {
    warning(context, items...);
    throw exception;
}

/// As above for the usual case, where the exception says what the line says.
/// @param items stand between the context and the text in the line
template <class Exception, class... Items>
[[noreturn]] void refuse(const char *context, const std::string &text, const Items &...items) {
    refuseWith(Exception(text), context, items..., text);
}

} // namespace logging
