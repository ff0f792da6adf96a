// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "line/arguments.h"
#include "line/choices/confirmation.h"
#include "output/documents.h"
#include "output/safetext.h"
#include "output/tables.h"
#include "output/terminal.h"
#include "output/text.h"
#include "run/imagefile.h"
#include "run/runner.h"

#include <QtCore/qelapsedtimer.h>

using namespace Qt::StringLiterals;

namespace {

QString versionOf(const FirmwareImage &image)
{
    return versionText(image.versionStr);
}

// info

QString familyText(const FirmwareImage &image)
{
    if (!image.hasHeader())
        return u"older, without an update header; identified by its file name"_s;
    const bool isBootloader = image.kind == FirmwareImage::Kind::Bootloader;
    return (isBootloader ? u"bootloader"_s : u"application"_s) + u", with an update header"_s;
}

void declareFile(Arguments &arguments, QString &path)
{
    arguments.argument("FILE", path, "The image file");
}

class ImageInfo : public Command
{
public:
    ImageInfo() : Command("info", "Show what an image is; needs no computer") { }

    void declare(Arguments &arguments) override { declareFile(arguments, m_path); }

    void run(const Options &options) const override
    {
        const FirmwareImage image = readImage(m_path).image;
        if (options.json)
            return print(documents::firmware(image));
        Table table;
        table.add(u"Family"_s, familyText(image));
        if (!image.hasHeader())
            table.add(u"Name"_s, safeText(image.name));
        table.add(u"Version"_s, safeText(versionOf(image)));
        table.add(u"Size"_s, u"%1 bytes"_s.arg(image.size));
        table.add(u"CRC"_s, u"0x%1"_s.arg(image.checksum, 4, 16, QChar(u'0')));
        print(table.text(outputStyle()));
    }

private:
    QString m_path;
};

// upload

/** "45 %, 108 kB of 240 kB, 3.2 kB/s, 0:41 left" */
class UploadStatus
{
public:
    explicit UploadStatus(qsizetype size) : m_size(double(size)) { }

    /** @param bytes  sent so far */
    QString text(qint64 bytes)
    {
        const auto sent = double(bytes);
        if (!m_time.isValid()) {
            // A computer may have the beginning from an upload that was interrupted.
            m_first = sent;
            m_time.start();
        }
        QString text = u"Uploading %1 %, %2 of %3"_s.arg(sent / m_size * 100, 0, 'f', 0)
                           .arg(bytesText(sent), bytesText(m_size));
        const double seconds = double(m_time.elapsed()) / 1000;
        if (sent > m_first && seconds > 0) {
            const double rate = (sent - m_first) / seconds;
            text += u", %1/s, %2 left"_s.arg(bytesText(rate), durationText((m_size - sent) / rate));
        }
        return text;
    }

private:
    double m_size;
    double m_first = 0;
    QElapsedTimer m_time;
};

/** @return how long it took */
std::chrono::milliseconds send(Runner &runner, const ImageFile &file, bool force)
{
    FirmwareJob *const job = runner.computer().uploadFirmware(file.bytes, file.fileName, force);
    UploadStatus status(file.bytes.size());
    QObject::connect(job, &VardaJob::progressed, job,
                     [&status](qint64 done) { showStatus(status.text(done)); });
    JobRun jobRun(job);
    runner.prepare(*job);
    runner.setStatus(u"Uploading the firmware"_s);
    jobRun.wait();
    return job->elapsed();
}

QString elapsedText(double seconds)
{
    return seconds < 60 ? tenthsText(seconds) + u" s"_s : durationText(seconds);
}

class Upload : public Command
{
public:
    Upload() : Command("upload", "Replace the computer's firmware") { }

    void declare(Arguments &arguments) override
    {
        declareFile(arguments, m_path);
        m_confirmation.declare(arguments);
        arguments.flag("--force", m_force, "Even if the computer has this version already");
    }

    void run(const Options &options) const override
    {
        const ImageFile file = readImage(m_path);
        m_confirmation.require();
        Runner runner(options, Purpose::Writing);
        const VardaIdentity present = runner.resultOf(runner.computer().readIdentity(),
                                                      u"Reading the identification"_s);
        const QString what = file.image.kind == FirmwareImage::Kind::Bootloader ? u"bootloader"_s
                                                                                : u"firmware"_s;
        m_confirmation.ask(u"Replace the %1 of %2 (%3, firmware %4) with version %5?"_s.arg(
            what, runner.device().name(), runner.device().address(),
            versionText(present.firmwareVersionStr), versionOf(file.image)));
        const auto elapsed = send(runner, file, m_force);
        if (options.json) {
            print(documents::withDevice(runner.device(), documents::uploaded(file.image, elapsed)));
        } else {
            const std::chrono::duration<double> seconds = elapsed;
            print(runner.heading()
                  + u"Uploaded %1 bytes of %2 %3 in %4.\n"_s.arg(file.bytes.size())
                        .arg(what, safeText(versionOf(file.image)), elapsedText(seconds.count())));
        }
    }

private:
    QString m_path;
    bool m_force = false;
    Confirmation m_confirmation;
};

class Firmware : public Command
{
public:
    Firmware() : Command("firmware", "Show what a firmware image is, or upload it")
    {
        add<ImageInfo>();
        add<Upload>();
    }

    [[nodiscard]] bool needsSubcommand() const override { return true; }
    void run(const Options & /*options*/) const override { }
};

} // namespace

void addFirmware(Commands &commands)
{
    commands.push_back(std::make_unique<Firmware>());
}
