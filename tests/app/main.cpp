// SPDX-License-Identifier: MIT
// Runs a file of Qt Quick Test with the app's interface, beside a simulated computer.
#include <QtCore/qdir.h>
#include <QtCore/qfile.h>
#include <QtCore/qjsondocument.h>
#include <QtCore/qjsonobject.h>
#include <QtCore/qtemporarydir.h>
#include <QtGui/qaccessible.h>
#include <QtQml/qqmlengine.h>
#include <QtQuick/qquickitem.h>
#include <QtQuick/qquickwindow.h>
#include <QtQuickTest/quicktest.h>
#include <QtSql/qsqldatabase.h>
#include <QtSql/qsqlquery.h>

#include <varda/bledeviceinfo.h>

#include "core/logbookui.h"
#include "core/preferences.h"
#include "images.h"
#include "pictures.h"
#include "simulator.h"

using namespace Qt::StringLiterals;

namespace {

/** Roles of which each needs a name, as a voice has nothing else to say. */
bool needsName(QAccessible::Role role)
{
    switch (role) {
    case QAccessible::Button:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::ComboBox:
    case QAccessible::EditableText:
    case QAccessible::ListItem:
    case QAccessible::List:
    case QAccessible::PageTab:
    case QAccessible::PageTabList:
    case QAccessible::ProgressBar:
    case QAccessible::ScrollBar:
    case QAccessible::Slider:
    case QAccessible::MenuItem:
    case QAccessible::Chart:
    case QAccessible::Dialog:
    case QAccessible::Heading:
    case QAccessible::AlertMessage:
    case QAccessible::Indicator:
        return true;
    default:
        return false;
    }
}

struct Walk {
    QStringList nameless;
    int named = 0;
    /** Controls that a keyboard reaches but that have no role for a voice. */
    QStringList roleless;

    void through(QAccessibleInterface *node)
    {
        if (!node || !node->isValid() || node->state().invisible)
            return;
        const bool hasName = !node->text(QAccessible::Name).trimmed().isEmpty();
        const auto line = [node] {
            const QObject *const object = node->object();
            return u"%1 %2 (role %3)"_s.arg(
                object ? QString::fromLatin1(object->metaObject()->className()) : QString(),
                object ? object->objectName() : QString(), QString::number(node->role(), 16));
        };
        if (needsName(node->role()) && !hasName)
            nameless.append(line());
        else if (needsName(node->role()))
            ++named;
        const auto *const item = qobject_cast<QQuickItem *>(node->object());
        if (item && item->activeFocusOnTab() && node->role() == QAccessible::NoRole)
            roleless.append(line());
        for (int i = 0; i < node->childCount(); ++i)
            through(node->child(i));
    }
};

/** The first that is seen under this name and can be pressed, or nothing. */
QAccessibleInterface *pressable(QAccessibleInterface *node, const QString &name)
{
    if (!node || !node->isValid() || node->state().invisible)
        return nullptr;
    const auto canBePressed = [node] {
        QAccessibleActionInterface *const actions = node->actionInterface();
        return actions
               && actions->actionNames().contains(QAccessibleActionInterface::pressAction());
    };
    if (node->text(QAccessible::Name) == name && canBePressed())
        return node;
    for (int i = 0; i < node->childCount(); ++i) {
        if (QAccessibleInterface *const found = pressable(node->child(i), name))
            return found;
    }
    return nullptr;
}

} // namespace

/** What a test in QML needs of the world around the app. */
class World : public QObject
{
    Q_OBJECT

public:
    /** The whole world of the simulator; what is wrong with it, or nothing. */
    Q_INVOKABLE static QString loadScenario(const QString &json)
    {
        return Simulator::loadScenario(json.toUtf8());
    }
    /** A world of one known device with these members. */
    Q_INVOKABLE static QString load(const QVariantMap &device)
    {
        const QByteArray json =
            QJsonDocument(QJsonObject::fromVariantMap(device)).toJson(QJsonDocument::Compact);
        return Simulator::loadKnown(json.mid(1, json.size() - 2));
    }
    /** Of that world, as one that was chosen. */
    Q_INVOKABLE static BleDeviceInfo computer()
    {
        return BleDeviceInfo::fromAddress(QString::fromLatin1(kAddress), u"Varda"_s);
    }
    Q_INVOKABLE static BleDeviceInfo noComputer() { return {}; }
    Q_INVOKABLE static int frameCount() { return int(Simulator::frames().size()); }
    Q_INVOKABLE static QVariantMap state() { return Simulator::state().toVariantMap(); }
    Q_INVOKABLE static void drop() { Simulator::drop(); }
    Q_INVOKABLE static void setPowered(bool on) { Simulator::setPowered(on); }

