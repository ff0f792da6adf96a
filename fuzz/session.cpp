// SPDX-License-Identifier: MIT
// A whole session: what arrives, how much time goes by, what becomes of the link, and what the
// application does, all of it as the input says.
#include "exchange.h"
#include "farend.h"
#include "fuzz.h"
#include "virtualtime.h"

#include <QtCore/qcoreevent.h>

#include <varda/vardableprotocol.h>
#include <varda/vardasession.h>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kQuiet = 1000; // no other timer has this interval
constexpr qsizetype kMostChunks = 4096;

/** Something that the application was told. */
struct Word {
    enum Kind { Created, Connection, Disconnected, Ended, Refused };

    Kind kind;
    int value = 0;
    int error = 0;
};

/** What an application may do where it is told something. */
enum class Reaction { None, Delete, Disconnect, ConnectAnew, Start };

/** The answer as it comes in, followed beside the library. */
struct Incoming {
    bool isCollected = false;
    QList<QByteArray> chunks;

    [[nodiscard]] QList<Answer> add(const QByteArray &chunk)
    {
        if (chunks.size() == kMostChunks) {
            chunks.clear();
            return {};
        }
        chunks.append(chunk);
        return isCollected ? QList<Answer>() : take();
    }

    QList<Answer> take() { return answersIn(std::exchange(chunks, {}).join()); }
};

class Run : public QObject
{
public:
    explicit Run(Input &input) : m_input(input) { }
    ~Run() override;
    Q_DISABLE_COPY_MOVE(Run)

    void go();

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void connectAnew();
    void listen();
    void follow(VardaBleProtocol *protocol);
    void hear(const Word &word);
    void react();
    void start(int job);
    void startUpload();

    void step();
    void answer(int command);
    void notify(const QByteArray &bytes);
    void passTime();
    void loseLink();
    void settle();

    void onAnswer(const Answer &answer);
    void onSilence();
    void checkOutcome(const Answer &answer);
    void onWritten(const QByteArray &frame);

    Input &m_input;
    FarEnd &m_farEnd = FarEnd::instance();
    VirtualTime &m_time = VirtualTime::instance();
    VardaSession *m_session = nullptr;
    BleMode m_mode = BleMode::Gatt;
    QPointer<VardaBleProtocol> m_protocol;
    Incoming m_incoming;
    qsizetype m_received = 0;

    QList<Word> m_words;     ///< since the last answer
    QList<Answer> m_answers; ///< in this step
    int m_lastCommand = 0;
    qsizetype m_sent = 0; ///< frames since the last answer
    Reaction m_reaction = Reaction::None;
    bool m_isOwnDoing = false; ///< in this step the application has interfered
};

Run::~Run()
{
    delete m_session;
    VirtualTime::turn();
    // Qt keeps a single shot until its time, also where nobody waits for it any more.
    while (m_time.advance() > 0)
        VirtualTime::turn();
    check(m_session == nullptr, "a session that is deleted is gone");
}

void Run::go()
{
    m_farEnd = {};
    m_farEnd.onWritten = [this](const QByteArray &frame) { onWritten(frame); };
    m_mode = m_input.byte() % 2 == 0 ? BleMode::Gatt : BleMode::Sps;
    m_farEnd.mtu = m_input.word() % 600;
    connectAnew();
    // Which model it is decides about nearly all of the layouts.
    start(TidemarCommand::Identification);
    settle();
    notify(frameOf(TidemarCommand::Identification, QByteArray(4, '\1') + char(m_input.byte())));
    settle();

    constexpr int kMostSteps = 200;
    for (int i = 0; i < kMostSteps && m_session && !m_input.atEnd(); ++i)
        step();
}

void Run::connectAnew()
{
    if (!m_session) {
        m_session = new VardaSession;
        listen();
    }
    m_farEnd.bringUp(*m_session, m_mode);
    settle();
}

/** A new engine has received nothing yet. */
bool Run::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::ChildAdded)
        m_incoming = {};
    return QObject::eventFilter(object, event);
}

void Run::listen()
{
    VardaSession *const session = m_session;
    session->installEventFilter(this);
    connect(session, &VardaSession::createControllerStatus, session,
            [this](auto status) { hear({Word::Created, int(status)}); });
    connect(session, &VardaSession::connectControllerStatus, session,
            [this](auto status) { hear({Word::Connection, int(status)}); });
    connect(session, &VardaSession::disconnectController, session, [this] {
        check(!m_session->isConnected(), "a link that has gone down is not connected");
        hear({Word::Disconnected});
    });
    connect(session, &VardaSession::endCommand, session,
            [this](auto command) { hear({Word::Ended, int(command)}); });
    connect(session, &VardaSession::exchangeError, session,
            [this](auto command, auto error) { hear({Word::Refused, int(command), int(error)}); });
    connect(session, &VardaSession::messageChanged, session, [this] {
        check(!m_session->message().isEmpty(), "a message has a text");
        react();
    });
    connect(session, &VardaSession::uploadFirmwareProgress, session,
            [this](int bytes, int percent) {
                check(bytes >= 0 && percent >= 0, "an upload goes forward");
                react();
            });
    connect(session, &QObject::destroyed, [this] { m_session = nullptr; });
}

