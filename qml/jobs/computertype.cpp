// SPDX-License-Identifier: MIT
#include "computertype.h"

#include <QtCore/qpointer.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <limits>
#include <optional>

#include <varda/recordfields.h>

#include "handover_p.h"

using std::chrono::milliseconds;

namespace {

/** Ends with Rejected; nothing was asked of the computer. */
class RejectedJob final : public VardaJob
{
public:
    explicit RejectedJob(QObject *parent)
    {
        setParent(parent);
        fail(Rejected, Reason::BadArgument);
    }
};

/** Reads the active layouts; an array of C++ has no counterpart in QML, a list has. */
class ActiveLayoutsJob final : public VardaJob
{
public:
    explicit ActiveLayoutsJob(VardaReply<std::array<std::int8_t, 5>> *reply) : m_reply(reply)
    {
        setParent(reply->parent());
        connect(reply, &VardaJob::stateChanged, this, [this] {
            if (m_reply && m_reply->state() != Finished)
                setState(m_reply->state());
        });
        connect(reply, &VardaJob::finished, this, [this](VardaJob *ended) {
            const auto layouts = m_reply->result();
            if (ended->error() == NoError)
                finish(QVariant::fromValue(QList<int>(layouts.begin(), layouts.end())));
            else
                fail(ended->error(), ended->reason(), ended->errorText(), ended->remedy());
        });
    }

protected:
    void stop(bool atOnce) override
    {
        if (m_reply && atOnce)
            m_reply->abort();
        else if (m_reply)
            m_reply->cancel();
    }

private:
    QPointer<VardaReply<std::array<std::int8_t, 5>>> m_reply;
};

template <typename Number> bool isA(double number)
{
    if constexpr (std::is_floating_point_v<Number>)
        return std::isfinite(number)
               && std::abs(number) <= double(std::numeric_limits<Number>::max());
    else
        return number >= double(std::numeric_limits<Number>::min())
               && number <= double(std::numeric_limits<Number>::max())
               && std::trunc(number) == number;
}

/** Other numbers than these no dive has. */
QList<std::uint16_t> numbersIn(const QList<int> &known)
{
    QList<std::uint16_t> numbers;
    for (const int number : known) {
        if (isA<std::uint16_t>(number))
            numbers.append(std::uint16_t(number));
    }
    return numbers;
}

/** A marloSettings, or an object with all of its fields and no other. */
std::optional<MarloSettings> settingsIn(const QVariant &settings)
{
    if (settings.metaType() == QMetaType::fromType<MarloSettings>())
        return settings.value<MarloSettings>();
    const QVariantMap fields = settings.toMap();
    MarloSettings result;
    qsizetype count = 0;
    bool isValid = true;
    forEachField<MarloSettings>([&](QLatin1StringView name, auto get, auto set) {
        using Number = std::decay_t<decltype(get(result))>;
        bool isNumber = false;
        const double number = fields.value(name).toDouble(&isNumber);
        isValid = isValid && isNumber && isA<Number>(number);
        if (isValid)
            set(result, Number(number));
        ++count;
    });
    if (!isValid || fields.size() != count)
        return std::nullopt;
    return result;
}

} // namespace

ComputerExtension::ComputerExtension(QObject *computer)
    : QObject(computer), m_computer(qobject_cast<VardaComputer *>(computer))
{
    connect(m_computer, &VardaComputer::stateChanged, this, &ComputerExtension::changed);
    connect(m_computer, &VardaComputer::currentJobChanged, this, &ComputerExtension::changed);
}

void ComputerExtension::setLinkMode(const QVariant &mode)
{
    if (m_linkMode == mode)
        return;
    m_linkMode = mode;
    std::optional<BleMode> insisted;
    if (mode.isValid() && !mode.isNull())
        insisted = mode.toInt() == int(BleMode::Sps) ? BleMode::Sps : BleMode::Gatt;
    m_computer->setLinkMode(insisted);
    Q_EMIT linkModeChanged();
}

void ComputerExtension::setLinger(int time)
{
    if (m_linger == time)
        return;
    m_linger = time;
    m_computer->setLinger(milliseconds(time));
    Q_EMIT lingerChanged();
}

int ComputerExtension::mtu() const
{
    return m_computer->mtu();
}

VardaIdentity ComputerExtension::identity() const
{
    return m_computer->identity();
}

int ComputerExtension::waitingJobs() const
{
    return int(m_computer->waitingJobs().size());
}

template <typename Job> Job *ComputerExtension::limited(Job *job) const
{
    if (m_idleLimit.isValid())
        job->setIdleLimit(milliseconds(m_idleLimit.toInt()));
    if (m_connectLimit.isValid())
        job->setConnectLimit(milliseconds(m_connectLimit.toInt()));
    if (m_totalLimit.isValid())
        job->setTotalLimit(milliseconds(m_totalLimit.toInt()));
    if (m_retries.isValid())
        job->setRetries(m_retries.toInt());
    return job;
}

/** QML keeps it from now on. */
template <typename Job> Job *ComputerExtension::give(Job *job)
{
    handOver(limited(job), m_computer);
    return job;
}

VardaJob *ComputerExtension::reject()
{
    VardaJob *const job = new RejectedJob(this);
    return give(job);
}

BleDeviceInfo ComputerExtension::deviceFromAddress(const QString &address, const QString &name)
{
    return BleDeviceInfo::fromAddress(address, name);
}

SearchJob *ComputerExtension::search(int seconds, bool allDevices)
{
    return give(m_computer->search(std::chrono::seconds(std::max(0, seconds)), allDevices));
}

