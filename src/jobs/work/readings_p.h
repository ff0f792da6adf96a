// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include <functional>
#include <utility>

#include <varda/tidemardiveheader.h>
#include <varda/vardaidentity.h>
#include <varda/vardasensors.h>

#include "jobs/work/work_p.h"

/** A fixed list of requests, and the result that is taken when all are answered. */
class ListWork final : public Work
{
public:
    /** Called when the last request is answered: nothing later can change the result. */
    using Take = std::function<QVariant(VardaSession &, SessionDoor &, const Exchange &)>;

    /** For what has no result but that it is done. */
    static QVariant nothing(VardaSession &, SessionDoor &, const Exchange &) { return {}; }

    ListWork(QList<Request> requests, Take take)
        : m_requests(std::move(requests)), m_take(std::move(take))
    {
        for (const Request &request : std::as_const(m_requests))
            writes = writes || request.writes;
    }

    const Request *next() override;
    void done(VardaSession &session, Exchange &exchange) override;
    bool isComplete() const override { return !m_requests.isEmpty() && m_at == m_requests.size(); }
    QVariant result() override { return m_result; }

private:
    QList<Request> m_requests;
    qsizetype m_at = 0;
    Take m_take;
    QVariant m_result;
};

/** The dives that an application has, and how many of them the computer can be told. */
class KnownDives
{
public:
    explicit KnownDives(const QList<std::uint16_t> &numbers) { replace(numbers); }
    void replace(QList<std::uint16_t> numbers);

    [[nodiscard]] bool contains(std::uint16_t number) const;
    /** The newest that one write carries over a link of that MTU; 0 or less: not known. */
    [[nodiscard]] QList<std::uint16_t> newest(int mtu) const;
    /** The system has refused the write, so its MTU is the smallest there is. */
    void expectSmallestMtu() { m_smallest = true; }

private:
    QList<std::uint16_t> m_sorted;
    bool m_smallest = false;
};

/** The requests that several jobs have. */
namespace Requests {

[[nodiscard]] Request command(QString what, TidemarCommand::TidemarCommandIn command);
/** Also forgets what the computer said of itself before. */
[[nodiscard]] Request identification();
[[nodiscard]] Request bootloaderVersion();
/** Left out where it cannot arrive. */
[[nodiscard]] Request serialNumber();
[[nodiscard]] Request configuration(bool basic);
/** The headers of the dives but @p known, as many as one write carries; it refers to @p known. */
[[nodiscard]] Request logbook(const KnownDives &known);
[[nodiscard]] Request samples(std::uint16_t number);
[[nodiscard]] QList<Request> sensors();

} // namespace Requests

/** What a computer is: all that can be read of it. */
class IdentityWork final : public Work
{
public:
    IdentityWork();

    const Request *next() override;
    void done(VardaSession &session, Exchange &exchange) override;
    bool failed(const JobEnd &end) override;
    bool isComplete() const override { return m_stage == Stage::Complete; }
    QVariant result() override { return QVariant::fromValue(m_identity); }

private:
    enum class Stage { Identification, SerialNumber, Bootloader, Complete };
    void enter(Stage stage);

    Stage m_stage = Stage::Identification;
    Request m_request;
    VardaIdentity m_identity;
};

/** The headers of the dives that are not known. */
class LogbookWork final : public Work
{
public:
    explicit LogbookWork(const QList<std::uint16_t> &known);

    const Request *next() override { return &m_request; }
    void done(VardaSession &session, Exchange &exchange) override;
    bool interrupted(const JobEnd &end) override;
    bool isComplete() const override { return m_complete; }
    QVariant result() override { return QVariant::fromValue(m_headers); }

private:
    KnownDives m_known;
    Request m_request;
    bool m_complete = false;
    QList<TidemarDiveHeader> m_headers;
};

[[nodiscard]] VardaIdentity identityOf(const VardaSession &session);
[[nodiscard]] VardaSensors sensorsOf(const VardaSession &session);
/** Each number once, the oldest first. */
[[nodiscard]] QList<TidemarDiveHeader> oldestFirst(const QList<TidemarDiveHeader> &headers);
