// SPDX-License-Identifier: MIT
#include "translation.h"

#include <QtCore/qcoreapplication.h>
#include <QtCore/qlibraryinfo.h>
#include <QtCore/qlocale.h>
#include <QtQml/qqmlengine.h>

#include "preferences.h"

using namespace Qt::StringLiterals;

Translation::Translation(QQmlEngine *engine, const Preferences *preferences)
    : QObject(engine), m_engine(engine), m_preferences(preferences)
{
    connect(preferences, &Preferences::languageChanged, this, &Translation::apply);
    apply();
}

Translation::~Translation()
{
    QCoreApplication::removeTranslator(&m_own);
    QCoreApplication::removeTranslator(&m_qt);
}

void Translation::apply()
{
    const QLocale locale = m_preferences->locale();
    QLocale::setDefault(locale);
    const QString language = QLocale::languageToCode(locale.language());
    QCoreApplication::removeTranslator(&m_own);
    QCoreApplication::removeTranslator(&m_qt);
    // Qt's own texts, such as those of a file dialog; English needs none.
    if (m_qt.load(u"qtbase_"_s + language, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_qt);
    // English has its plural forms there.
    if (m_own.load(u":/i18n/logbook_%1.qm"_s.arg(language)))
        QCoreApplication::installTranslator(&m_own);
    m_engine->retranslate();
}
