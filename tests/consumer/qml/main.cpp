// SPDX-License-Identifier: MIT
#include <QtGui/qguiapplication.h>
#include <QtQml/qqmlapplicationengine.h>

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    QQmlApplicationEngine engine;
#ifdef IMPORT_PATH
    engine.addImportPath(QStringLiteral(IMPORT_PATH));
#endif
    engine.load(QUrl(QStringLiteral("qrc:/Main.qml")));
    return engine.rootObjects().isEmpty() ? 1 : app.exec();
}
