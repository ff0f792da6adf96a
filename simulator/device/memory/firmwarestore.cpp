// SPDX-License-Identifier: MIT
#include "device/memory/firmwarestore.h"

#include "device/scenario/jsonreader.h"
#include "device/versiontext.h"
#include "device/wire/frame.h"
#include "device/wire/wirewriter.h"

#include <QtCore/qcryptographichash.h>
#include <QtCore/qendian.h>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

constexpr qsizetype kNameSize = 32;
constexpr qsizetype kProgramSize = kNameSize + 12;
constexpr qsizetype kHeaderAt = 512;
constexpr qsizetype kHeaderSize = 32;
constexpr quint32 kLargest = 16U << 20;

constexpr quint32 kFirmwareMagic = 0xDEAD'BEEF;
constexpr quint32 kBootloaderMagic = 0x424F'4F54;

const QByteArray kAccepted(1, '\x01');
const QByteArray kRefused(1, '\x00');

quint32 wordAt(const QByteArray &bytes, qsizetype offset)
{
    return qFromLittleEndian<quint32>(bytes.constData() + offset);
}

} // namespace

FirmwareScenario readFirmware(ObjectReader &reader)
{
    FirmwareScenario scenario;
    const QJsonValue value = reader.take("resume");
    if (value.isDouble()) {
        scenario.resume = Resume::AtOffset;
        scenario.offset = quint32(readInteger(value, reader.path("resume"), 0, 0xFFFF'FFFF));
    } else {
        constexpr std::pair<const char *, Resume> kChoices[] = {{"unfinished", Resume::Unfinished},
                                                                {"never", Resume::Never}};
        scenario.resume = reader.choice("resume", Resume::Unfinished, kChoices);
    }
    return scenario;
}

bool FirmwareStore::beginProgram(const QByteArray &payload)
{
    m_family = Family::None;
    if (payload.size() != kProgramSize)
        return false;
    const QByteArray name = payload.first(kNameSize);
    const qsizetype end = name.indexOf('\0');
    m_name = QString::fromUtf8(end < 0 ? name : name.first(end));
    m_version = wordAt(payload, kNameSize);
    m_size = wordAt(payload, kNameSize + 4);
    m_crc = wordAt(payload, kNameSize + 8);
    m_received.clear();
    if (m_name.isEmpty() || m_size == 0 || m_size > kLargest)
        return false;
    m_family = Family::Program;
    return true;
}

QByteArray FirmwareStore::beginUpdate(const QByteArray &header)
{
    const bool goesOn = m_family == Family::Update && header == m_header;
    m_family = Family::None;
    if (header.size() != kHeaderSize
        || (wordAt(header, 0) != kFirmwareMagic && wordAt(header, 0) != kBootloaderMagic))
        return kRefused;
    m_family = Family::Update;
    m_header = header;
    m_version = wordAt(header, 8);
    m_name.clear();
    if (!goesOn || m_scenario.resume != Resume::Unfinished)
        m_received.clear();
    if (m_scenario.resume == Resume::AtOffset) {
        // What it claims to have is the empty flash and the header that it was just told.
        m_received = QByteArray(qsizetype(std::min(m_scenario.offset, kLargest)), '\xFF');
        if (m_received.size() >= kHeaderAt + kHeaderSize)
            m_received.replace(kHeaderAt, kHeaderSize, header);
        return WireWriter().bytes(kAccepted).u32(m_scenario.offset).data();
    }
    if (m_received.isEmpty())
        return kAccepted;
    return WireWriter().bytes(kAccepted).u32(quint32(m_received.size())).data();
}

bool FirmwareStore::addBlock(Family family, const QByteArray &block)
{
    const quint32 room = family == Family::Program ? m_size : kLargest;
    if (family != m_family || block.isEmpty() || m_received.size() + block.size() > room)
        return false;
    m_received.append(block);
    return true;
}

std::optional<FirmwareStore::Installed> FirmwareStore::end(Family family)
{
    if (family != m_family)
        return std::nullopt;
    const bool good = family == Family::Program ? isProgramGood() : isUpdateGood();
    std::optional<Installed> installed;
    if (good)
        installed = install();
    m_family = Family::None;
    m_received.clear();
    return installed;
}

bool FirmwareStore::isProgramGood() const
{
    return m_received.size() == qsizetype(m_size) && crc16(m_received) == m_crc;
}

// The image must carry the header that it was announced with.
bool FirmwareStore::isUpdateGood() const
{
    return m_received.mid(kHeaderAt, kHeaderSize) == m_header;
}

FirmwareStore::Installed FirmwareStore::install()
{
    const bool program = m_family == Family::Program;
    const bool bootloader = !program && wordAt(m_header, 0) == kBootloaderMagic;
    m_image = m_received;
    m_description = {
        {u"family"_s, program ? u"program"_s : u"update"_s},
        {u"kind"_s, bootloader ? u"bootloader"_s : u"firmware"_s},
        {u"name"_s, m_name},
        {u"version"_s, versionText(m_version)},
        {u"size"_s, m_image.size()},
        {u"sha256"_s, QString::fromLatin1(
                          QCryptographicHash::hash(m_image, QCryptographicHash::Sha256).toHex())},
    };
    return {bootloader, m_version};
}

void FirmwareStore::addTo(QJsonObject &state) const
{
    state.insert(u"firmwareReceiving"_s, m_family == Family::None ? -1 : m_received.size());
    if (!m_description.isEmpty())
        state.insert(u"firmwareImage"_s, m_description);
}

} // namespace simulator
