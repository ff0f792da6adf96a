// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qcryptographichash.h>
#include <QtCore/qobject.h>

#include <functional>
#include <memory>

#include <varda/dive.h>
#include <varda/vardacomputer.h>
#include <varda/vardasession.h>

#include "digest.h"

/** One computer read from start to end, as an application does it. */
class Download : public QObject
{
    Q_OBJECT

public:
    [[nodiscard]] bool isDone() const { return m_done; }
    [[nodiscard]] int dives() const { return m_dives; }
    [[nodiscard]] qint64 samples() const { return m_samples; }
    /** The same if every field of all headers, samples and dives is the same. */
    [[nodiscard]] QByteArray fingerprint() const { return m_hash.result(); }
    /** What is not as the headers say, or was told as an error. */
    [[nodiscard]] QString problem() const { return m_problem; }

    /** Called with each dive. */
    std::function<void(const Dive &)> take;

protected:
    template <typename... Values> void addToFingerprint(const Values &...values)
    {
        Digest digest;
        digest.add(values...);
        m_hash.addData(digest.text);
    }
    void takeDive(const TidemarDiveHeader &header, const QList<DiveSample> &samples,
                  const Dive &dive);
    void blame(const QString &what);
    void finish() { m_done = true; }

private:
    QCryptographicHash m_hash{QCryptographicHash::Sha256};
    int m_dives = 0;
    qint64 m_samples = 0;
    bool m_done = false;
    QString m_problem;
};

/** What an application reads computers through, one after the other. */
class Reader
{
public:
    Reader() = default;
    virtual ~Reader() = default;
    Q_DISABLE_COPY_MOVE(Reader)

    /** Reads @p device, or the first that is found if it is none; not while another is read. */
    [[nodiscard]] virtual std::unique_ptr<Download> read(const BleDeviceInfo &device,
                                                         BleMode mode) = 0;
    virtual void letGo() = 0;
};

/** Headers, then dive by dive, each asked for. */
class SessionReader final : public Reader
{
public:
    std::unique_ptr<Download> read(const BleDeviceInfo &device, BleMode mode) override;
    void letGo() override { m_session.controllerDisconnect(); }

private:
    VardaSession m_session;
};

/** Two jobs. */
class JobReader final : public Reader
{
public:
    std::unique_ptr<Download> read(const BleDeviceInfo &device, BleMode mode) override;
    void letGo() override { m_computer.disconnectFromComputer(); }

private:
    VardaComputer m_computer;
};
