// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qcryptographichash.h>
#include <QtCore/qobject.h>

#include <functional>

#include <varda/dive.h>
#include <varda/vardasession.h>

/** One computer read from start to end, as an application does it: headers, then dive by dive. */
class Download : public QObject
{
    Q_OBJECT

public:
    /** @param session  which it reads through; must outlive it */
    explicit Download(VardaSession &session);

    /** Looks for a computer and reads it. */
    void scan(BleMode mode);
    /** Reads this one, without a scan. */
    void open(const BleDeviceInfo &device, BleMode mode);

    [[nodiscard]] bool isDone() const { return m_done; }
    [[nodiscard]] int dives() const { return m_dives; }
    [[nodiscard]] qint64 samples() const { return m_samples; }
    /** The same if every field of all headers, samples and dives is the same. */
    [[nodiscard]] QByteArray fingerprint() const { return m_hash.result(); }
    /** What is not as the headers say, or was told as an error. */
    [[nodiscard]] QString problem() const { return m_problem; }

    /** Called with each dive. */
    std::function<void(const Dive &)> take;

private:
    void onEnd(TidemarCommand::TidemarCommandIn command);
    void next();
    void takeDive();
    template <typename... Values> void addToFingerprint(const Values &...values);
    void blame(const QString &what);

    VardaSession &m_session;
    QCryptographicHash m_hash{QCryptographicHash::Sha256};
    int m_dives = 0;
    qint64 m_samples = 0;
    bool m_done = false;
    QString m_problem;
};
