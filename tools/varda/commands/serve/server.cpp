// SPDX-License-Identifier: MIT
#include "commands/serve/server.h"

#include "commands/serve/methods.h"
#include "output/safetext.h"
#include "run/failure.h"
#include "run/finding.h"
#include "run/interrupt.h"
#include "run/recording.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int kProtocol = 1;
constexpr std::size_t kMostTasks = 1000;
/** A program that has forgotten about a computer does not keep it from others. */
constexpr auto kLinger = 30s;

QByteArray keyOf(const QJsonValue &id)
{
    return jsonOfId(id).line();
}

/** What the options name, by its address. @throws Failure */
QString usualAddress(const Options &options)
{
    if (options.device.isEmpty())
        return {};
    if (const auto address = addressIn(options.device))
        return *address;
    throw Failure{ExitCode::UsageError,
                  u"\"%1\" is a name, and serve takes addresses only"_s.arg(options.device),
                  u"Use --device with the computer's address."_s};
}

} // namespace

Server::Server(const Options &options)
    : m_options(options), m_outlet(STDOUT_FILENO), m_input(STDIN_FILENO, QSocketNotifier::Read)
{
    m_options.device = usualAddress(options);
    connect(&m_input, &QSocketNotifier::activated, this, &Server::onReadable);
    connect(&m_outlet, &Outlet::behindChanged, this, &Server::onBehind);
    connect(&m_outlet, &Outlet::emptied, this, &Server::quitIfDone);
    connect(&m_outlet, &Outlet::failed, this, [this](int error) {
        m_writeError = error;
        close();
    });
    if (const Interrupt *interrupt = Interrupt::instance())
        connect(interrupt, &Interrupt::interrupted, this, &Server::close);
}

Server::~Server() = default;

void Server::run()
{
    sendHello();
    if (Interrupt::number() != 0)
        close();
    m_loop.exec();
    if (Interrupt::number() != 0)
        throw Interrupt::failure();
    if (m_writeError == EPIPE)
        throw Failure{ExitCode(int(ExitCode::Signal) + SIGPIPE), {}, {}};
    if (m_writeError != 0) {
        throw Failure{ExitCode::JobFailed,
                      u"the output could not be written: "_s + qt_error_string(m_writeError),
                      {}};
    }
}

void Server::sendHello()
{
    const auto names = listOf(allMethods(), [](const Method &each) { return QString(each.name); });
    send({{"type"_L1, u"hello"_s},
          {"protocol"_L1, kProtocol},
          {"version"_L1, QStringLiteral(VARDA_VERSION)},
          {"qt"_L1, QString::fromLatin1(qVersion())},
          {"methods"_L1, names}});
}

void Server::send(const Fields &line)
{
    m_outlet.send(safeJson(QString::fromUtf8(Json(line).line())).toUtf8());
}

void Server::sendError(const QJsonValue &id, const RequestError &error)
{
    send({{"type"_L1, u"error"_s}, {"id"_L1, jsonOfId(id)}, {"error"_L1, jsonOf(error)}});
}

