#include "common/CommandLine.h"

#include "common/Refusal.h"

namespace common {

namespace {

std::string toFileEncoding(const QString &text) {
    return text.toLocal8Bit().toStdString();
}

} // namespace

CommandLine::CommandLine(const char *description) {
    parser.setApplicationDescription(QString::fromLatin1(description));
    parser.addOption({{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Displays this help.")});
}

void CommandLine::addOption(const char *name, const char *description, const char *value) {
    parser.addOption({QString::fromLatin1(name), QString::fromLatin1(description), QString::fromLatin1(value)});
}

void CommandLine::addVersionOption() {
    parser.addOption(
        {{QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Displays version information.")});
}

void CommandLine::setCommand(const char *name) {
    parser.addPositionalArgument(QString::fromLatin1(name), QStringLiteral("This command."));
    words = 1;
}

void CommandLine::parse(const QStringList &arguments) {
    if (!parser.parse(arguments)) {
        std::string error = toFileEncoding(parser.errorText());
        if (!error.empty() && error.back() == '.') {
            error.pop_back();
        }
        throw Refusal(error + " (--help lists the options)");
    }
    const QStringList given = parser.positionalArguments();
    if (given.size() > words) {
        throw Refusal("unexpected argument '" + toFileEncoding(given.at(words)) + "' (--help lists the options)");
    }
}

bool CommandLine::has(const char *name) const {
    return parser.isSet(QString::fromLatin1(name));
}

std::optional<std::string> CommandLine::single(const char *name) const {
    const auto values = all(name);
    if (values.size() > 1) {
        throw Refusal("--" + std::string(name) + " is given twice");
    }
    return values.empty() ? std::nullopt : std::optional(values.front());
}

std::vector<std::string> CommandLine::all(const char *name) const {
    std::vector<std::string> values;
    for (const QString &value : parser.values(QString::fromLatin1(name))) {
        values.push_back(toFileEncoding(value));
    }
    return values;
}

std::string CommandLine::helpText() const {
    return parser.helpText().toStdString();
}

} // namespace common
