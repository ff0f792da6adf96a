// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qpointer.h>

#include <chrono>

#include <varda/firmwareimage.h>
#include <varda/firmwarejob.h>

#include "jobs/work/readings_p.h"

/**
 * Uploads an image, over as many links as it takes. Where the link is lost after the end of it was
 * sent, the version that the computer has then says whether it was accepted.
 */
class FirmwareWork final : public Work
{
public:
    FirmwareWork(const QByteArray &bytes, const QString &fileName, bool force);

    JobEnd check() override;
    const Request *next() override;
    bool isComplete() const override { return m_stage == Stage::Done; }
    void done(VardaSession &session, Exchange &exchange) override;
    bool interrupted(const JobEnd &end) override;
    QVariant result() override { return qint64(m_bytes.size()); }

    QPointer<FirmwareJob> job;
    qint64 resumedAt = 0;
    std::chrono::milliseconds elapsed{0};

private:
    enum class Stage { Upload, Verify, Done };

    VardaJob::Reason start(VardaSession &session);
    [[nodiscard]] std::uint32_t installed(const VardaSession &session) const;

    QByteArray m_bytes;
    QString m_fileName;
    bool m_force;
    FirmwareImage m_image;
    Stage m_stage = Stage::Upload;
    Request m_upload;
    Request m_verify;
    QMetaObject::Connection m_progress;
    VardaSession *m_session = nullptr;
    bool m_isNew = true; ///< the computer has had another version
    qint64 m_kept = 0;   ///< bytes that the computer had at the most when an upload was resumed
};
