// SPDX-License-Identifier: MIT
#pragma once

#include "traces/hcilog.h"

#include <QtCore/qhash.h>
#include <QtCore/qmap.h>
#include <QtCore/qstringlist.h>

#include <varda/vardatracefile.h>

/** What a program has found out about the attributes of a computer, and may keep for later. */
struct Attributes {
    struct Value {
        QString uuid;
        quint8 properties = 0;
        quint16 descriptor = 0; ///< that switches notifications on; 0 if there is none
    };
    struct Group {
        quint16 last = 0;
        QString uuid;
    };
    QMap<quint16, Group> services; ///< by their first handle
    QMap<quint16, Value> values;   ///< by the handle of the value
    QString name;                  ///< that the computer says it has

    [[nodiscard]] bool hasData() const { return dataHandle() != 0; }
    /** Of the value that carries the data; 0 if it is not known. */
    [[nodiscard]] quint16 dataHandle() const;
    /** The service that has this handle; empty if it is not known. */
    [[nodiscard]] QString serviceOf(quint16 handle) const;
    /** Takes over what a message says; @p request is the last one before it. */
    void read(const QByteArray &request, const QByteArray &response);
    /** Guesses by the frames of a connection which value carries the data. */
    void guess(const LoggedConnection &connection);

private:
    void readServices(const QByteArray &request, const QByteArray &response);
    void readValues(const QByteArray &request, const QByteArray &response);
    void readDescriptors(const QByteArray &response);
};
