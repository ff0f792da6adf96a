// SPDX-License-Identifier: MIT
#include "world.h"

#include <QtCore/qcoreapplication.h>
#include <QtCore/qjsonarray.h>
#include <QtCore/qjsondocument.h>
#include <QtCore/qtimer.h>
#include <QtDBus/qdbusconnection.h>
#include <QtDBus/qdbusextratypes.h>
#include <QtDBus/qdbusmessage.h>
#include <QtDBus/qdbuspendingcall.h>

#include <sys/prctl.h>

#include <csignal>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString kService = u"org.varda.Simulator"_s;
const QString kPath = u"/org/varda/Simulator"_s;
const QString kInterface = u"org.varda.Simulator1"_s;
const QString kAddress = u"00:AA:01:01:00:01"_s;
const QString kAdapter = u"/org/bluez/hci0"_s;
const QString kDevice = u"/org/bluez/hci0/dev_00_AA_01_01_00_01"_s;
constexpr int kStreamGap = 100;

QDBusMessage message(const QString &method, const QVariantList &arguments)
{
    auto call = QDBusMessage::createMethodCall(kService, kPath, kInterface, method);
    call.setArguments(arguments);
    return call;
}

QDBusMessage call(const QString &method, const QVariantList &arguments = {})
{
    const QDBusMessage reply = QDBusConnection::systemBus().call(message(method, arguments));
    if (reply.type() == QDBusMessage::ErrorMessage)
        qFatal("%s: %s", qPrintable(method), qPrintable(reply.errorMessage()));
    return reply;
}

void tell(const QString &method, const QVariantList &arguments = {})
{
    QDBusConnection::systemBus().asyncCall(message(method, arguments));
}

quint8 commandOf(const QJsonObject &event)
{
    constexpr qsizetype kCommandAt = 8;
    const QByteArray frame = QByteArray::fromHex(event["hex"_L1].toString().toLatin1());
    return frame.size() > kCommandAt ? quint8(frame[kCommandAt]) : quint8(0);
}

} // namespace

World::World(QObject *parent) : QObject(parent)
{
    QString error;
    if (!m_bus.start(&error))
        qFatal("%s", qPrintable(error));
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_bus.address().toUtf8());
    m_daemon.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_daemon.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    startDaemon();
    QDBusConnection::systemBus().connect(kService, kPath, kInterface, u"Recorded"_s, this,
                                         SLOT(onRecorded(QString)));
}

World::~World()
{
    killDaemon();
}

void World::startDaemon()
{
    m_daemon.start(QStringLiteral(VARDA_FAULTS_DAEMON), {m_bus.address()});
    constexpr int kLong = 1'000'000; // on the fast clock
    while (!m_daemon.canReadLine()) {
        if (!m_daemon.waitForReadyRead(kLong))
            qFatal("the daemon does not start");
    }
    m_daemon.readLine();
}

void World::killDaemon()
{
    m_daemon.kill();
    m_daemon.waitForFinished(-1);
}

void World::load(const QByteArray &scenario)
{
    forget();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    call(u"Load"_s, {QString::fromUtf8(scenario)});
    // What the old world had sent must not be taken for the new one's.
    settle();
}

bool World::heal()
{
    forget();
    const bool lost = std::exchange(m_lost, false);
    if (m_daemon.state() == QProcess::NotRunning)
        startDaemon();
    call(u"SetPowered"_s, {true});
    settle();
    return lost;
}

void World::forget()
{
    ++m_generation;
    m_moments.clear();
    m_deeds.clear();
    m_struck = m_waits = false;
}

void World::settle()
{
    ping();
    QCoreApplication::processEvents();
}

// Something that the daemon itself answers, behind all that it was told before.
void World::ping()
{
    QDBusConnection::systemBus().call(message(u"State"_s, {kAddress}));
}

