// SPDX-License-Identifier: MIT
#include "commands/serve/methods.h"

#include "commands/serve/parameters.h"
#include "commands/serve/requesterror.h"
#include "commands/serve/task.h"
#include "commands/surfacepressure.h"
#include "output/documents.h"
#include "run/imagefile.h"

#include <algorithm>
#include <array>
#include <functional>
#include <limits>
#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

template <typename T> using Question = VardaReply<T> *(VardaComputer::*)();

/** A single question without parameters. */
template <typename T, Question<T> ask, auto toDocument> Work prepareReading(Parameters & /*none*/)
{
    return [](Task &task) { task.finishWith((task.computer().*ask)(), toDocument); };
}

// The link

Work prepareScan(Parameters &parameters)
{
    constexpr qint64 kLongest = 3600;
    const qint64 seconds = parameters.integer("seconds"_L1, 1, kLongest, 10);
    const bool all = parameters.flag("all"_L1);
    return [=](Task &task) {
        SearchJob *const search = task.computer().search(std::chrono::seconds(seconds), all);
        const auto onDevice = [&task](const BleDeviceInfo &device) {
            task.sendEvent("device"_L1, {{"device"_L1, documents::device(device)}});
        };
        QObject::connect(search, &SearchJob::deviceFound, &task, onDevice);
        QObject::connect(search, &SearchJob::deviceChanged, &task, onDevice);
        task.follow(search,
                    [&task, search] { task.succeed(documents::devices(search->devices())); });
    };
}

Work prepareConnect(Parameters & /*none*/)
{
    return [](Task &task) {
        task.follow(task.computer().connectToComputer(), [&task] { task.succeedOnDevice(); });
    };
}

Work prepareDisconnect(Parameters & /*none*/)
{
    return [](Task &task) {
        task.follow(task.computer().disconnectFromComputer(), [&task] { task.succeed({}); });
    };
}

Work prepareCancel(Parameters &parameters)
{
    const QJsonValue id = parameters.id("request"_L1);
    return [id](Task &task) {
        if (!task.cancelOther(id))
            throw RequestError{u"UnknownId"_s, u"no request with this id is under way"_s};
        task.succeed({});
    };
}

// What a computer is

void readInfo(Task &task)
{
    const auto info = std::make_shared<ComputerInfo>();
    const auto keep = [info](auto member) {
        return [info, member](const auto &value) { std::invoke(member, *info) = value; };
    };
    const auto end = [&task, info] { task.succeedOnDevice(documents::info(*info)); };
    VardaComputer &computer = task.computer();
    task.follow(computer.readIdentity(), [info, end](const VardaIdentity &identity) {
        info->identity = identity;
        if (info->isBootloader())
            end(); // the other questions are not asked
    });
    task.follow(computer.readClock(), keep(&ComputerInfo::time));
    task.follow(computer.readConfiguration(true), [info](const VardaConfiguration &configuration) {
        info->computer = configuration.computer;
    });
    task.follow(computer.readSensors(), keep(&ComputerInfo::sensors));
    task.follow(computer.readOwner(), [info, end](const QString &owner) {
        info->owner = owner;
        end();
    });
}

Work prepareInfo(Parameters & /*none*/)
{
    return &readInfo;
}

Work prepareConfig(Parameters &parameters)
{
    const bool basic = parameters.flag("basic"_L1);
    return [basic](Task &task) {
        task.finishWith(task.computer().readConfiguration(basic),
                        [&task](const VardaConfiguration &configuration) {
                            return documents::config(task.computer().identity(), configuration);
                        });
    };
}

Work prepareLog(Parameters &parameters)
{
    if (parameters.flag("binary"_L1)) {
        return [](Task &task) {
            task.finishWith(task.computer().readBinaryLog(), &documents::binaryLog);
        };
    }
    return [](Task &task) { task.finishWith(task.computer().readLog(), &documents::log); };
}

// Layouts

constexpr qint64 kLastLayout = 255;

Work prepareLayout(Parameters &parameters)
{
    const auto index = int(parameters.integer("index"_L1, 0, kLastLayout));
    return [index](Task &task) {
        task.finishWith(task.computer().readLayout(quint8(index)), [index](const QByteArray &blob) {
            if (blob.isEmpty()) {
                throw RequestError{.code = u"NoSuchLayout"_s,
                                   .text = u"there is no layout %1"_s.arg(index),
                                   .kind = VardaJob::Refused};
            }
            return documents::layout(index, blob);
        });
    };
}

