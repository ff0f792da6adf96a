// SPDX-License-Identifier: MIT
#include <QtTest/qtest.h>

#include <varda/vardableprotocol.h>

class TestErrorTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void controller_data();
    void controller();
    void service_data();
    void service();
    void scan_data();
    void scan();
    void exchange_data();
    void exchange();
    void enumerators();
};

static void addTexts(std::initializer_list<std::pair<int, const char *>> texts)
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("text");
    for (const auto &[value, text] : texts)
        QTest::addRow("%d", value) << value << QString::fromLatin1(text);
}

void TestErrorTexts::controller_data()
{
    addTexts({{0, "Unknown Error"},
              {1, "Unknown Error"},
              {2, "Unknown Remote Device Error"},
              {3, "Network Error"},
              {4, "Invalid Bluetooth Adapter Error"},
              {5, "Connection Error"},
              {6, "Advertising Error"},
              {7, "Remote Host Closed Error"},
              {8, "Authorization Error"},
              {9, "Missing Permissions Error"},
              {10, "Unknown Error"},
              {11, "Unknown Error"},
              {-1, "Unknown Error"},
              {1000, "Unknown Error"}});
}

void TestErrorTexts::controller()
{
    QFETCH(const int, value);
    QTEST(VardaBleProtocol::controllerErrorString(QLowEnergyController::Error(value)), "text");
}

void TestErrorTexts::service_data()
{
    addTexts({{0, "No Error"},
              {1, "Operation Error"},
              {2, "Characteristic Write Error"},
              {3, "Descriptor Write Error"},
              {4, "Unknown Error"},
              {5, "Characteristic Read Error"},
              {6, "Descriptor Read Error"},
              {7, "Unknown Error"},
              {-1, "Unknown Error"},
              {1000, "Unknown Error"}});
}

void TestErrorTexts::service()
{
    QFETCH(const int, value);
    QTEST(VardaBleProtocol::serviceErrorString(QLowEnergyService::ServiceError(value)), "text");
}

void TestErrorTexts::scan_data()
{
    addTexts({{0, "Unknown Error"},
              {1, "Input Output Error"},
              {2, "Powered Off Error"},
              {3, "Invalid Bluetooth Adapter Error"},
              {4, "Unsupported Platform Error"},
              {5, "Unsupported Discovery Method"},
              {6, "Location Service Turned Off Error"},
              {7, "Missing Permissions Error"},
              {8, "Unknown Error"},
              {100, "Unknown Error"},
              {-1, "Unknown Error"},
              {1000, "Unknown Error"}});
}

void TestErrorTexts::scan()
{
    QFETCH(const int, value);
    QTEST(VardaBleProtocol::scanErrorString(QBluetoothDeviceDiscoveryAgent::Error(value)), "text");
}

void TestErrorTexts::exchange_data()
{
    addTexts({{0, "Invalid CRC"},
              {1, "Begin Program Error"},
              {2, "Program Error"},
              {3, "End Program Error"},
              {4, "Set Owner Error"},
              {5, "Unknown Error"},
              {6, "Unknown Error"},
              {7, "Unknown Error"},
              {-1, "Unknown Error"},
              {1000, "Unknown Error"}});
}

void TestErrorTexts::exchange()
{
    QFETCH(const int, value);
    QTEST(VardaBleProtocol::exchangeErrorString(ExchangeError::ExchangeErrorIn(value)), "text");
}

// The numbers above are Qt's own; here by their names.
void TestErrorTexts::enumerators()
{
    using Protocol = VardaBleProtocol;
    QCOMPARE(Protocol::controllerErrorString(QLowEnergyController::MissingPermissionsError),
             QStringLiteral("Missing Permissions Error"));
    QCOMPARE(Protocol::serviceErrorString(QLowEnergyService::DescriptorReadError),
             QStringLiteral("Descriptor Read Error"));
    QCOMPARE(Protocol::scanErrorString(QBluetoothDeviceDiscoveryAgent::MissingPermissionsError),
             QStringLiteral("Missing Permissions Error"));
    QCOMPARE(Protocol::exchangeErrorString(ExchangeError::SetOwnerError),
             QStringLiteral("Set Owner Error"));
}

QTEST_APPLESS_MAIN(TestErrorTexts)
#include "tst_errortexts.moc"
