// SPDX-License-Identifier: MIT
#include "jobs/work/firmware_p.h"

#include <algorithm>
#include <utility>

#include "jobs/exchange_p.h"
#include "jobs/vardajob_p.h"

using namespace Qt::StringLiterals;
using Reason = VardaJob::Reason;

FirmwareWork::FirmwareWork(const QByteArray &bytes, const QString &fileName, bool force)
    : m_bytes(bytes),
      m_fileName(fileName),
      m_force(force),
      m_image(FirmwareImage::fromData(bytes, fileName))
{
    needsIdentity = needsBootloader = true;
    writes = true;
    isLong = true;
    m_upload = {.what = u"upload"_s,
                .end = TidemarCommand::End_program,
                .send = [this](VardaSession &session, SessionDoor &) { return start(session); },
                .writes = true};
    m_verify = Requests::command(u"identification"_s, TidemarCommand::Identification);
    m_verify.isCheck = true;
}

JobEnd FirmwareWork::check()
{
    switch (m_image.kind) {
    case FirmwareImage::Kind::Empty:
        return {VardaJob::Rejected, Reason::BadArgument};
    case FirmwareImage::Kind::Unknown:
        return {VardaJob::Rejected, Reason::UnknownImage};
    case FirmwareImage::Kind::WithoutHeader:
    case FirmwareImage::Kind::Firmware:
    case FirmwareImage::Kind::Bootloader:
        break;
    }
    return {};
}

std::uint32_t FirmwareWork::installed(const VardaSession &session) const
{
    return m_image.kind == FirmwareImage::Kind::Bootloader ? session.bootloaderVersion()
                                                           : session.firmwareVersion();
}

Reason FirmwareWork::start(VardaSession &session)
{
    if (m_session != &session) {
        m_session = &session;
        QObject::disconnect(m_progress);
        m_progress = QObject::connect(&session, &VardaSession::uploadFirmwareProgress, job,
                                      [this](int sent, int /*percent*/) {
                                          // Of the last block it may count more than there is, and 0 at the very end.
                                          const qint64 size = m_bytes.size();
                                          const qint64 done = sent == 0 ? size
                                                                        : qMin<qint64>(sent, size);
                                          resumedAt = SessionDoor(*m_session).uploadResumedAt();
                                          VardaJobPrivate::of(*job).setProgress(done, size);
                                      });
    }
    m_isNew = installed(session) != m_image.version;
    switch (session.uploadFirmware(m_bytes, m_fileName, m_force)) {
    case -2:
    case -3:
        return Reason::SameVersion;
    case -4:
        return Reason::BootloaderUnknown;
    default: // what is no image was rejected before it had its turn
        return Reason::None;
    }
}

const Request *FirmwareWork::next()
{
    return m_stage == Stage::Verify ? &m_verify : &m_upload;
}

void FirmwareWork::done(VardaSession &session, Exchange & /*exchange*/)
{
    if (m_stage == Stage::Upload) {
        m_stage = Stage::Done;
        elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(session.uploadElapsed());
        endsLink = true;
        return;
    }
    // The end did not arrive, or was not liked: what is missing is sent again.
    m_stage = installed(session) == m_image.version && m_image.version != 0 ? Stage::Done
                                                                            : Stage::Upload;
}

bool FirmwareWork::interrupted(const JobEnd & /*end*/)
{
    if (m_stage != Stage::Upload || !m_session)
        return false;
    const SessionDoor door(*m_session);
    // A version that was there before shows nothing.
    if (door.uploadEndSent() && m_isNew)
        m_stage = Stage::Verify;
    const qint64 before = std::exchange(m_kept, std::max(m_kept, door.uploadResumedAt()));
    return m_kept > before;
}

// The job

namespace {

const FirmwareWork *workOf(const FirmwareJob &job)
{
    return static_cast<const FirmwareWork *>(VardaJobPrivate::of(job).work.get());
}

} // namespace

FirmwareJob::FirmwareJob(VardaJobPrivate *job) : VardaJob(job)
{
    static_cast<FirmwareWork *>(job->work.get())->job = this;
    job->unit = Unit::Bytes;
}

qint64 FirmwareJob::resumedAt() const
{
    return workOf(*this)->resumedAt;
}

std::chrono::milliseconds FirmwareJob::elapsed() const
{
    return workOf(*this)->elapsed;
}
