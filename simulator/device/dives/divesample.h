// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qjsonvalue.h>
#include <QtCore/qlist.h>

namespace simulator {

enum class Model;

/** One point of a dive's profile. */
struct Sample {
    int depth = 0; ///< tenths of a metre
    int code = 0;  ///< the gas slot in use
    int value12 = 0;
    int mode = 0;
    int flag = 0;
    int status = 0; ///< two bytes that most models send instead of aux5 to aux7
    int gasStatus = 0;
    int aux1 = 0;
    int aux2 = 0;
    int aux3 = 0;
    int aux4 = 0;
    int aux5 = 0;
    int aux6 = 0;
    int aux7 = 0;
    int aux8 = 0;
    int aux9 = 0;
    int aux10 = 0;
    int aux11 = 255;
    int aux12 = 0;
};

Sample readSample(const QJsonValue &value, const QString &path);

/**
 * All samples of a dive as one stream of bytes, with the mark of its version in front unless
 * that is 0.
 */
QByteArray encodeSamples(const QList<Sample> &samples, Model model, int version);

} // namespace simulator