/** A change whose only result is that it was accepted. */
void changeLayouts(Task &task, VardaJob *job)
{
    task.follow(job, [&task] { task.succeedOnDevice(documents::layoutsChanged()); });
}

Work prepareAddLayout(Parameters &parameters)
{
    const QByteArray blob = parameters.bytes("layoutBlob"_L1);
    return [blob](Task &task) { changeLayouts(task, task.computer().addLayout(blob)); };
}

Work prepareRemoveLayout(Parameters &parameters)
{
    const auto index = quint8(parameters.integer("index"_L1, 0, kLastLayout));
    return [index](Task &task) { changeLayouts(task, task.computer().removeLayout(index)); };
}

Work prepareClearLayouts(Parameters &parameters)
{
    parameters.requireConfirmation(u"remove all layouts"_s);
    return [](Task &task) { changeLayouts(task, task.computer().removeAllLayouts()); };
}

Work prepareActivateLayout(Parameters &parameters)
{
    const auto mode = quint8(parameters.integer("mode"_L1, 0, 4));
    const auto index = qint8(parameters.integer("index"_L1, -1, 127));
    return [=](Task &task) { changeLayouts(task, task.computer().activateLayout(mode, index)); };
}

// What else writes

Work prepareSetOwner(Parameters &parameters)
{
    const QString owner = parameters.text("text"_L1);
    return [owner](Task &task) {
        task.finishWith(task.computer().writeOwner(owner), &documents::owner);
    };
}

Work prepareSetPressure(Parameters &parameters)
{
    const auto mbar = std::uint32_t(
        parameters.integer("mbar"_L1, 0, std::numeric_limits<std::uint32_t>::max()));
    if (!parameters.flag("force"_L1) && !isSurfacePressure(mbar)) {
        throw RequestError{u"BadArgument"_s,
                           u"%1 mbar is not a surface pressure, which is %2 to %3"_s.arg(mbar)
                               .arg(kLowestPressure)
                               .arg(kHighestPressure),
                           u"To set it anyway, add the parameter \"force\": true."_s};
    }
    parameters.requireConfirmation(u"set the surface pressure to %1 mbar"_s.arg(mbar));
    return [mbar](Task &task) {
        task.finishWith(task.computer().writeSurfacePressure(mbar), &documents::sensors);
    };
}

Work prepareSettings(Parameters &parameters)
{
    const auto byte = [&](QLatin1StringView name) {
        return std::uint8_t(parameters.integer(name, 0, std::numeric_limits<std::uint8_t>::max()));
    };
    MarloSettings settings;
    settings.byte1 = byte("byte1"_L1);
    settings.byte2 = byte("byte2"_L1);
    settings.float1 = parameters.real("float1"_L1);
    settings.byte3 = byte("byte3"_L1);
    settings.float2 = parameters.real("float2"_L1);
    settings.byte4 = byte("byte4"_L1);
    settings.byte5 = byte("byte5"_L1);
    settings.byte6 = byte("byte6"_L1);
    parameters.requireConfirmation(u"write these settings"_s);
    return [settings](Task &task) {
        task.follow(task.computer().writeSettings(settings),
                    [&task, settings] { task.succeedOnDevice(documents::settings(settings)); });
    };
}

Work prepareSuperUserMode(Parameters &parameters)
{
    const bool on = parameters.requiredFlag("on"_L1);
    if (on)
        parameters.requireConfirmation(u"turn on the super-user mode"_s);
    else
        std::ignore = parameters.flag("confirm"_L1);
    return [on](Task &task) {
        task.finishWith(task.computer().setSuperUserMode(on),
                        [on](bool answered) { return documents::superUserMode(on, answered); });
    };
}

Work prepareDelete(Parameters &parameters)
{
    parameters.requireConfirmation(u"delete the last dive"_s);
    return
        [](Task &task) { task.finishWith(task.computer().deleteLastDive(), &documents::deletion); };
}

