// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtNetwork/qlocalserver.h>

/** Lets one app run for each user; a second one only raises the first. */
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    explicit SingleInstance(const QString &name, QObject *parent = nullptr);

    /** Whether this is the first; if not, the first has been asked to show itself. */
    [[nodiscard]] bool claim();

Q_SIGNALS:
    void raised();

private:
    [[nodiscard]] bool raiseFirst() const;

    QString m_name;
    QLocalServer m_server;
};