void Server::onReadable()
{
    std::array<char, 1 << 16> buffer{};
    const auto count = ::read(STDIN_FILENO, buffer.data(), buffer.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (count <= 0)
        return close();
    for (const auto &line : m_lines.add({buffer.data(), count}))
        onLine(line);
}

void Server::onBehind()
{
    m_input.setEnabled(!m_isClosing && !m_outlet.isBehind());
    for (const auto &[key, task] : m_tasks)
        task->hold(m_outlet.isBehind());
}

void Server::onLine(const LineReader::Line &line)
{
    Request request;
    try {
        if (line.isTooLong) {
            throw RequestError{u"LineTooLong"_s,
                               u"the line has more than %1 bytes"_s.arg(LineReader::kLongest)};
        }
        request.read(line.bytes);
        accept(request);
    } catch (const RequestError &error) {
        // It is not the end of another request with this id.
        sendError(m_tasks.contains(keyOf(request.id)) ? QJsonValue() : request.id, error);
    }
}

/** @throws RequestError */
void Server::accept(const Request &request)
{
    if (m_tasks.contains(keyOf(request.id))) {
        throw RequestError{u"DuplicateId"_s,
                           u"another request with the id %1 has not ended yet"_s.arg(
                               QString::fromUtf8(keyOf(request.id)))};
    }
    if (m_tasks.size() >= kMostTasks) {
        throw RequestError{u"TooManyRequests"_s,
                           u"%1 requests have not ended yet"_s.arg(kMostTasks)};
    }
    begin(request);
}

void Server::begin(const Request &request)
{
    VardaComputer *computer = &m_searcher;
    std::function<void()> onEnd;
    if (request.usesComputer) {
        const QString address = request.computer.isEmpty() ? m_options.device : request.computer;
        Used &entry = used(address);
        ++entry.tasks;
        computer = &entry.computer;
        onEnd = [this, &entry, address] {
            --entry.tasks;
            forgetUnused(address);
        };
    }
    auto owned = std::make_unique<Task>(request.id, *computer, m_options,
                                        [this](const QJsonValue &id) { return cancel(id); });
    Task &task = *owned;
    m_tasks[keyOf(request.id)] = std::move(owned);
    connect(&task, &Task::lineReady, this, &Server::send);
    connect(&task, &Task::ended, this, [this, &task, onEnd] {
        m_tasks.extract(keyOf(task.id())).mapped().release()->deleteLater();
        if (onEnd)
            onEnd();
        quitIfDone();
    });
    task.hold(m_outlet.isBehind());
    task.run(request.work);
}

bool Server::cancel(const QJsonValue &id)
{
    const auto it = m_tasks.find(keyOf(id));
    if (it == m_tasks.end())
        return false;
    it->second->cancel();
    return true;
}

Server::Used &Server::used(const QString &address)
{
    auto &entry = m_used[address];
    if (entry)
        return *entry;
    entry = std::make_unique<Used>();
    VardaComputer &computer = entry->computer;
    Recording::follow(computer);
    computer.setLinkMode(m_options.mode);
    computer.setLinger(kLinger);
    if (!address.isEmpty())
        computer.setDevice(BleDeviceInfo::fromAddress(address, {}));
    connect(&computer, &VardaComputer::stateChanged, this,
            [this, address] { forgetUnused(address); });
    return *entry;
}

/** From the event loop, because it may be the computer that calls. */
void Server::forgetUnused(const QString &address)
{
    const auto forget = [this, address] {
        const auto it = m_used.find(address);
        const bool isKept = m_isClosing || !m_options.record.isEmpty();
        if (isKept || it == m_used.end() || it->second->tasks > 0)
            return;
        if (it->second->computer.state() == VardaComputer::Unconnected)
            m_used.erase(it);
    };
    QMetaObject::invokeMethod(this, forget, Qt::QueuedConnection);
}

/** Ends all requests and lets all computers go. */
void Server::close()
{
    if (std::exchange(m_isClosing, true))
        return;
    m_input.setEnabled(false);
    for (const auto &[key, task] : m_tasks)
        task->stop();
    for (const auto &[address, entry] : m_used) {
        ++m_leaving;
        connect(entry->computer.disconnectFromComputer(), &VardaJob::finished, this, [this] {
            --m_leaving;
            quitIfDone();
        });
    }
    quitIfDone();
}

void Server::quitIfDone()
{
    if (!m_isClosing || !m_tasks.empty() || m_leaving > 0)
        return;
    // Who interrupts does not want to wait for the reader.
    if (m_outlet.isEmpty() || Interrupt::number() != 0)
        QMetaObject::invokeMethod(&m_loop, &QEventLoop::quit, Qt::QueuedConnection);
}
