#pragma once

#include <optional>
#include <string>
#include <vector>

#include <QCommandLineParser>
#include <QStringList>

namespace common {

/// Options in the encoding of file names, which name themselves in refusals. --help is always one of them.
class CommandLine {
public:
    explicit CommandLine(const char *description);

    /// @param value names the option's value; empty for an option without
    void addOption(const char *name, const char *description, const char *value = "");
    void addVersionOption();
    /// The word that @p arguments begin with, behind the program's name.
    void setCommand(const char *name);

    /// @param arguments the program's name first
    /// @throws Refusal for unknown options and words
    void parse(const QStringList &arguments);

    bool has(const char *name) const;
    /// @throws Refusal if the option is given more than once
    std::optional<std::string> single(const char *name) const;
    std::vector<std::string> all(const char *name) const;
    std::string helpText() const;

private:
    QCommandLineParser parser;
    int words = 0;
};

} // namespace common
