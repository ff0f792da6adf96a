// SPDX-License-Identifier: MIT
// Jobs of a computer: what the application asks for, cancels and deletes, in any slot; what
// computers are in reach, what arrives, how much time goes by, and what becomes of the link, all of
// it as the input says.
#include "exchange.h"
#include "farend.h"
#include "fuzz.h"
#include "virtualtime.h"

#include <QtBluetooth/qbluetoothdevicediscoveryagent.h>
#include <QtCore/qelapsedtimer.h>
#include <QtCore/qtimer.h>

#include <varda/vardacomputer.h>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int kMostSteps = 200;
constexpr int kMostJobs = 20;
/** More than all limits and repetitions of so many jobs need. */
constexpr int kMostTimers = 2'000'000;

QPointer<QBluetoothDeviceDiscoveryAgent> searching;

/** What an application may do in a slot, or between two. */
enum class Deed { None, Queue, Cancel, Abort, Delete, Disconnect, OtherDevice, DeleteComputer };
constexpr int kDeeds = int(Deed::DeleteComputer) + 1;

class Run : public QObject
{
public:
    explicit Run(Input &input) : m_input(input) { }
    ~Run() override;
    Q_DISABLE_COPY_MOVE(Run)

    void go();

private:
    struct Asked {
        QPointer<VardaJob> job;
        int ends = 0;
        qint64 done = 0;
        bool isDeleted = false; ///< by the application
    };

    void renewComputer();
    void queue();
    VardaJob *jobOf(int kind);
    void follow(VardaJob *job);
    void onFinished(Asked &asked);
    void act(Deed deed);
    void react();
    VardaJob *anyJob();

    void step();
    void answer(int command);
    void advertise();
    void bringUp();
    void loseLink();
    void endAll();

    Input &m_input;
    FarEnd &m_farEnd = FarEnd::instance();
    VirtualTime &m_time = VirtualTime::instance();
    std::unique_ptr<VardaComputer> m_computer;
    std::vector<std::unique_ptr<Asked>> m_asked;
    Deed m_reaction = Deed::None;
    int m_lastCommand = 0;
};

Run::~Run()
{
    endAll();
    m_computer.reset();
    // Qt keeps a single shot until its time, also where nobody waits for it any more.
    VirtualTime::turn();
    while (m_time.advance() > 0)
        VirtualTime::turn();
    for (const auto &asked : m_asked)
        check(!asked->job, "a job that has ended is gone");
}

void Run::go()
{
    m_farEnd = {};
    m_farEnd.onWritten = [this](const QByteArray &frame) {
        checkFrame(frame);
        m_lastCommand = commandOf(frame);
    };
    m_farEnd.mtu = m_input.word() % 600;
    renewComputer();
    for (int i = 0; i < kMostSteps && !m_input.atEnd(); ++i)
        step();
}

void Run::renewComputer()
{
    m_computer = std::make_unique<VardaComputer>();
    const int look = m_input.byte();
    if (look & 1)
        m_computer->setLinkMode(look & 2 ? BleMode::Gatt : BleMode::Sps);
    if (look & 4)
        m_computer->setLinger(std::chrono::milliseconds(look * 10));
    if (look & 8)
        m_computer->setDevice(BleDeviceInfo::fromAddress(u"00:AA:01:01:00:01"_s, u"Varda"_s));
    connect(m_computer.get(), &VardaComputer::stateChanged, this, &Run::react);
    connect(m_computer.get(), &VardaComputer::deviceChanged, this, &Run::react);
    connect(m_computer.get(), &VardaComputer::currentJobChanged, this, &Run::react);
    connect(m_computer.get(), &VardaComputer::linkLost, this, &Run::react);
}

