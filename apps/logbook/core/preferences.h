// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlocale.h>
#include <QtCore/qobject.h>
#include <QtCore/qsettings.h>
#include <QtCore/qurl.h>
#include <QtQml/qqmlregistration.h>

#include <varda/bledeviceinfo.h>

/** What the diver has chosen; kept at once, so that a killed app forgets nothing. */
class Preferences : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(Units units READ units WRITE setUnits NOTIFY unitsChanged)
    /** "en", "fr", or "" for the system's. */
    Q_PROPERTY(QString language READ language WRITE setLanguage NOTIFY languageChanged)
    /** Of the language in use, such as "fr_CH", for dates and numbers. */
    Q_PROPERTY(QString localeName READ localeName NOTIFY languageChanged)
    Q_PROPERTY(bool animated READ animated WRITE setAnimated NOTIFY animatedChanged)
    /** Where the dives are; that of the simulated computers cannot be changed. */
    Q_PROPERTY(QString storeFile READ storeFile WRITE setStoreFile NOTIFY storeFileChanged)
    Q_PROPERTY(QString defaultStoreFile READ defaultStoreFile CONSTANT)
    /** The computer that is remembered; invalid for none. */
    Q_PROPERTY(BleDeviceInfo device READ device WRITE setDevice NOTIFY deviceChanged)
    Q_PROPERTY(bool expert READ expert WRITE setExpert NOTIFY expertChanged)
    /** Whether the computers are simulated ones. */
    Q_PROPERTY(bool simulated READ simulated CONSTANT)

public:
    enum Units { Metric, Imperial };
    Q_ENUM(Units)

    explicit Preferences(QObject *parent = nullptr);

    /** Comes before the first Preferences. */
    static void setSimulated(bool on);

    [[nodiscard]] Units units() const;
    void setUnits(Units units);
    [[nodiscard]] QString language() const;
    void setLanguage(const QString &language);
    [[nodiscard]] QString localeName() const;
    [[nodiscard]] QLocale locale() const;
    [[nodiscard]] bool animated() const;
    void setAnimated(bool on);
    [[nodiscard]] QString storeFile() const;
    void setStoreFile(const QString &file);
    [[nodiscard]] static QString defaultStoreFile();
    [[nodiscard]] BleDeviceInfo device() const;
    void setDevice(const BleDeviceInfo &device);
    [[nodiscard]] bool expert() const;
    void setExpert(bool on);
    [[nodiscard]] static bool simulated();

    Q_INVOKABLE static QUrl folderOf(const QString &file);

Q_SIGNALS:
    void unitsChanged();
    void languageChanged();
    void animatedChanged();
    void storeFileChanged();
    void deviceChanged();
    void expertChanged();

private:
    bool keep(const QString &key, const QVariant &value);

    QSettings m_kept;
};
