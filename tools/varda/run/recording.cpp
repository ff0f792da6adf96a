// SPDX-License-Identifier: MIT
#include "run/recording.h"

#include "output/terminal.h"
#include "run/failure.h"

#include <varda/vardacomputer.h>

#include <fcntl.h>

#include <cerrno>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t kMode = 0666;

Recording *theRecording = nullptr;

} // namespace

Recording::Recording(const Options &options) : m_unredacted(options.unredacted)
{
    if (options.record.isEmpty())
        return;
    open(options.record);
    theRecording = this;
}

Recording::~Recording()
{
    if (theRecording == this)
        theRecording = nullptr;
}

void Recording::open(const QString &name)
{
    // A pipe that nobody reads fast enough must not hold up the link.
    const int file = ::open(QFile::encodeName(name).constData(),
                            O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOCTTY | O_NONBLOCK,
                            kMode);
    if (file < 0) {
        throw Failure{ExitCode::UsageError,
                      u"\"%1\" cannot be written: %2"_s.arg(name, qt_error_string(errno)),
                      {}};
    }
    m_file.setFileName(name);
    std::ignore = m_file.open(file, QIODevice::WriteOnly | QIODevice::Unbuffered,
                              QFileDevice::AutoCloseHandle);
}

void Recording::follow(VardaComputer &computer)
{
    Recording *const recording = std::exchange(theRecording, nullptr); // a file has one trace
    if (!recording)
        return;
    QObject::connect(&computer, &VardaComputer::traceFailed, recording, [](const QString &why) {
        printWarning(u"the recording has ended: "_s + why);
    });
    computer.setTrace(&recording->m_file,
                      recording->m_unredacted ? VardaTrace::Complete : VardaTrace::Redacted);
}
