// SPDX-License-Identifier: MIT
#pragma once

#include "commands/serve/linereader.h"
#include "commands/serve/outlet.h"
#include "commands/serve/request.h"
#include "commands/serve/requesterror.h"
#include "commands/serve/task.h"
#include "line/options.h"

#include <varda/vardacomputer.h>

#include <QtCore/qeventloop.h>
#include <QtCore/qobject.h>
#include <QtCore/qsocketnotifier.h>

#include <map>
#include <memory>

/** Carries out requests that come on standard input, until its end. */
class Server : public QObject
{
    Q_OBJECT

public:
    explicit Server(const Options &options);
    ~Server() override;
    Q_DISABLE_COPY_MOVE(Server)

    /** Returns when the input is at its end, and all computers are let go. @throws Failure */
    void run();

private:
    struct Used {
        VardaComputer computer;
        int tasks = 0;
    };

    void sendHello();
    void send(const Fields &line);
    void sendError(const QJsonValue &id, const RequestError &error);
    void onReadable();
    void onBehind();
    void onLine(const LineReader::Line &line);
    void accept(const Request &request);
    void begin(const Request &request);
    [[nodiscard]] bool cancel(const QJsonValue &id);
    [[nodiscard]] Used &used(const QString &address);
    void forgetUnused(const QString &address);
    void close();
    void quitIfDone();

    Options m_options;
    LineReader m_lines;
    Outlet m_outlet;
    QSocketNotifier m_input;
    VardaComputer m_searcher; ///< for what needs no computer
    std::map<QString, std::unique_ptr<Used>>
        m_used; ///< by their addresses; "" for whichever is found
    std::map<QByteArray, std::unique_ptr<Task>> m_tasks; ///< by their ids
    int m_leaving = 0;                                   ///< links that are going down
    bool m_isClosing = false;
    int m_writeError = 0;
    QEventLoop m_loop;
};
