// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtCore/qprocess.h>
#include <QtCore/qtemporarydir.h>

#include <memory>

namespace simulator {

/** A message bus of our own, that lives as long as this object. */
class PrivateBus : public QObject
{
    Q_OBJECT

public:
    explicit PrivateBus(QObject *parent = nullptr);
    ~PrivateBus() override;

    bool start(QString *error);
    QString address() const;

Q_SIGNALS:
    void died();

private:
    bool makeFolder(QString *error);
    bool writeConfiguration(QString *error) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    QProcess m_daemon;
};

} // namespace simulator
