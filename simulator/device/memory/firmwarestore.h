// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qjsonobject.h>
#include <QtCore/qstring.h>

#include <optional>

namespace simulator {

class ObjectReader;

enum class Resume { Unfinished, Never, AtOffset };

struct FirmwareScenario {
    Resume resume = Resume::Unfinished;
    quint32 offset = 0;
};

FirmwareScenario readFirmware(ObjectReader &reader);

/** Takes a new firmware or bootloader, checks it and keeps it. */
class FirmwareStore
{
public:
    /**
     * The older procedure names the image and checks it by its CRC; the newer one, in which an
     * image describes itself, can go on where an earlier attempt broke off.
     */
    enum class Family { None, Program, Update };

    struct Installed {
        bool bootloader = false;
        quint32 version = 0;
    };

    explicit FirmwareStore(const FirmwareScenario &scenario) : m_scenario(scenario) { }

    bool beginProgram(const QByteArray &payload);
    /** The answer: refused, accepted, or accepted from an offset on. */
    QByteArray beginUpdate(const QByteArray &header);
    bool addBlock(Family family, const QByteArray &block);
    /** What is new if the image is accepted. */
    std::optional<Installed> end(Family family);

    /** The last image that was accepted. */
    const QByteArray &image() const { return m_image; }
    void addTo(QJsonObject &state) const;

private:
    bool isProgramGood() const;
    bool isUpdateGood() const;
    Installed install();

    FirmwareScenario m_scenario;

    Family m_family = Family::None;
    QByteArray m_received;
    QString m_name;
    quint32 m_version = 0;
    quint32 m_size = 0;
    quint32 m_crc = 0;
    QByteArray m_header;

    QByteArray m_image;
    QJsonObject m_description;
};

} // namespace simulator
