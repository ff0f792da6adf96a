// SPDX-License-Identifier: MIT
#include "pictures/picturemaker.h"

#include <varda/divepicture.h>

#include <QtCore/qobject.h>
#include <QtGui/qguiapplication.h>

class Pictures : public QObject, public PictureMaker
{
    Q_OBJECT
    Q_INTERFACES(PictureMaker)
    Q_PLUGIN_METADATA(IID VARDA_PICTUREMAKER_IID)

public:
    [[nodiscard]] std::unique_ptr<QCoreApplication> application(int &argc,
                                                                char **argv) const override
    {
        // Whatever is wished for in windows: there is none.
        qputenv("QT_QPA_PLATFORM", "offscreen");
        return std::make_unique<QGuiApplication>(argc, argv);
    }

    [[nodiscard]] QByteArray picture(const Dive &dive, Format format, Units units) const override
    {
        constexpr double kPngScale = 2;
        PictureOptions options;
        options.units = units == Units::Imperial ? PictureOptions::Units::Imperial
                                                 : PictureOptions::Units::Metric;
        switch (format) {
        case Format::Svg:
            return DivePicture::profile(dive, options).toSvg();
        case Format::Png:
            return DivePicture::profile(dive, options).toPng(kPngScale);
        case Format::Pdf:
            return DivePicture::sheet(dive, options).toPdf();
        }
        return {};
    }
};

#include "pictures.moc"
