// SPDX-License-Identifier: MIT
// Images that a user picks, and their upload to a computer that answers as the input says.
#include "exchange.h"
#include "farend.h"
#include "fuzz.h"
#include "virtualtime.h"

#include <QtCore/qendian.h>

#include <varda/firmwareimage.h>
#include <varda/vardasession.h>

using namespace Qt::StringLiterals;

namespace {

constexpr quint32 kApplication = 0xDEADBEEF;
constexpr quint32 kBootloader = 0x424F4F54;
constexpr quint32 kFirmware = 0x01020361; // of the computer

/** Commands as they go out and their endings. */
struct Family {
    int begin;
    int block;
    int end;
};
constexpr Family kOlder{13, 14, 15};
constexpr Family kNewer{30, 31, 32};

quint32 wordIn(const QByteArray &bytes, qsizetype offset)
{
    QByteArray word = bytes.mid(offset, 4);
    word.append(4 - word.size(), '\0');
    return qFromLittleEndian<quint32>(word.constData());
}

class Upload
{
public:
    explicit Upload(Input &input) : m_input(input) { }

    void run();

private:
    void connect();
    void makeImage();
    [[nodiscard]] int expectedResult(bool force) const;
    void checkBegin() const;
    void answer();
    void checkNext(bool isResumed);

    [[nodiscard]] int command() const { return commandOf(m_sent.value(0)); }
    [[nodiscard]] QByteArray payload() const { return payloadOf(m_sent.value(0)); }

