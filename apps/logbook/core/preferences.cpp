// SPDX-License-Identifier: MIT
#include "preferences.h"

#include <QtCore/qfileinfo.h>

#include <varda/logbookstore.h>

using namespace Qt::StringLiterals;

namespace {

bool &simulation()
{
    static bool on = false;
    return on;
}

/** What is remembered of a simulated computer is no use for a real one. */
QString deviceKey(QLatin1StringView field)
{
    return (simulation() ? "simulated/"_L1 : "computer/"_L1) + field;
}

} // namespace

Preferences::Preferences(QObject *parent) : QObject(parent) { }

void Preferences::setSimulated(bool on)
{
    simulation() = on;
}

bool Preferences::simulated()
{
    return simulation();
}

Preferences::Units Preferences::units() const
{
    const bool imperial = QLocale::system().measurementSystem() == QLocale::ImperialUSSystem;
    return m_kept.value("units"_L1, imperial ? Imperial : Metric).toInt() == Imperial ? Imperial
                                                                                      : Metric;
}

void Preferences::setUnits(Units units)
{
    if (keep(u"units"_s, int(units)))
        Q_EMIT unitsChanged();
}

QString Preferences::language() const
{
    const QString language = m_kept.value("language"_L1).toString();
    return language == "en"_L1 || language == "fr"_L1 ? language : QString();
}

void Preferences::setLanguage(const QString &language)
{
    if (keep(u"language"_s, language))
        Q_EMIT languageChanged();
}

QLocale Preferences::locale() const
{
    const QLocale system = QLocale::system();
    const QString chosen = language();
    const bool french = chosen.isEmpty() ? system.language() == QLocale::French : chosen == "fr"_L1;
    const QLocale::Language language = french ? QLocale::French : QLocale::English;
    return system.language() == language ? system : QLocale(language);
}

QString Preferences::localeName() const
{
    return locale().name();
}

bool Preferences::animated() const
{
    return m_kept.value("animated"_L1, true).toBool();
}

void Preferences::setAnimated(bool on)
{
    if (keep(u"animated"_s, on))
        Q_EMIT animatedChanged();
}

QString Preferences::storeFile() const
{
    const QString chosen = m_kept.value("storeFile"_L1).toString();
    return chosen.isEmpty() || simulated() ? defaultStoreFile() : chosen;
}

void Preferences::setStoreFile(const QString &file)
{
    if (!simulated() && keep(u"storeFile"_s, file == defaultStoreFile() ? QString() : file))
        Q_EMIT storeFileChanged();
}

QString Preferences::defaultStoreFile()
{
    return LogbookStore::defaultFile(simulated());
}

BleDeviceInfo Preferences::device() const
{
    const QString address = m_kept.value(deviceKey("address"_L1)).toString();
    if (address.isEmpty())
        return {};
    return BleDeviceInfo::fromAddress(address, m_kept.value(deviceKey("name"_L1)).toString());
}

void Preferences::setDevice(const BleDeviceInfo &device)
{
    const bool moved = keep(deviceKey("address"_L1), device.address());
    const bool renamed = keep(deviceKey("name"_L1), device.name());
    if (moved || renamed)
        Q_EMIT deviceChanged();
}

bool Preferences::expert() const
{
    return m_kept.value("expert"_L1, false).toBool();
}

void Preferences::setExpert(bool on)
{
    if (keep(u"expert"_s, on))
        Q_EMIT expertChanged();
}

QUrl Preferences::folderOf(const QString &file)
{
    return QUrl::fromLocalFile(QFileInfo(file).absolutePath());
}

bool Preferences::keep(const QString &key, const QVariant &value)
{
    if (m_kept.value(key) == value)
        return false;
    m_kept.setValue(key, value);
    m_kept.sync();
    return true;
}