VardaJob *Run::jobOf(int kind)
{
    VardaComputer &computer = *m_computer;
    switch (kind % 20) {
    case 0:
        return computer.readIdentity();
    case 1:
        return computer.readConfiguration(m_input.byte() % 2 == 0);
    case 2:
        return computer.readGasTables();
    case 3:
        return computer.readOwner();
    case 4:
        return computer.readSensors();
    case 5:
        return computer.readLog();
    case 6:
        return computer.readBatteryHistory();
    case 7:
        return computer.readLogbook({1, m_input.word()});
    case 8:
        return computer.readSamples(m_input.word());
    case 9:
    case 10:
        return computer.downloadDives({m_input.word()});
    case 11:
        return computer.readLayout(m_input.byte());
    case 12:
        return computer.writeOwner(QString::fromUtf8(m_input.bytes(m_input.byte())));
    case 13:
        return computer.writeSurfacePressure(m_input.word());
    case 14:
        return computer.setSuperUserMode(true);
    case 15:
        return computer.addLayout(QByteArray(m_input.word() % 2048, 'L'));
    case 16:
        return computer.deleteLastDive();
    case 17: {
        QByteArray image(m_input.word() % 4096, 'F');
        if (const QByteArray header = m_input.bytes(32); image.size() > 544)
            image.replace(512, header.size(), header);
        return computer.uploadFirmware(image, u"Varda.1.2.3.a.bin"_s, m_input.byte() % 2 != 0);
    }
    case 18:
        return computer.restart();
    default:
        return computer.connectToComputer();
    }
}

void Run::queue()
{
    if (m_asked.size() < kMostJobs && m_computer)
        follow(m_input.byte() % 16 ? jobOf(m_input.byte())
                                   : m_computer->search(std::chrono::seconds(2)));
}

void Run::follow(VardaJob *job)
{
    check(job != nullptr, "a call never returns null");
    check(job->state() == VardaJob::Waiting, "a job does not run inside the call");
    const int look = m_input.byte();
    if (look & 1)
        job->setRetries(look >> 1 & 3);
    if (look & 16)
        job->setIdleLimit(std::chrono::milliseconds(m_input.word()));
    if (look & 32)
        job->setConnectLimit(std::chrono::milliseconds(m_input.word()));
    if (look & 64)
        job->setTotalLimit(std::chrono::milliseconds(m_input.word()));
    m_asked.push_back(std::make_unique<Asked>());
    Asked *const asked = m_asked.back().get();
    asked->job = job;
    connect(job, &VardaJob::finished, this, [this, asked] { onFinished(*asked); });
    connect(job, &VardaJob::stateChanged, this, [this, asked] {
        check(asked->ends == 0, "nothing comes after the end");
        react();
    });
    connect(job, &VardaJob::progressed, this, [this, asked](qint64 done, qint64 total) {
        check(asked->ends == 0, "nothing comes after the end");
        check(done >= asked->done, "progress never goes down");
        check(total < 0 || done <= total, "progress is never more than all");
        asked->done = done;
        react();
    });
    if (auto *const download = qobject_cast<DownloadJob *>(job)) {
        connect(download, &DownloadJob::headersRead, this, &Run::react);
        connect(download, &DownloadJob::diveRead, this, &Run::react);
        connect(download, &DownloadJob::diveDamaged, this, &Run::react);
    }
}

void Run::onFinished(Asked &asked)
{
    check(++asked.ends == 1, "a job ends once");
    check(!asked.isDeleted, "a job that was deleted does not end");
    check(asked.job && asked.job->state() == VardaJob::Finished, "an end is an end");
    check((asked.job->error() == VardaJob::NoError)
              == (asked.job->reason() == VardaJob::Reason::None),
          "an error has a reason");
    check((asked.job->error() == VardaJob::NoError) == asked.job->errorText().isEmpty(),
          "an error has a text");
    check(asked.job->error() == VardaJob::NoError || !asked.job->value().isValid(),
          "a failure has no result");
    react();
}

VardaJob *Run::anyJob()
{
    if (m_asked.empty())
        return nullptr;
    return m_asked[m_input.byte() % m_asked.size()]->job;
}

void Run::act(Deed deed)
{
    switch (deed) {
    case Deed::None:
        break;
    case Deed::Queue:
        queue();
        break;
    case Deed::Cancel:
        if (VardaJob *const job = anyJob())
            job->cancel();
        break;
    case Deed::Abort:
        if (VardaJob *const job = anyJob())
            job->abort();
        break;
    case Deed::Delete:
        if (VardaJob *const job = anyJob()) {
            for (const auto &asked : m_asked)
                asked->isDeleted = asked->isDeleted || (asked->job == job && asked->ends == 0);
            delete job;
        }
        break;
    case Deed::Disconnect:
        if (m_computer && m_asked.size() < kMostJobs)
            follow(m_computer->disconnectFromComputer());
        break;
    case Deed::OtherDevice:
        if (m_computer)
            m_computer->setDevice(BleDeviceInfo::fromAddress(
                u"00:AA:01:01:00:0%1"_s.arg(m_input.byte() % 3), u"Varda"_s));
        break;
    case Deed::DeleteComputer:
        m_computer.reset();
        break;
    }
}

