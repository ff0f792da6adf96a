// SPDX-License-Identifier: MIT
#include <varda/vardatrace.h>

#include <QtCore/qpointer.h>

#include <varda/vardasession.h>

#include "jobs/trace/linktrace_p.h"
#include "session/sessiondoor_p.h"

class VardaTrace::Private
{
public:
    Private(VardaSession &traced, QIODevice *device, bool redacted)
        : session(&traced), writer(device, redacted), link(writer)
    {
        SessionDoor(traced).listen(&link);
    }
    ~Private()
    {
        if (session)
            SessionDoor(*session).listen(nullptr);
    }
    Q_DISABLE_COPY_MOVE(Private)

    QPointer<VardaSession> session;
    TraceWriter writer;
    LinkTrace link;
};

VardaTrace *VardaTrace::attach(VardaSession &session, QIODevice *device, Content content)
{
    delete session.findChild<VardaTrace *>(QString(), Qt::FindDirectChildrenOnly);
    return std::unique_ptr<VardaTrace>(new VardaTrace(session, device, content)).release();
}

VardaTrace::VardaTrace(VardaSession &session, QIODevice *device, Content content)
    : QObject(&session), d(std::make_unique<Private>(session, device, content == Redacted))
{
    connect(&d->writer, &TraceWriter::failed, this, &VardaTrace::failed);
    connect(&session, &VardaSession::endCommand, this,
            [this, &session](TidemarCommand::TidemarCommandIn command) {
                if (command != TidemarCommand::Identification)
                    return;
                VardaIdentity identity;
                identity.model = session.computerModel();
                identity.mode = session.currentMode();
                identity.firmwareVersionStr = session.firmwareVersionStr();
                d->link.computerKnown(identity);
            });
}

VardaTrace::~VardaTrace() = default;
