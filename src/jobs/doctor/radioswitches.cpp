// SPDX-License-Identifier: MIT
#include "jobs/doctor/radioswitches_p.h"

#include <QtCore/qdir.h>
#include <QtCore/qfile.h>

using namespace Qt::StringLiterals;

namespace {

QString lineOf(const QString &file)
{
    constexpr qint64 kLongest = 256;
    QFile opened(file);
    return opened.open(QIODevice::ReadOnly) ? QString::fromUtf8(opened.read(kLongest)).trimmed()
                                            : QString();
}

} // namespace

QString radioSwitchFolder()
{
    return qEnvironmentVariable("VARDA_RFKILL", u"/sys/class/rfkill"_s);
}

QList<RadioSwitch> radioSwitches(const QString &folder)
{
    QList<RadioSwitch> switches;
    if (folder.isEmpty())
        return switches;
    const QStringList names = QDir(folder).entryList({u"rfkill*"_s}, QDir::Dirs, QDir::Name);
    for (const QString &each : names) {
        const QString path = folder + u'/' + each + u'/';
        if (lineOf(path + u"type"_s) == "bluetooth"_L1)
            switches.append({lineOf(path + u"name"_s), lineOf(path + u"soft"_s) == "1"_L1,
                             lineOf(path + u"hard"_s) == "1"_L1});
    }
    return switches;
}
