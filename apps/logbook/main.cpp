// SPDX-License-Identifier: MIT
#include <QtCore/qcommandlineparser.h>
#include <QtCore/qcryptographichash.h>
#include <QtGui/qguiapplication.h>
#include <QtGui/qicon.h>
#include <QtQml/qqmlapplicationengine.h>
#include <QtQuick/qquickwindow.h>

#include "core/logbookui.h"
#include "core/preferences.h"
#include "core/singleinstance.h"

using namespace Qt::StringLiterals;

namespace {

/** One app for each file of dives: those of simulated computers have an app of their own. */
QString instanceName()
{
    const QByteArray file = Preferences().storeFile().toUtf8();
    return u"varda-logbook-"_s
           + QString::fromLatin1(
               QCryptographicHash::hash(file, QCryptographicHash::Sha256).toHex().first(16));
}

void readArguments(const QCoreApplication &app)
{
    const QCommandLineOption simulated(u"simulated"_s,
                                       u"Keep the dives in the file for simulated computers."_s);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Keeps the dives of your diving computer."_s);
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption(simulated);
    parser.process(app);
    Preferences::setSimulated(parser.isSet(simulated));
}

void show(const QQmlApplicationEngine &engine)
{
    const QList<QObject *> roots = engine.rootObjects();
    for (QObject *const root : roots) {
        if (auto *const window = qobject_cast<QQuickWindow *>(root)) {
            window->show();
            window->raise();
            window->requestActivate();
        }
    }
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setApplicationName(u"varda-logbook"_s);
    QCoreApplication::setOrganizationName(u"varda"_s);
    QCoreApplication::setApplicationVersion(u"" VARDA_VERSION ""_s);
    QGuiApplication::setDesktopFileName(u"org.varda.Logbook"_s);
    const QGuiApplication app(argc, argv);
    QGuiApplication::setWindowIcon(QIcon(u":/qt/qml/Logbook/icons/logbook.svg"_s));
    readArguments(app);

    SingleInstance instance(instanceName());
    if (!instance.claim())
        return 0;

    QQmlApplicationEngine engine;
    installLogbookUi(engine);
    QObject::connect(&instance, &SingleInstance::raised, &engine, [&engine] { show(engine); });
    engine.load(QUrl(u"qrc:/qt/qml/Logbook/Main.qml"_s));
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}
