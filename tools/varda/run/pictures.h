// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qcoreapplication.h>

#include <memory>

class PictureMaker;

/** The application of this process; the one with Qt's graphical part only if pictures are drawn. */
[[nodiscard]] std::unique_ptr<QCoreApplication> makeApplication(int &argc, char **argv,
                                                                bool drawsPictures);

/** What draws them, if makeApplication() knew of it. @throws Failure  if it is not installed */
[[nodiscard]] const PictureMaker &pictureMaker();
