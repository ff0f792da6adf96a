// SPDX-License-Identifier: MIT
#include "divereader.h"

#include "terminal.h"
#include "text.h"

#include <varda/tidemardiveconverter.h>

#include <algorithm>
#include <set>

using namespace Qt::StringLiterals;

namespace {

/** The list travels in one write, and Linux refuses one that is longer than the MTU allows. */
qsizetype mostKnown(int mtu)
{
    constexpr int kUsualMtu = 131; // where it is not known
    constexpr int kAround = 12;    // of the write and of the frame
    constexpr int kNumber = 2;
    return std::max(0, (mtu > 0 ? mtu : kUsualMtu) - kAround) / kNumber;
}

} // namespace

void DiveReader::identify()
{
    m_connection.read(TidemarCommand::Identification, u"identification"_s);
}

void DiveReader::identifyWhole()
{
    identify();
    m_connection.readIfWhole(TidemarCommand::Serialnumber, u"serial number"_s);
    m_connection.read(TidemarCommand::Computer, u"configuration"_s);
}

QList<TidemarDiveHeader> DiveReader::headers(const QList<std::uint16_t> &known)
{
    const auto newest = known.last(std::min(known.size(), mostKnown(m_connection.mtu())));
    m_connection.run({.name = u"logbook"_s,
                      .end = TidemarCommand::Logbook,
                      .start = [newest](VardaSession &session) { session.startGetLogbook(newest); },
                      .progress =
                          [this] {
                              showStatus(u"Reading the logbook, "_s
                                         + bytesText(double(m_connection.received())));
                          }});
    QList<TidemarDiveHeader> headers = m_connection.session().diveHeaders();
    // The computer does not hear of the older ones, and may send a header twice.
    std::set<std::uint16_t> taken(known.begin(), known.end());
    headers.removeIf([&taken](const TidemarDiveHeader &header) {
        return !taken.insert(header.diveNumber).second;
    });
    std::sort(headers.begin(), headers.end(),
              [](const TidemarDiveHeader &one, const TidemarDiveHeader &other) {
                  return one.diveNumber < other.diveNumber;
              });
    return headers;
}

Dive DiveReader::dive(const TidemarDiveHeader &header, const std::function<QString()> &place)
{
    const std::uint16_t number = header.diveNumber;
    const QString name = u"dive %1"_s.arg(number);
    m_connection.run(
        {.name = name,
         .end = TidemarCommand::Fullsamples,
         .start = [number](VardaSession &session) { session.startGetDiveSamples(number); },
         .verb = u"Reading"_s,
         .progress =
             [&] {
                 showStatus(u"Reading %1, %2, %3"_s.arg(
                     name, place(), bytesText(double(m_connection.received()))));
             }});
    const VardaSession &session = m_connection.session();
    return TidemarDiveConverter::toDive(header, session.diveSamples(), session);
}
