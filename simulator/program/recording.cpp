// SPDX-License-Identifier: MIT
#include "program/recording.h"

#include "program/failure.h"

using namespace Qt::StringLiterals;

namespace simulator {

bool startRecord(Recorder &recorder, const QString &file)
{
    QObject::connect(&recorder, &Recorder::fileFailed, &recorder,
                     [&recorder, file] { fail(file + u": "_s + recorder.fileError()); });
    QString error;
    if (file.isEmpty() || recorder.openFile(file, &error))
        return true;
    fail(file + u": "_s + error);
    return false;
}

int statusWith(const Recorder &recorder, int status)
{
    return status == 0 && !recorder.fileError().isEmpty() ? kOwnError : status;
}

} // namespace simulator
