// SPDX-License-Identifier: MIT
#include "sessiontype.h"

#include <varda/tidemardiveconverter.h>
#include <varda/vardadata.h>

#include "field.h"

SessionExtension::SessionExtension(QObject *session)
    : QObject(session), m_session(qobject_cast<VardaSession *>(session))
{
    const auto follow = [this](auto signal) {
        connect(m_session, signal, this, &SessionExtension::changed);
    };
    follow(&VardaSession::messageChanged);
    follow(&VardaSession::createControllerStatus);
    follow(&VardaSession::connectControllerStatus);
    follow(&VardaSession::disconnectController);
    follow(&VardaSession::endCommand);
    follow(&VardaSession::exchangeError);
}

QVariantList SessionExtension::diveHeaders() const
{
    return asVariants(m_session->diveHeaders());
}

QVariantList SessionExtension::diveSamples() const
{
    return asVariants(m_session->diveSamples());
}

QVariantList SessionExtension::syslogBin() const
{
    return asVariants(m_session->syslogBin());
}

QVariantList SessionExtension::batteryInfo() const
{
    return asVariants(m_session->batteryInfo());
}

QVariantList SessionExtension::layouts() const
{
    return asVariants(m_session->layouts());
}

QList<double> SessionExtension::diverN2() const
{
    const auto &values = m_session->diverN2();
    return {values.begin(), values.end()};
}

QList<double> SessionExtension::diverHe() const
{
    const auto &values = m_session->diverHe();
    return {values.begin(), values.end()};
}

QList<int> SessionExtension::activeLayouts() const
{
    const auto &values = m_session->activeLayouts();
    return {values.begin(), values.end()};
}

Dive ConverterType::toDive(const TidemarDiveHeader &header, const QVariantList &samples,
                           const VardaSession *session)
{
    if (!session)
        return {};
    QList<DiveSample> read;
    for (const QVariant &each : samples) {
        if (each.metaType() == QMetaType::fromType<DiveSample>())
            read.append(each.value<DiveSample>());
    }
    return TidemarDiveConverter::toDive(header, read, *session);
}

QVariantList ConverterType::gases(const TidemarDiveHeader &header)
{
    return asVariants(TidemarDiveConverter::gases(header));
}

QString DataType::firmwareVersionToString(uint version)
{
    return VardaData::firmwareVersionToString(version);
}
