// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qstring.h>

namespace simulator {

/**
 * The name that an adapter shows to those who are connected, for as long as this lives. Systems
 * put it in the place of the advertised one, and would not find the computer again.
 */
class AdapterName
{
public:
    AdapterName(const QString &address, const QString &name);
    ~AdapterName();
    Q_DISABLE_COPY_MOVE(AdapterName)

private:
    void set(const QString &name) const;

    QString m_path;
    QString m_before; ///< empty: the system's own
};

} // namespace simulator
