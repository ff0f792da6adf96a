// SPDX-License-Identifier: MIT
#include "bluez/privatebus.h"

#include <QtCore/qdir.h>
#include <QtCore/qfile.h>

#include <sys/prctl.h>

#include <csignal>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

// What libdbus takes; a socket's own limit is hardly more.
constexpr qsizetype kLongestSocketPath = 99;

// Whoever reaches the socket may do everything: it stands in a folder that only its owner can
// enter. The limits of a session bus fit a test that sends thousands of notifications at once.
constexpr auto kConfiguration =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>%1</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
  <limit name="max_incoming_bytes">1000000000</limit>
  <limit name="max_outgoing_bytes">1000000000</limit>
  <limit name="max_message_size">1000000000</limit>
  <limit name="max_replies_per_connection">50000</limit>
  <limit name="max_match_rules_per_connection">50000</limit>
</busconfig>
)";

} // namespace

PrivateBus::PrivateBus(QObject *parent) : QObject(parent)
{
    m_daemon.setStandardInputFile(QProcess::nullDevice());
    // The bus goes with us even if we are killed.
    m_daemon.setChildProcessModifier([] {
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        // We may have blocked the signals that are meant to stop it.
        sigset_t none;
        sigemptyset(&none);
        ::pthread_sigmask(SIG_SETMASK, &none, nullptr);
    });
}

PrivateBus::~PrivateBus()
{
    m_daemon.disconnect(this);
    if (m_daemon.state() == QProcess::NotRunning)
        return;
    m_daemon.terminate();
    if (!m_daemon.waitForFinished(2000)) {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
}

QString PrivateBus::address() const
{
    // The only characters that stand for themselves in an address are these and letters and digits.
    return u"unix:path="_s
           + QString::fromLatin1(
               QFile::encodeName(m_folder->filePath(u"bus"_s)).toPercentEncoding("/", "~"));
}

bool PrivateBus::makeFolder(QString *error)
{
    QStringList parents{QDir(QDir::tempPath()).absolutePath()};
    for (const QString &shorter : {qEnvironmentVariable("XDG_RUNTIME_DIR"), u"/tmp"_s}) {
        if (QDir::isAbsolutePath(shorter))
            parents.append(shorter);
    }
    // NOLINTNEXTLINE(readability-use-anyofallof): what it makes stays
    for (const QString &parent : parents) {
        const QString name = parent + u"/varda-simulator-XXXXXX"_s;
        if (QFile::encodeName(name + u"/bus"_s).size() > kLongestSocketPath)
            continue;
        m_folder = std::make_unique<QTemporaryDir>(name);
        if (m_folder->isValid())
            return true;
        *error = u"cannot make a folder in %1: %2"_s.arg(parent, m_folder->errorString());
    }
    return false;
}

bool PrivateBus::writeConfiguration(QString *error) const
{
    QFile file(m_folder->filePath(u"bus.conf"_s));
    if (file.open(QIODevice::WriteOnly)
        && file.write(QString::fromLatin1(kConfiguration).arg(address()).toUtf8()) > 0
        && file.flush())
        return true;
    *error = u"cannot write %1: %2"_s.arg(file.fileName(), file.errorString());
    return false;
}

bool PrivateBus::start(QString *error)
{
    if (!makeFolder(error) || !writeConfiguration(error))
        return false;

    m_daemon.start(u"dbus-daemon"_s, {u"--nofork"_s, u"--print-address"_s,
                                      u"--config-file="_s + m_folder->filePath(u"bus.conf"_s)});
    if (!m_daemon.waitForStarted()) {
        *error = u"cannot start dbus-daemon: %1"_s.arg(m_daemon.errorString());
        return false;
    }
    // It prints its address when it listens.
    while (!m_daemon.canReadLine()) {
        if (!m_daemon.waitForReadyRead(30000)) {
            *error = u"dbus-daemon did not start: "_s
                     + QString::fromLocal8Bit(m_daemon.readAllStandardError()).trimmed();
            return false;
        }
    }
    connect(&m_daemon, &QProcess::finished, this, &PrivateBus::died);
    return true;
}

} // namespace simulator
