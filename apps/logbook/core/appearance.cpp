// SPDX-License-Identifier: MIT
#include "appearance.h"

#include <QtCore/qcoreevent.h>
#include <QtGui/qfontinfo.h>
#include <QtGui/qguiapplication.h>
#include <QtGui/qpalette.h>
#include <QtGui/qstylehints.h>

Appearance::Appearance(QObject *parent) : QObject(parent)
{
    qApp->installEventFilter(this);
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    connect(QGuiApplication::styleHints(), &QStyleHints::colorSchemeChanged, this,
            &Appearance::changed);
#endif
}

bool Appearance::dark()
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    const Qt::ColorScheme scheme = QGuiApplication::styleHints()->colorScheme();
    if (scheme != Qt::ColorScheme::Unknown)
        return scheme == Qt::ColorScheme::Dark;
#endif
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::Window).lightness()
           < palette.color(QPalette::WindowText).lightness();
}

double Appearance::fontSize()
{
    return QFontInfo(QGuiApplication::font()).pixelSize();
}

bool Appearance::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == qApp
        && (event->type() == QEvent::ApplicationPaletteChange
            || event->type() == QEvent::ApplicationFontChange))
        Q_EMIT changed();
    return QObject::eventFilter(watched, event);
}
