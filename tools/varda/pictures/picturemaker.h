// SPDX-License-Identifier: MIT
#pragma once

#include "output/units.h"

#include <varda/dive.h>

#include <QtCore/qbytearray.h>
#include <QtCore/qcoreapplication.h>
#include <QtCore/qplugin.h>

#include <memory>

/**
 * What draws pictures: a module that is loaded only for them, because it needs Qt Gui, with which
 * every command would take half as long again to start.
 */
class PictureMaker
{
public:
    enum class Format {
        Svg, ///< the profile
        Png, ///< the profile, with twice as many pixels
        Pdf  ///< a page with the profile, the figures and the gases
    };

    PictureMaker() = default;
    virtual ~PictureMaker() = default;
    Q_DISABLE_COPY_MOVE(PictureMaker)

    /** What the process needs instead of a QCoreApplication. It needs no display. */
    [[nodiscard]] virtual std::unique_ptr<QCoreApplication> application(int &argc,
                                                                        char **argv) const = 0;
    /** Empty if there is no memory for it. */
    [[nodiscard]] virtual QByteArray picture(const Dive &dive, Format format,
                                             Units units) const = 0;
};

#define VARDA_PICTUREMAKER_IID "varda.PictureMaker/" VARDA_VERSION
Q_DECLARE_INTERFACE(PictureMaker, VARDA_PICTUREMAKER_IID)
