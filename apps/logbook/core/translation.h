// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtCore/qtranslator.h>

class Preferences;
class QQmlEngine;

/** Puts the texts of an engine into the chosen language, also when another one is chosen. */
class Translation : public QObject
{
    Q_OBJECT

public:
    Translation(QQmlEngine *engine, const Preferences *preferences);
    ~Translation() override;

private:
    void apply();

    QQmlEngine *m_engine;
    const Preferences *m_preferences;
    QTranslator m_own;
    QTranslator m_qt;
};