QList<Exchange> World::exchanges()
{
    const QByteArray json = call(u"Record"_s).arguments().value(0).toString().toUtf8();
    QList<Exchange> exchanges;
    const QJsonArray events = QJsonDocument::fromJson(json).array();
    for (const auto &each : events) {
        const QJsonObject event = each.toObject();
        const QString name = event["event"_L1].toString();
        if (name == "frame"_L1)
            exchanges.append(Exchange{commandOf(event), {}});
        else if (name == "notification"_L1 && !exchanges.isEmpty())
            exchanges.last().notifications.append(
                QByteArray::fromHex(event["hex"_L1].toString().toLatin1()));
    }
    return exchanges;
}

QJsonObject World::state()
{
    const QByteArray json = call(u"State"_s, {kAddress}).arguments().value(0).toString().toUtf8();
    return QJsonDocument::fromJson(json).object();
}

void World::at(const QString &event, int command, int nth, const QList<Deed> &deeds)
{
    forget();
    m_moments = {{event, command, nth, deeds}};
}

void World::then(const Moment &moment)
{
    m_moments.append(moment);
}

void World::perform(const QList<Deed> &deeds)
{
    forget();
    m_struck = true;
    m_deeds = deeds;
    next();
}

void World::onRecorded(const QString &json)
{
    if (m_moments.isEmpty())
        return;
    Moment &moment = m_moments.first();
    const QJsonObject event = QJsonDocument::fromJson(json.toUtf8()).object();
    if (event["event"_L1].toString() != moment.event)
        return;
    if (moment.command >= 0 && commandOf(event) != moment.command)
        return;
    if (--moment.nth > 0)
        return;
    m_struck = true;
    m_deeds += m_moments.takeFirst().deeds;
    if (!m_waits)
        next();
}

void World::next()
{
    while (!m_deeds.isEmpty()) {
        const Deed deed = m_deeds.constFirst();
        if (deed.kind == Deed::Wait || deed.kind == Deed::Stream) {
            if (deed.kind == Deed::Stream)
                doNow({Deed::Notify, deed.bytes, 0});
            m_waits = true;
            QTimer::singleShot(deed.kind == Deed::Wait ? deed.ms : kStreamGap, Qt::PreciseTimer,
                               this, [this, deed, generation = m_generation] {
                                   if (generation != m_generation)
                                       return;
                                   m_waits = false;
                                   if (deed.kind == Deed::Wait)
                                       m_deeds.removeFirst();
                                   next();
                               });
            return;
        }
        m_deeds.removeFirst();
        doNow(deed);
    }
}

void World::doNow(const Deed &deed)
{
    switch (deed.kind) {
    case Deed::Notify:
        tell(u"Notify"_s, {kAddress, deed.bytes});
        break;
    case Deed::Drop:
        tell(u"Drop"_s, {kAddress});
        break;
    case Deed::AdapterOff:
        tell(u"SetPowered"_s, {false});
        break;
    case Deed::RemoveAdapter:
        m_lost = true;
        tell(u"RemoveAdapter"_s);
        break;
    case Deed::RemoveDevice: {
        m_lost = true;
        auto remove = QDBusMessage::createMethodCall(u"org.bluez"_s, kAdapter,
                                                     u"org.bluez.Adapter1"_s, u"RemoveDevice"_s);
        remove.setArguments({QVariant::fromValue(QDBusObjectPath(kDevice))});
        QDBusConnection::systemBus().asyncCall(remove);
        break;
    }
    case Deed::Freeze:
        tell(u"Freeze"_s, {uint(deed.ms)});
        break;
    case Deed::Kill:
        m_lost = true;
        ping(); // what was sent before gets out before
        killDaemon();
        break;
    case Deed::Restart:
        m_lost = true;
        ping(); // what was sent before gets out before
        killDaemon();
        startDaemon();
        break;
    case Deed::Load:
        tell(u"Load"_s, {QString::fromUtf8(deed.bytes)});
        break;
    case Deed::Call:
        deed.call();
        break;
    case Deed::Wait:
    case Deed::Stream:
        break;
    }
}

bool World::wait(const std::function<bool()> &done, int ms)
{
    QTimer timer;
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer);
    timer.start(ms);
    while (!done()) {
        if (!timer.isActive())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}
