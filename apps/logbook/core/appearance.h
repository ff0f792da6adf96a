// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtQml/qqmlregistration.h>

/** What the system says about how an app should look. */
class Appearance : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ dark NOTIFY changed)
    /** Height of the font that the user has chosen, in pixels. */
    Q_PROPERTY(double fontSize READ fontSize NOTIFY changed)

public:
    explicit Appearance(QObject *parent = nullptr);

    [[nodiscard]] static bool dark();
    [[nodiscard]] static double fontSize();

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void changed();
};