VardaJob *ComputerExtension::connectToComputer()
{
    return give<VardaJob>(m_computer->connectToComputer());
}

VardaJob *ComputerExtension::connectToOnlyComputer()
{
    return give<VardaJob>(m_computer->connectToOnlyComputer());
}

VardaJob *ComputerExtension::disconnectFromComputer()
{
    return give<VardaJob>(m_computer->disconnectFromComputer());
}

VardaDoctor *ComputerExtension::examine()
{
    VardaDoctor *const job = VardaDoctor::examine(*m_computer);
    handOver(job, m_computer);
    return job;
}

VardaJob *ComputerExtension::readIdentity()
{
    return give<VardaJob>(m_computer->readIdentity());
}

VardaJob *ComputerExtension::readConfiguration(bool basic)
{
    return give<VardaJob>(m_computer->readConfiguration(basic));
}

VardaJob *ComputerExtension::readGasTables()
{
    return give<VardaJob>(m_computer->readGasTables());
}

VardaJob *ComputerExtension::readOwner()
{
    return give<VardaJob>(m_computer->readOwner());
}

VardaJob *ComputerExtension::readClock()
{
    return give<VardaJob>(m_computer->readClock());
}

VardaJob *ComputerExtension::readSensors()
{
    return give<VardaJob>(m_computer->readSensors());
}

VardaJob *ComputerExtension::readTissues()
{
    return give<VardaJob>(m_computer->readTissues());
}

VardaJob *ComputerExtension::readLog()
{
    return give<VardaJob>(m_computer->readLog());
}

VardaJob *ComputerExtension::readBinaryLog()
{
    return give<VardaJob>(m_computer->readBinaryLog());
}

VardaJob *ComputerExtension::readBatteryHistory()
{
    return give<VardaJob>(m_computer->readBatteryHistory());
}

VardaJob *ComputerExtension::readLogbook(const QList<int> &known)
{
    return give<VardaJob>(m_computer->readLogbook(numbersIn(known)));
}

VardaJob *ComputerExtension::readSamples(double number)
{
    return isA<std::uint16_t>(number)
               ? give<VardaJob>(m_computer->readSamples(std::uint16_t(number)))
               : reject();
}

DownloadJob *ComputerExtension::downloadDives(const QList<int> &known)
{
    return give(m_computer->downloadDives(numbersIn(known)));
}

SyncJob *ComputerExtension::sync(StoreType *store)
{
    if (!store)
        return nullptr;
    SyncJob *const job = syncLogbook(*m_computer, store->library());
    // The limits are those of what it does with the computer.
    if (DownloadJob *const download = job->download())
        limited(download);
    store->follow(job);
    handOver(job, m_computer);
    return job;
}

VardaJob *ComputerExtension::readLayouts()
{
    return give<VardaJob>(m_computer->readLayouts());
}

VardaJob *ComputerExtension::readLayout(double index)
{
    return isA<std::uint8_t>(index) ? give<VardaJob>(m_computer->readLayout(std::uint8_t(index)))
                                    : reject();
}

VardaJob *ComputerExtension::readActiveLayouts()
{
    return give<VardaJob>(new ActiveLayoutsJob(limited(m_computer->readActiveLayouts())));
}

VardaJob *ComputerExtension::writeOwner(const QString &owner)
{
    return give<VardaJob>(m_computer->writeOwner(owner));
}

VardaJob *ComputerExtension::setClock()
{
    return give<VardaJob>(m_computer->setClock());
}

VardaJob *ComputerExtension::writeSurfacePressure(double pressure)
{
    return isA<std::uint32_t>(pressure)
               ? give<VardaJob>(m_computer->writeSurfacePressure(std::uint32_t(pressure)))
               : reject();
}

VardaJob *ComputerExtension::writeSettings(const QVariant &settings)
{
    const std::optional<MarloSettings> valid = settingsIn(settings);
    return valid ? give<VardaJob>(m_computer->writeSettings(*valid)) : reject();
}

VardaJob *ComputerExtension::setSuperUserMode(bool on)
{
    return give<VardaJob>(m_computer->setSuperUserMode(on));
}

VardaJob *ComputerExtension::addLayout(const QByteArray &layout)
{
    return give<VardaJob>(m_computer->addLayout(layout));
}

VardaJob *ComputerExtension::removeLayout(double index)
{
    return isA<std::uint8_t>(index) ? give<VardaJob>(m_computer->removeLayout(std::uint8_t(index)))
                                    : reject();
}

VardaJob *ComputerExtension::removeAllLayouts()
{
    return give<VardaJob>(m_computer->removeAllLayouts());
}

VardaJob *ComputerExtension::activateLayout(double diveMode, double index)
{
    return isA<std::uint8_t>(diveMode) && isA<std::int8_t>(index)
               ? give<VardaJob>(
                     m_computer->activateLayout(std::uint8_t(diveMode), std::int8_t(index)))
               : reject();
}

VardaJob *ComputerExtension::deleteLastDive()
{
    return give<VardaJob>(m_computer->deleteLastDive());
}

VardaJob *ComputerExtension::eraseDives()
{
    return give<VardaJob>(m_computer->eraseDives());
}

FirmwareJob *ComputerExtension::uploadFirmware(const QByteArray &image, const QString &fileName,
                                               bool force)
{
    return give(m_computer->uploadFirmware(image, fileName, force));
}

VardaJob *ComputerExtension::restart()
{
    return give<VardaJob>(m_computer->restart());
}