    /** A new path in a folder of the test's own. */
    Q_INVOKABLE QString file(const QString &name) const { return m_folder.filePath(name); }
    Q_INVOKABLE QUrl url(const QString &name) const { return QUrl::fromLocalFile(file(name)); }
    /** The text of a file, or nothing. */
    Q_INVOKABLE QString read(const QString &name) const
    {
        QFile file(m_folder.filePath(name));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }
    Q_INVOKABLE void write(const QString &name, const QString &text) const
    {
        QFile file(m_folder.filePath(name));
        if (file.open(QIODevice::WriteOnly))
            file.write(text.toUtf8());
    }
    Q_INVOKABLE bool has(const QString &name) const { return QFile::exists(file(name)); }
    Q_INVOKABLE void copy(const QString &from, const QString &to) const
    {
        QFile::copy(file(from), file(to));
    }
    /** As another program that writes to the file. */
    Q_INVOKABLE static bool lock(const QString &file)
    {
        QSqlDatabase other = QSqlDatabase::addDatabase(u"QSQLITE"_s, kOther);
        other.setDatabaseName(file);
        return other.open() && QSqlQuery(other).exec(u"BEGIN IMMEDIATE"_s);
    }
    Q_INVOKABLE static void unlock()
    {
        QSqlDatabase::database(kOther).close();
        QSqlDatabase::removeDatabase(kOther);
    }
    /** A firmware image with this header at its place, in hexadecimal. */
    Q_INVOKABLE QUrl imageFile(const QString &name, const QString &header) const
    {
        QFile file(m_folder.filePath(name));
        if (file.open(QIODevice::WriteOnly))
            file.write(image(5000, header.toLatin1()));
        return url(name);
    }
    Q_INVOKABLE static QString environment(const QString &name)
    {
        return qEnvironmentVariable(name.toLatin1().constData());
    }
    /** What the window looks like now. */
    Q_INVOKABLE static bool savePicture(QQuickWindow *window, const QString &file)
    {
        return window->grabWindow().save(file);
    }
    /** What is wrong with it, or nothing. */
    Q_INVOKABLE static QString comparePicture(QQuickWindow *window, const QString &name)
    {
        return Pictures::compare(window->grabWindow(), name);
    }
    Q_INVOKABLE static void makeFolder(const QString &path) { QDir().mkpath(path); }

    /** Controls without a name or a role, one a line; first how many have both. */
    Q_INVOKABLE static QVariantMap walk(QWindow *window)
    {
        Walk walk;
        walk.through(QAccessible::queryAccessibleInterface(window));
        return {{u"named"_s, walk.named},
                {u"nameless"_s, walk.nameless},
                {u"roleless"_s, walk.roleless}};
    }

    Q_INVOKABLE static bool canPress(QWindow *window, const QString &name)
    {
        return pressable(QAccessible::queryAccessibleInterface(window), name);
    }
    /** As a screen reader does it. */
    Q_INVOKABLE static void press(QWindow *window, const QString &name)
    {
        QAccessibleInterface *const found = pressable(QAccessible::queryAccessibleInterface(window),
                                                      name);
        if (found)
            found->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }

private:
    static constexpr auto kOther = "other"_L1;

    QTemporaryDir m_folder;
};

/** Has everything ready before anything looks at the bus or at the user's own files. */
class Setup : public QObject
{
    Q_OBJECT

public:
    Setup()
    {
        qputenv("XDG_CONFIG_HOME", m_home.filePath(u"config"_s).toUtf8());
        qputenv("XDG_DATA_HOME", m_home.filePath(u"data"_s).toUtf8());
        QCoreApplication::setOrganizationName(u"varda"_s);
        QCoreApplication::setApplicationName(u"varda-logbook"_s);
        Preferences::setSimulated(true);
        Simulator::start();
    }

public Q_SLOTS:
    void applicationAvailable() { QAccessible::setActive(true); }
    void qmlEngineAvailable(QQmlEngine *engine)
    {
        installLogbookUi(*engine);
        qmlRegisterSingletonInstance("VardaTest", 1, 0, "World", &m_world);
    }

private:
    QTemporaryDir m_home;
    World m_world;
};

QUICK_TEST_MAIN_WITH_SETUP(app, Setup)

#include "main.moc"