Work prepareErase(Parameters &parameters)
{
    parameters.requireConfirmation(u"delete all dives"_s);
    return [](Task &task) { task.finishWith(task.computer().eraseDives(), &documents::deletion); };
}

Work prepareReset(Parameters &parameters)
{
    parameters.requireConfirmation(u"restart the computer"_s);
    return [](Task &task) {
        task.follow(task.computer().restart(), [&task] { task.succeedOnDevice(); });
    };
}

// Firmware

Work prepareFirmwareInfo(Parameters &parameters)
{
    const FirmwareImage image = readImage(parameters.file("file"_L1)).image;
    return [image](Task &task) { task.succeed(documents::firmware(image)); };
}

Work prepareUpload(Parameters &parameters)
{
    const QString path = parameters.file("file"_L1);
    const bool force = parameters.flag("force"_L1);
    const ImageFile file = readImage(path);
    parameters.requireConfirmation(u"replace the firmware"_s);
    return [=](Task &task) {
        FirmwareJob *const job = task.computer().uploadFirmware(file.bytes, file.fileName, force);
        task.follow(job, [&task, job, image = file.image] {
            task.succeedOnDevice(documents::uploaded(image, job->elapsed()));
        });
    };
}

using Computer = VardaComputer;

constexpr std::array kMethods{
    Method{"scan"_L1, false, prepareScan},
    Method{"connect"_L1, true, prepareConnect},
    Method{"disconnect"_L1, true, prepareDisconnect},
    Method{"cancel"_L1, false, prepareCancel},
    Method{"info"_L1, true, prepareInfo},
    Method{"config"_L1, true, prepareConfig},
    Method{"sync"_L1, true, prepareSync},
    Method{"logbook"_L1, true, prepareLogbook},
    Method{"dive"_L1, true, prepareDive},
    Method{"dives"_L1, true, prepareDives},
    Method{"gases"_L1, true,
           prepareReading<VardaGasTables, &Computer::readGasTables, documents::gasTables>},
    Method{"tissues"_L1, true,
           prepareReading<VardaTissues, &Computer::readTissues, documents::tissues>},
    Method{"sensors"_L1, true,
           prepareReading<VardaSensors, &Computer::readSensors, documents::sensors>},
    Method{"battery"_L1, true,
           prepareReading<QList<BatteryInfoRecord>, &Computer::readBatteryHistory,
                          documents::battery>},
    Method{"log"_L1, true, prepareLog},
    Method{"time"_L1, true, prepareReading<std::int64_t, &Computer::readClock, documents::clock>},
    Method{"time set"_L1, true,
           prepareReading<std::int64_t, &Computer::setClock, documents::clock>},
    Method{"owner"_L1, true, prepareReading<QString, &Computer::readOwner, documents::owner>},
    Method{"owner set"_L1, true, prepareSetOwner},
    Method{"pressure"_L1, true, prepareSetPressure},
    Method{"settings"_L1, true, prepareSettings},
    Method{"layouts"_L1, true,
           prepareReading<QList<LayoutEntry>, &Computer::readLayouts, documents::layouts>},
    Method{"layouts get"_L1, true, prepareLayout},
    Method{"layouts add"_L1, true, prepareAddLayout},
    Method{"layouts remove"_L1, true, prepareRemoveLayout},
    Method{"layouts clear"_L1, true, prepareClearLayouts},
    Method{"layouts active"_L1, true,
           prepareReading<std::array<std::int8_t, 5>, &Computer::readActiveLayouts,
                          documents::activeLayouts>},
    Method{"layouts activate"_L1, true, prepareActivateLayout},
    Method{"delete"_L1, true, prepareDelete},
    Method{"erase"_L1, true, prepareErase},
    Method{"superuser"_L1, true, prepareSuperUserMode},
    Method{"reset"_L1, true, prepareReset},
    Method{"firmware info"_L1, false, prepareFirmwareInfo},
    Method{"firmware upload"_L1, true, prepareUpload},
};

} // namespace

std::span<const Method> allMethods()
{
    return kMethods;
}

const Method *methodNamed(const QString &name)
{
    const auto *const it = std::ranges::find_if(
        kMethods, [&name](const Method &each) { return name == each.name; });
    return it == kMethods.end() ? nullptr : it;
}
