#pragma once

#include <string>

#include <QDebug>
#include <QMessageLogger>
#include <QString>

/**
 * The one way to log: a context (the qualified function name) and items, with a blank between two of them and without
 * file or line. A std::string comes out in double quotes, a literal and a printable object bare.
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

} // namespace detail

template <class Context, class... Items>
void debug(const Context &context, const Items &...items) {
    QDebug stream = QMessageLogger().debug();
    stream << detail::printable(context);
    (void)(stream << ... << detail::printable(items));
}

template <class Context, class... Items>
void warning(const Context &context, const Items &...items) {
    QDebug stream = QMessageLogger().warning();
    stream << detail::printable(context);
    (void)(stream << ... << detail::printable(items));
}

/// The one way to refuse: the warning line first, then the exception. The caller has changed nothing yet.
template <class Exception, class... Items>
[[noreturn]] void refuse(const Exception &exception, const char *context, const Items &...items) {
    warning(context, items...);
    throw exception;
}

} // namespace logging
