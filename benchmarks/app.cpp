// SPDX-License-Identifier: MIT
// Logbook with many dives: how long until the first list, and what a frame costs while it scrolls.
// The reference is a list of plain rows in a window of the same size.
#include <QtCore/qcommandlineparser.h>
#include <QtCore/qeventloop.h>
#include <QtCore/qstandardpaths.h>
#include <QtCore/qtimer.h>
#include <QtGui/qguiapplication.h>
#include <QtQml/qqmlapplicationengine.h>
#include <QtQuick/qquickitem.h>
#include <QtQuick/qquickwindow.h>

#include <chrono>
#include <cstdio>

#include <varda/logbookstore.h>

#include "core/logbookui.h"
#include "core/preferences.h"
#include "divemaker.h"
#include "row.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kSamples = 500;
constexpr int kFrameTime = 16;
constexpr int kRound = 60;
constexpr double kRowHeight = 72;
constexpr int kPatience = 60'000;

QQuickItem *itemBelow(const QQuickItem &item, const QString &name)
{
    const QList<QQuickItem *> children = item.childItems();
    for (QQuickItem *const child : children) {
        QQuickItem *const found = child->objectName() == name ? child : itemBelow(*child, name);
        if (found)
            return found;
    }
    return nullptr;
}

/** A window with a list of dives in it. */
class Page
{
public:
    Page(const QUrl &source, const QVariantMap &properties)
    {
        installLogbookUi(m_engine);
        m_engine.setInitialProperties(properties);
        m_engine.load(source);
        m_window = qobject_cast<QQuickWindow *>(m_engine.rootObjects().value(0));
        if (!m_window)
            qFatal("no window");
        m_list = itemBelow(*m_window->contentItem(), u"dives"_s);
        if (!m_list)
            qFatal("no list");
    }

    /** Returns once the list is on the screen. */
    void waitForRows()
    {
        QEventLoop loop;
        QObject::connect(m_window, &QQuickWindow::frameSwapped, &loop, [&] {
            if (m_list->property("count").toInt() > 0)
                loop.quit();
        });
        QTimer::singleShot(kPatience, &loop, [] { qFatal("no dives are shown"); });
        loop.exec();
    }
    [[nodiscard]] int count() const { return m_list->property("count").toInt(); }

    /** The work of this thread, in milliseconds, from one frame to the next while the list moves. */
    double frame(double step)
    {
        const qint64 begin = threadTime();
        const double y = m_list->property("contentY").toDouble() + step;
        const double end = m_list->property("contentHeight").toDouble() - m_list->height();
        m_list->setProperty("contentY", y > end ? 0 : y);
        QEventLoop loop;
        bool shown = false;
        bool due = false;
        const auto leave = [&] {
            if (shown && due)
                loop.quit();
        };
        QObject::connect(m_window, &QQuickWindow::frameSwapped, &loop, [&] {
            shown = true;
            leave();
        });
        QTimer::singleShot(kFrameTime, Qt::PreciseTimer, &loop, [&] {
            due = true;
            leave();
        });
        loop.exec();
        return double(threadTime() - begin) / 1e6;
    }

private:
    QQmlApplicationEngine m_engine;
    QQuickWindow *m_window = nullptr;
    QQuickItem *m_list = nullptr;
};

std::unique_ptr<Page> open(const QString &page, int dives)
{
    if (page == "bare"_L1)
        return std::make_unique<Page>(QUrl(u"qrc:/bench/bare.qml"_s),
                                      QVariantMap{{u"dives"_s, dives}});
    return std::make_unique<Page>(QUrl(u"qrc:/qt/qml/Logbook/Main.qml"_s), QVariantMap());
}

/** Stores dives until the app's file has so many. */
int fill(int dives)
{
    LogbookStore store;
    QEventLoop loop;
    int waiting = 0;
    const auto ended = [&](const LogbookError &error) {
        if (error)
            qFatal("%s", qPrintable(error.text));
        if (--waiting == 0)
            loop.quit();
    };
    waiting = dives + 1;
    store.open(LogbookStore::defaultFile(true), &loop, ended);
    LogbookComputer computer;
    computer.identity.serialNumber = u"4711"_s;
    for (int number = 1; number <= dives; ++number)
        store.addDive(computer, DiveMaker::dive(number, kSamples), &loop,
                      [&](const auto &result) { ended(result.error); });
    loop.exec();
    return 0;
}

/** Prints the milliseconds since the steady clock showed @p begun. */
int showFirst(const QString &page, int dives, qint64 begun)
{
    const auto opened = open(page, dives);
    opened->waitForRows();
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    std::printf("%f\n", double(std::chrono::nanoseconds(now).count() - begun) / 1e6);
    return 0;
}

void scroll(int dives, int frames)
{
    const auto app = open(u"app"_s, dives);
    app->waitForRows();
    if (app->count() != dives)
        qFatal("%d dives are shown", app->count());
    const auto bare = open(u"bare"_s, dives);
    bare->waitForRows();

    QList<double> own;
    QList<double> reference;
    while (own.size() < frames) {
        for (int i = 0; i < kRound; ++i)
            own.append(app->frame(kRowHeight));
        for (int i = 0; i < kRound; ++i)
            reference.append(bare->frame(kRowHeight));
    }
    Row{"app: a frame while scrolling", median(own), {}, "ms"}.print();
    Row{"app: a frame while scrolling, 99 of 100", quantile(own, 0.99), {}, "ms"}.print();
    Row{"app: the same beside a bare list", median(own), median(reference), "ms"}.print();
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setApplicationName(u"varda-logbook"_s);
    QCoreApplication::setOrganizationName(u"varda"_s);
    const QGuiApplication app(argc, argv);
    Preferences::setSimulated(true);

    const QStringList words = QCoreApplication::arguments().sliced(1);
    const QString what = words.value(0);
    if (what == "fill"_L1)
        return fill(words.value(1).toInt());
    if (what == "first"_L1)
        return showFirst(words.value(1), words.value(2).toInt(), words.value(3).toLongLong());
    if (what == "scroll"_L1)
        scroll(words.value(1).toInt(), words.value(2).toInt());
    return 0;
}