/** Behind the session's own slots. */
void Run::follow(VardaBleProtocol *protocol)
{
    m_protocol = protocol;
    connect(protocol, &VardaBleProtocol::responseReceived, protocol,
            [this](auto command, const QByteArray &payload, unsigned short length) {
                check(length == payload.size() + 1, "a length counts the command");
                onAnswer({int(command), payload});
            });
    connect(protocol, &VardaBleProtocol::protocolError, protocol,
            [this](auto command, auto /*error*/) { onAnswer({int(command), {}, true}); });
    connect(protocol, &VardaBleProtocol::receiveTimeout, protocol, [this] { onSilence(); });
}

void Run::hear(const Word &word)
{
    check(m_session != nullptr, "a session that is gone tells nothing");
    m_words.append(word);
    react();
}

void Run::react()
{
    const Reaction reaction = std::exchange(m_reaction, Reaction::None);
    if (reaction == Reaction::None)
        return;
    m_isOwnDoing = true;
    switch (reaction) {
    case Reaction::None:
        break;
    case Reaction::Delete:
        delete m_session;
        break;
    case Reaction::Disconnect:
        m_session->controllerDisconnect();
        break;
    case Reaction::ConnectAnew:
        m_session->connectTo(BleDeviceInfo::fromAddress(u"00:AA:01:01:00:02"_s, u"VSK-2"_s),
                             m_mode);
        break;
    case Reaction::Start:
        start(m_input.byte());
        break;
    }
}

void Run::start(int job)
{
    VardaSession &session = *m_session;
    switch (job) {
    case TidemarCommand::Logbook:
        session.qmlStartGetLogbook({1, m_input.word()});
        break;
    case TidemarCommand::Fullsamples:
        session.startGetDiveSamples(m_input.word());
        break;
    case TidemarCommand::Set_sensors:
        session.startSetPressure(m_input.word());
        break;
    case TidemarCommand::Set_time:
        session.startSetTime();
        break;
    case TidemarCommand::Set_owner:
        session.setOwner(QString::fromUtf8(m_input.bytes(m_input.byte())));
        break;
    case TidemarCommand::GetGases:
        session.startGetGases(m_input.byte());
        break;
    case TidemarCommand::MarloSet:
        session.startMarloSettings({});
        break;
    case TidemarCommand::LayoutList:
        session.startLayoutList();
        break;
    case TidemarCommand::LayoutGet:
        session.startLayoutGet(m_input.byte());
        break;
    case TidemarCommand::LayoutAdd:
        session.startLayoutAdd(QByteArray(m_input.word() % 2048, 'L'));
        break;
    case TidemarCommand::LayoutRemove:
        session.startLayoutRemove(m_input.byte());
        break;
    case TidemarCommand::LayoutRemoveAll:
        session.startLayoutRemoveAll();
        break;
    case TidemarCommand::LayoutActiveGet:
        session.startLayoutActiveGet();
        break;
    case TidemarCommand::LayoutActiveSet:
        session.startLayoutActiveSet(m_input.byte(), qint8(m_input.byte()));
        break;
    case TidemarCommand::BatteryInformation:
        session.startGetBatteryInformation();
        break;
    case TidemarCommand::SuperUserMode:
        session.startSuperUserMode(true);
        break;
    case TidemarCommand::Begin_program:
    case TidemarCommand::BeginUpdate:
        startUpload();
        break;
    default:
        session.startCommand(TidemarCommand::TidemarCommandIn(job));
    }
}

void Run::startUpload()
{
    QByteArray image(m_input.word() % 4096, 'F');
    if (const QByteArray header = m_input.bytes(32); image.size() > 544)
        image.replace(512, header.size(), header);
    m_session->uploadFirmware(image, u"Varda.1.2.3.a.bin"_s, m_input.byte() % 2 != 0);
}

void Run::step()
{
    switch (m_input.byte() % 12) {
    case 0:
        start(m_input.byte());
        break;
    case 1:
    case 2:
        answer(m_input.byte());
        break;
    case 3:
    case 4:
        answer(m_lastCommand);
        break;
    case 5:
        notify(m_input.bytes(m_input.byte()));
        break;
    case 6: // the same over and over, more often than an answer may
    {
        const int times = 1 + m_input.byte() % 8 * 700;
        const QByteArray chunk = m_input.bytes(1 + m_input.byte() % 16);
        for (int i = 0; i < times && m_session; ++i)
            notify(chunk);
        break;
    }
    case 7:
    case 8:
        passTime();
        break;
    case 9:
        loseLink();
        break;
    case 10:
        m_reaction = Reaction(m_input.byte() % 5);
        break;
    default:
        m_farEnd.takesWrites = m_input.byte() % 4 != 0;
        m_farEnd.hasServices = m_input.byte() % 4 != 0;
        connectAnew();
        break;
    }
    settle();
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
    for (qsizetype at = 0; at < bytes.size() && m_session; at += size)
        notify(bytes.mid(at, size));
}

