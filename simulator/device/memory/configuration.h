// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qhash.h>
#include <QtCore/qjsonvalue.h>
#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

namespace simulator {

enum class Model;

/** The settings of a computer, by name, and their layout on the wire for each model and version. */
class Configuration
{
public:
    Configuration();

    /** Settings given by a scenario; throws BadScenario for one that does not exist or fit. */
    void read(const QJsonValue &value, const QString &path);

    quint64 value(const char *name, int index = 0) const;
    void set(const char *name, quint64 value, int index = 0);

    /** How many gases a table of this model and version holds. */
    int gasCount() const;

    void setVersion(Model model, int version)
    {
        m_model = model;
        m_version = version;
    }
    /** Without a version in front, as the first firmwares sent it. */
    void setShortForm() { m_shortForm = true; }

    /** The payload of an answer, with the section that only the newer of the two requests gets. */
    QByteArray payload(bool extended, const QByteArray &owner) const;

private:
    QByteArray head() const;
    QByteArray vardaBody(bool extended, const QByteArray &owner) const;
    QByteArray tidemarBody(bool extended, const QByteArray &owner) const;

    QHash<QString, QList<quint64>> m_values;
    Model m_model{};
    int m_version = 0;
    bool m_shortForm = false;
};

} // namespace simulator
