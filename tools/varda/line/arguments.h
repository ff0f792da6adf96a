// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstringlist.h>

#include <cstdint>
#include <functional>
#include <initializer_list>

namespace CLI {
class App;
} // namespace CLI

/** What is wrong with a value; empty if it is right. */
using Check = std::function<QString(const QString &value)>;

struct IntRange {
    int lowest;
    int highest;
};

/** Declares what a command takes. The targets get the values when the command line is read. */
class Arguments
{
public:
    explicit Arguments(CLI::App &command) : m_command(command) { }

    // "--name"

    void flag(const char *name, bool &target, const char *description);
    void option(const char *name, const char *valueName, QString &target, const char *description,
                const Check &check = {});
    /** One of these words, in small or capital letters. */
    void choice(const char *name, const char *valueName, QString &target,
                std::initializer_list<const char *> words, const char *description);
    /** One of two words, in small or capital letters. */
    void choice(const char *name, const char *valueName, QString &target, const char *one,
                const char *other, const char *description);
    /** One that may be given several times. */
    void option(const char *name, const char *valueName, QStringList &target,
                const char *description, const Check &check);

    // Those without a name of their own; they are required, in the order of the calls

    void argument(const char *name, QString &target, const char *description,
                  const Check &check = {});
    /** One or more. */
    void argument(const char *name, QStringList &target, const char *description,
                  const Check &check);
    /** One of these words, in small or capital letters. */
    void argument(const char *name, QString &target, std::initializer_list<const char *> words,
                  const char *description);
    /** Any number of them, or none. */
    void optionalArgument(const char *name, QStringList &target, const char *description,
                          const Check &check);
    void argument(const char *name, int &target, const IntRange &range, const char *description);
    void argument(const char *name, std::uint8_t &target, const char *description);
    void argument(const char *name, std::uint32_t &target, const char *description);
    void argument(const char *name, float &target, const char *description);
    /** "on" or "off". */
    void argument(const char *name, bool &target, const char *description);

private:
    CLI::App &m_command;
};
