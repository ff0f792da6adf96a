// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qpointer.h>

#include <memory>
#include <optional>

#include "case.h"
#include "jobexpectation.h"

/** Runs the cases of one setting through the library's own jobs. */
class JobRunner
{
public:
    JobRunner(World &world, const Setting &setting);
    ~JobRunner();

    /** The same as every time, or what is wrong with it. */
    [[nodiscard]] std::optional<Healthy> healthy(QString *error);
    /** Every case of the matrix, with repetitions and without, and what only jobs have. */
    [[nodiscard]] QList<Case> cases(const Healthy &healthy);
    /** What is wrong; empty if nothing is. */
    [[nodiscard]] QStringList run(const Case &each, const Healthy &healthy, bool watched);

private:
    class Watch;

    void load(const QByteArray &keys = {}, const QByteArray &faults = {});
    /** Asks for the job of this setting. */
    [[nodiscard]] std::unique_ptr<Watch> ask();
    void renewComputer();
    [[nodiscard]] bool connectComputer();
    [[nodiscard]] QByteArray writtenState();
    [[nodiscard]] QStringList runFaulty(const Case &each, const Healthy &healthy);
    [[nodiscard]] QStringList readOwner(const Healthy &healthy);
    [[nodiscard]] QStringList recover(const Case &each, const Healthy &healthy);
    void addSecondFaults(const Healthy &healthy, QList<Case> &cases) const;
    void addDeeds(const Healthy &healthy, QList<Case> &cases);

    World &m_world;
    const Setting m_setting;
    std::unique_ptr<VardaComputer> m_computer;
    QPointer<VardaJob> m_job; ///< that the application's deeds are done to
};
