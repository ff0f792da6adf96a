// SPDX-License-Identifier: MIT
#pragma once

#include "connection.h"

#include <varda/dive.h>
#include <varda/tidemardiveheader.h>

#include <QtCore/qlist.h>

#include <functional>

/** Reads the logbook and dives of a connected computer. */
class DiveReader
{
public:
    explicit DiveReader(Connection &connection) : m_connection(connection) { }

    /** What the computer is: without it no header can be understood. @throws Failure */
    void identify();
    /** Also what a whole dive says of its computer. @throws Failure */
    void identifyWhole();
    /** The headers of the dives that are not @p known, by number. @throws Failure */
    [[nodiscard]] QList<TidemarDiveHeader> headers(const QList<std::uint16_t> &known);
    /**
     * A dive with its profile.
     *
     * @param place  says of how many, for the status: "3 of 12"; asked while it comes in
     * @throws Failure
     */
    [[nodiscard]] Dive dive(const TidemarDiveHeader &header, const std::function<QString()> &place);

private:
    Connection &m_connection;
};