void Run::notify(const QByteArray &bytes)
{
    if (!m_farEnd.device || bytes.isEmpty() || !m_protocol)
        return;
    m_received += bytes.size();
    m_answers.clear();
    const auto expected = m_incoming.add(bytes);
    m_farEnd.notify(bytes);
    check(m_isOwnDoing || m_answers == expected, "what arrives is cut into its frames");
}

void Run::passTime()
{
    m_answers.clear();
    Incoming before = m_incoming; // an answer may have the next thing sent
    const bool isQuiet = m_time.advance() == kQuiet;
    const auto expected = isQuiet ? before.take() : QList<Answer>();
    if (isQuiet)
        m_incoming.chunks.clear();
    check(m_isOwnDoing || m_answers == expected, "a quiet line ends an answer, and nothing else");
}

void Run::loseLink()
{
    BleDevice *const device = m_farEnd.device;
    if (!device)
        return;
    const bool wasConnected = m_session->isConnected();
    const bool isError = m_input.byte() % 2 != 0;
    if (isError)
        Q_EMIT device->error(u"Controller error: "_s);
    else
        Q_EMIT device->disconnected();
    if (m_isOwnDoing)
        return;
    check(m_words.size() == 1, "a lost link is told once");
    const bool isDown = m_words[0].kind == Word::Disconnected;
    check(isDown == (wasConnected || !isError), "a link that was up goes down, another fails");
    check(!m_session->isConnected(), "a lost link is not connected");
}

/** Lets the event loop turn, and looks at what is left. */
void Run::settle()
{
    VirtualTime::turn();
    m_words.clear();
    m_sent = 0;
    m_isOwnDoing = false;
    if (!m_session)
        return;
    const auto protocols = m_session->findChildren<VardaBleProtocol *>();
    check(protocols.size() <= 1 && m_session->children().size() <= 3,
          "a session has one scanner, one link and one engine");
    if (!protocols.isEmpty() && protocols.front() != m_protocol)
        follow(protocols.front());
    check(!m_session->isConnected() || m_farEnd.device, "what is connected has a link");

    check(m_session->diveHeaders().size() <= m_received && m_session->syslog().size() <= m_received
              && m_session->syslogBin().size() <= m_received
              && m_session->batteryInfo().size() <= m_received
              && m_session->layoutBlob().size() <= m_received
              && m_session->layouts().size() <= m_received,
          "no list is longer than what has arrived");
    constexpr qsizetype kMostSamples = 800'000;
    check(m_session->diveSamples().size() <= kMostSamples,
          "there are no more samples than two answers have");
}

void Run::onAnswer(const Answer &answer)
{
    m_answers.append(answer);
    if (!m_isOwnDoing)
        checkOutcome(answer);
    m_words.clear();
    m_sent = 0;
}

void Run::checkOutcome(const Answer &answer)
{
    if (answer.isDamaged) {
        check(m_words.size() == 1 && m_words[0].kind == Word::Refused
                  && m_words[0].value == answer.command && m_words[0].error == 0,
              "a damaged answer is told as such");
        return;
    }
    const Outcome outcome = Outcome::of(answer);
    const bool sends = m_sent > 0;
    check(outcome.maySend || !sends, "nothing is sent that nobody asked for");
    // Where the link refuses the next step, that is told instead.
    if (outcome.maySend && !m_farEnd.takesWrites) {
        m_isOwnDoing = true;
        return;
    }
    switch (outcome.told) {
    case Outcome::Nothing:
        // A layout's last step ends the job; a firmware's first may follow nothing.
        if (answer.command == TidemarCommand::LayoutAdd && !sends) {
            check(m_words.size() == 1 && m_words[0].kind == Word::Ended, "a layout's end is told");
            return;
        }
        check(m_words.isEmpty(), "an answer that ends nothing is not told");
        break;
    case Outcome::Ended:
        check(m_words.size() == 1 && m_words[0].kind == Word::Ended
                  && m_words[0].value == outcome.command,
              "the end of a job is told once");
        break;
    case Outcome::Refused:
        check(m_words.size() == 1 && m_words[0].kind == Word::Refused
                  && m_words[0].value == outcome.command && m_words[0].error == outcome.error,
              "a refusal is told once");
        break;
    case Outcome::LinkDropped:
        check(!m_session->isConnected() && m_words.size() <= 1, "a restart drops the link");
        m_isOwnDoing = true;
        break;
    }
}

void Run::onSilence()
{
    if (m_isOwnDoing)
        return;
    check(m_session->message() == u"Receive timeout"_s, "silence is told");
    check(m_farEnd.disconnections > 0, "silence drops the link");
}

void Run::onWritten(const QByteArray &frame)
{
    checkFrame(frame);
    m_lastCommand = commandOf(frame);
    ++m_sent;
    m_incoming = {};
    m_incoming.isCollected = isCollected(m_lastCommand);
}

} // namespace

/** Link, MTU, model, and steps. */
int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    VirtualTime::instance();
    Input input(bytes, size);
    Run(input).go();
    return 0;
}
