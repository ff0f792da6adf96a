// SPDX-License-Identifier: MIT
#include "run/pictures.h"

#include "pictures/picturemaker.h"
#include "run/failure.h"

#include <QtCore/qdir.h>
#include <QtCore/qfileinfo.h>
#include <QtCore/qpluginloader.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kModule = "varda-pictures.so"_L1;

const PictureMaker *loaded = nullptr;
QString whyNotLoaded;

/** In a build folder it lies beside the command. */
QString moduleFile()
{
    // There is no application yet that could be asked.
    const QDir here(QFileInfo(u"/proc/self/exe"_s).canonicalPath());
    const QString beside = here.filePath(kModule);
    return QFileInfo::exists(beside)
               ? beside
               : here.filePath(QLatin1StringView(VARDA_MODULES_FROM_BIN) + u'/' + kModule);
}

void load()
{
    QPluginLoader loader(moduleFile());
    loader.setLoadHints(QLibrary::PreventUnloadHint);
    loaded = qobject_cast<PictureMaker *>(loader.instance());
    if (!loaded)
        whyNotLoaded = loader.errorString();
}

} // namespace

std::unique_ptr<QCoreApplication> makeApplication(int &argc, char **argv, bool drawsPictures)
{
    if (drawsPictures)
        load();
    return loaded ? loaded->application(argc, argv)
                  : std::make_unique<QCoreApplication>(argc, argv);
}

const PictureMaker &pictureMaker()
{
    if (!loaded) {
        throw Failure{ExitCode::UsageError, u"pictures cannot be drawn: "_s + whyNotLoaded,
                      u"Install %1, which comes with varda."_s.arg(kModule)};
    }
    return *loaded;
}