    Input &m_input;
    FarEnd &m_farEnd = FarEnd::instance();
    VardaSession m_session;
    QByteArray m_image;
    QString m_name;
    quint32 m_bootloader = 0;
    Family m_family = kOlder;
    qint64 m_position = 0;
    qint64 m_step = 0;
    QList<QByteArray> m_sent; ///< since the last answer
    int m_told = 0;           ///< endings, since the last answer
    int m_progress = 0;       ///< bytes, as last told
    bool m_isOver = false;
};

void Upload::connect()
{
    m_farEnd = {};
    m_farEnd.onWritten = [this](const QByteArray &frame) {
        checkFrame(frame);
        m_sent.append(frame);
    };
    m_farEnd.mtu = m_input.word() % 600;
    m_step = m_farEnd.mtu > 0 ? std::max((m_farEnd.mtu - 12) / 8 * 8, 8) : 128;
    m_farEnd.bringUp(m_session, BleMode::Gatt);
    m_farEnd.notify(frameOf(TidemarCommand::Identification, QByteArray("\x61\x03\x02\x01\x0B")));
    m_bootloader = m_input.byte() % 2 == 0 ? 0 : 0x01000361;
    const QByteArray version = m_bootloader == 0 ? QByteArray() : QByteArray("\x61\x03\x00\x01", 4);
    m_farEnd.notify(frameOf(TidemarCommand::BootloaderVersion, version));
    VirtualTime::turn();

    QObject::connect(&m_session, &VardaSession::endCommand, &m_session, [this] { ++m_told; });
    QObject::connect(&m_session, &VardaSession::exchangeError, &m_session, [this] { ++m_told; });
    QObject::connect(&m_session, &VardaSession::uploadFirmwareProgress, &m_session,
                     [this](int bytes, int percent) {
                         check(percent >= 0 && (bytes > 0 || percent == 100),
                               "an upload goes forward");
                         m_progress = bytes;
                     });
}

void Upload::makeImage()
{
    m_name = QString::fromUtf8(m_input.bytes(m_input.byte() % 64));
    const QByteArray header = m_input.bytes(m_input.byte() % 33);
    const int size = m_input.word() % 8192;
    for (int i = 0; i < size; ++i)
        m_image.append(char(i * 7 + i / 256));
    // Without this nearly every image would be none.
    if (size > 512)
        m_image.replace(512, std::min<qsizetype>(4, size - 512), QByteArray(4, '\0'));
    m_image.replace(512, header.size(), header);
    m_image.truncate(size);
}

int Upload::expectedResult(bool force) const
{
    const quint32 version = wordIn(m_image, 520);
    if (m_image.isEmpty())
        return 0;
    switch (wordIn(m_image, 512)) {
    case 0:
        break;
    case kApplication:
        if (version == kFirmware && !force)
            return -3;
        if (m_bootloader == 0)
            return -4;
        break;
    case kBootloader:
        if (version == m_bootloader && !force)
            return -2;
        break;
    default:
        return -1;
    }
    return int(m_image.size());
}

void Upload::checkBegin() const
{
    check(m_sent.size() == 1 && command() == m_family.begin, "an upload begins");
    if (m_family.begin == kNewer.begin) {
        QByteArray header = m_image.mid(512, 32);
        header.append(32 - header.size(), '\0');
        check(payload() == header, "a header goes ahead of its image");
        return;
    }
    const QString name = m_name.section(u'.', 0, 0);
    const qsizetype field = name.toUtf8().size() + std::max<qsizetype>(32 - name.size(), 0);
    check(payload().startsWith(name.toUtf8()) && payload().size() == field + 12
              && wordIn(payload(), field + 4) == quint32(m_image.size()),
          "a name and a size go ahead of their image");
}

void Upload::run()
{
    connect();
    makeImage();
    const bool force = m_input.byte() % 2 != 0;
    const FirmwareImage image = FirmwareImage::fromData(m_image, m_name);
    m_sent.clear();
    const int result = m_session.uploadFirmware(m_image, m_name, force);
    check(result == expectedResult(force), "an image is what it is");
    check(image.isValid() == (result != -1 && result != 0), "an image is known before");
    if (result <= 0) {
        check(m_sent.isEmpty(), "of a bad image nothing is sent");
        return;
    }
    m_family = wordIn(m_image, 512) == 0 ? kOlder : kNewer;
    checkBegin();

    constexpr int kMostAnswers = 2000;
    for (int i = 0; i < kMostAnswers && !m_isOver; ++i)
        answer();
}

/** Accepts where the input has ended. */
void Upload::answer()
{
    const int asked = command();
    const bool isRefused = m_input.byte() % 64 == 63;
    const bool isResumed = asked == kNewer.begin && m_input.byte() % 2 != 0;
    QByteArray payload(1, isRefused ? '\0' : '\1');
    if (isResumed) {
        const QByteArray offset = m_input.bytes(m_input.byte() % 5);
        payload += offset;
        if (!offset.isEmpty())
            m_position = wordIn(offset, 0);
    }
    m_sent.clear();
    m_told = 0;
    m_farEnd.notify(frameOf(asked, payload));
    VirtualTime::turn();

    if (isRefused) {
        check(m_sent.isEmpty() && m_told == 1, "a refusal ends an upload");
        m_isOver = true;
    } else if (asked == m_family.end) {
        check(m_told == 1 && m_sent.size() == 1 && command() == TidemarCommand::Close
                  && m_progress == 0,
              "an upload ends once, and closes");
        m_isOver = true;
    } else {
        checkNext(isResumed);
    }
}

void Upload::checkNext(bool isResumed)
{
    check(m_told == 0 && m_sent.size() == 1, "one step follows the other");
    if (m_position >= m_image.size()) {
        check(command() == m_family.end && payload().isEmpty(), "behind the last block is the end");
        return;
    }
    check(command() == m_family.block && payload() == m_image.mid(m_position, m_step),
          isResumed ? "an upload goes on where it broke off" : "a block follows the other");
    m_position += m_step;
}

} // namespace

/** MTU, bootloader, name, header, size, force, and the answers. */
int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    VirtualTime &time = VirtualTime::instance();
    Input input(bytes, size);
    {
        Upload upload(input);
        upload.run();
    }
    do
        VirtualTime::turn();
    while (time.advance() > 0);
    return 0;
}