void Run::react()
{
    act(std::exchange(m_reaction, Deed::None));
}

void Run::step()
{
    switch (m_input.byte() % 16) {
    case 0:
    case 1:
        queue();
        break;
    case 2:
        act(Deed(m_input.byte() % kDeeds));
        break;
    case 3:
    case 4:
        m_reaction = Deed(m_input.byte() % kDeeds);
        break;
    case 5:
        advertise();
        break;
    case 6:
        m_farEnd.takesWrites = m_input.byte() % 8 != 0;
        m_farEnd.hasServices = m_input.byte() % 8 != 0;
        bringUp();
        break;
    case 7:
        loseLink();
        break;
    case 8:
    case 9:
    case 10:
        answer(m_lastCommand);
        break;
    case 11:
        answer(m_input.byte());
        break;
    case 12:
        m_farEnd.notify(m_input.bytes(m_input.byte()));
        break;
    case 13:
        if (!m_computer)
            renewComputer();
        break;
    default:
        for (int i = m_input.byte(); i >= 0; --i) {
            m_time.advance();
            VirtualTime::turn();
        }
        break;
    }
    VirtualTime::turn();
}

/** A sound frame, in one notification or cut into several, alone or in front of another. */
void Run::answer(int command)
{
    const int look = m_input.byte();
    const QByteArray payload = m_input.bytes(look & 0x80 ? m_input.word() : look & 0x3F);
    QByteArray bytes = frameOf(command, payload);
    if (look & 0x40)
        bytes += frameOf(command, {});
    const int size = look & 0x80 ? 1 + m_input.byte() : int(bytes.size());
    for (qsizetype at = 0; at < bytes.size(); at += size)
        m_farEnd.notify(bytes.mid(at, size));
}

void Run::advertise()
{
    if (!searching)
        return;
    const int look = m_input.byte();
    if (look % 16 == 15) {
        Q_EMIT searching->errorOccurred(QBluetoothDeviceDiscoveryAgent::PoweredOffError);
        return;
    }
    QBluetoothDeviceInfo info(QBluetoothAddress(u"00:AA:01:01:00:0%1"_s.arg(look % 3)),
                              look & 4 ? u"Varda"_s : u"VSK-2"_s, 0);
    info.setCoreConfigurations(QBluetoothDeviceInfo::LowEnergyCoreConfiguration);
    Q_EMIT searching->deviceDiscovered(info);
}

void Run::bringUp()
{
    VirtualTime::turn();
    if (m_farEnd.device)
        Q_EMIT m_farEnd.device->servicesDiscovered();
    if (m_farEnd.device)
        Q_EMIT m_farEnd.device->connected();
}

void Run::loseLink()
{
    if (!m_farEnd.device)
        return;
    if (m_input.byte() % 2 != 0)
        Q_EMIT m_farEnd.device->error(u"Controller error: "_s);
    else
        Q_EMIT m_farEnd.device->disconnected();
}

/** The limits end what is left, and nothing else has to happen. */
void Run::endAll()
{
    m_reaction = Deed::None;
    const auto isLeft = [](const std::unique_ptr<Asked> &asked) {
        return asked->ends == 0 && !asked->isDeleted;
    };
    for (int i = 0; i < kMostTimers && std::any_of(m_asked.begin(), m_asked.end(), isLeft); ++i) {
        VirtualTime::turn();
        m_time.advance();
    }
    VirtualTime::turn();
    check(std::none_of(m_asked.begin(), m_asked.end(), isLeft), "every job ends");
}

} // namespace

// The library finds these instead of Qt's: there is no radio here, and no real time.

void QBluetoothDeviceDiscoveryAgent::start(DiscoveryMethods /*methods*/)
{
    searching = this;
    QTimer::singleShot(lowEnergyDiscoveryTimeout(), this,
                       &QBluetoothDeviceDiscoveryAgent::finished);
}

bool QBluetoothDeviceDiscoveryAgent::isActive() const
{
    return false;
}

void QElapsedTimer::start() noexcept
{
    t1 = VirtualTime::instance().now();
    t2 = 0;
}

qint64 QElapsedTimer::elapsed() const noexcept
{
    return VirtualTime::instance().now() - t1;
}

/** MTU, computer, and steps. */
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    VirtualTime::instance();
    Input input(data, size);
    Run(input).go();
    return 0;
}
