// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qbytearrayview.h>
#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

/**
 * Replaces what is private by letters of the same number of bytes: equal texts by equal letters,
 * for as long as this object lives. Nobody can calculate the texts from the letters.
 *
 * Only what is known to be harmless stays. So bytes that make no sound frame, or a frame of an
 * unknown command, are replaced as a whole.
 */
class Redactor
{
public:
    Redactor();

    /** A name of a device; still that of a computer if it was one. */
    [[nodiscard]] QString name(const QString &name) const;
    /** An address of any form. */
    [[nodiscard]] QString address(const QString &address) const;
    /** What one write has sent. */
    [[nodiscard]] QByteArray request(const QByteArray &bytes) const;
    /** The notifications that the session has taken for one answer, as they were cut. */
    [[nodiscard]] QList<QByteArray> answer(const QList<QByteArray> &notifications) const;

private:
    [[nodiscard]] QByteArray letters(QByteArrayView secret) const;
    [[nodiscard]] QByteArray digest(QByteArrayView secret, qsizetype size) const;
    [[nodiscard]] QByteArray text(QByteArrayView secret) const;
    [[nodiscard]] QByteArray damaged(QByteArrayView bytes) const;
    [[nodiscard]] QByteArray frame(QByteArrayView bytes, bool isRequest) const;
    void redactPayload(QByteArray &frame, bool isRequest) const;

    QByteArray m_key;
};
