// SPDX-License-Identifier: MIT
// The same from top to bottom, as a coroutine (C++20).
#include <varda/varda.h>
#include <varda/vardaawait.h>

#include <QtCore/qcoreapplication.h>
#include <QtCore/qtextstream.h>

#include <coroutine>
#include <exception>

/** A coroutine that starts at once and that nobody waits for. */
struct Task {
    struct promise_type {
        Task get_return_object() { return {}; }
        std::suspend_never initial_suspend() noexcept { return {}; }
        std::suspend_never final_suspend() noexcept { return {}; }
        void return_void() { }
        void unhandled_exception() { std::terminate(); }
    };
};

Task read(VardaComputer &computer)
{
    QTextStream out(stdout);
    const auto *const identity = co_await varda::done(computer.readIdentity());
    int status = identity->error();
    if (status == VardaJob::NoError) {
        out << identity->result().serialNumber << Qt::endl;
        auto *const download = computer.downloadDives();
        QObject::connect(download, &DownloadJob::diveRead, [](const Dive &dive) {
            QTextStream(stdout) << "dive " << dive.numberText << Qt::endl;
        });
        status = (co_await varda::done(download))->error();
    }
    co_await varda::done(computer.disconnectFromComputer());
    QCoreApplication::exit(status);
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    VardaComputer computer;
    read(computer);
    return application.exec();
}
