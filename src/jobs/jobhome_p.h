// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qcoreapplication.h>
#include <QtCore/qcoreevent.h>
#include <QtCore/qobject.h>
#include <QtCore/qthread.h>

#include "transport/deletelater_p.h"

/** Parent of the jobs: goes when the computer and all of its jobs are gone. */
class JobHome final : public QObject
{
public:
    /** No more jobs come. If the event loop ends before the last one is deleted, the
     *  application takes it along. */
    void leave()
    {
        m_left = true;
        if (auto *const application = QCoreApplication::instance();
            application && application->thread() == thread())
            setParent(application);
        goIfEmpty();
    }

protected:
    void childEvent(QChildEvent *event) override
    {
        if (event->removed())
            goIfEmpty();
    }

private:
    void goIfEmpty()
    {
        if (m_left && children().isEmpty())
            DeleteLater()(this);
    }

    bool m_left = false;
};
