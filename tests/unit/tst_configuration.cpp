// SPDX-License-Identifier: MIT
#include "fields.h"
#include "payload.h"

#include <QtTest/qtest.h>

class TestConfiguration : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyField_data();
    void everyField();
    void form_data();
    void form();
    void vardaWidths_data();
    void vardaWidths();
    void tidemarWidths_data();
    void tidemarWidths();
    void vskmWidths_data();
    void vskmWidths();
    void entries_data();
    void entries();
    void owner_data();
    void owner();
    void tidemarByHand();
};

/** A store whose every setting is 0xEE.., so that what a decoder leaves alone shows. */
static VardaData usedStore()
{
    VardaData data;
    BleConfig &config = data.config;
    config.configWord = config.cfgE = config.surfacePressure = config.cfgH = 0xEEEE;
    config.cfgA = config.cfgB = config.cfgC = config.cfgD = 0xEE;
    config.waterType = config.cfgF = config.cfgG = 0xEE;
    config.cfgBytes.fill(0xEE);
    config.gasTable1.fill({0xEE, 0xEE});
    config.gasTable2.fill({0xEE, 0xEE});
    config.cfgTriple.fill({0xEEEE, 0xEEEE, 0xEE});
    config.tailBytes.fill(0xEE);
    BleComputer &computer = data.computer;
    computer.rawBlock.fill(char(0xEE));
    computer.batteryType = computer.setting1 = computer.setting2 = computer.setting3 = 0xEE;
    computer.setting4 = computer.setting5 = computer.setting7 = computer.setting8 = 0xEE;
    computer.setting6 = 0xEEEE;
    computer.value64a = computer.value64b = computer.value64c = 0xEEEEEEEEEEEEEEEE;
    computer.value64d = computer.value64e = 0xEEEEEEEEEEEEEEEE;
    computer.flags32.fill(0xEE);
    computer.entryCount = computer.computerByte1 = computer.computerByte2 = 0xEE;
    computer.computerByte3 = computer.computerByte4 = computer.computerByte5 = 0xEE;
    computer.quadWords.fill(0xEEEE);
    computer.computerWord1 = computer.computerWord2 = computer.computerWord3 = 0xEEEE;
    computer.computerWord4 = computer.computerWord5 = computer.computerWord6 = 0xEEEE;
    computer.computerWord7 = 0xEEEE;
    computer.sixWords.fill(0xEEEE);
    data.owner = QStringLiteral("before");
    return data;
}

static QString hexOf(const std::array<BleConfig::Gas, 12> &table)
{
    QString text;
    for (const BleConfig::Gas &gas : table)
        text += hexOf(gas.oxygen) + hexOf(gas.helium);
    return text;
}

static QString hexOf(const std::array<BleConfig::Triple, 3> &triples)
{
    QStringList texts;
    for (const BleConfig::Triple &triple : triples)
        texts << hexOf(triple.first) + QLatin1Char(':') + hexOf(triple.second) + QLatin1Char(':')
                     + hexOf(triple.third);
    return texts.join(QLatin1Char(','));
}

static QStringList fieldsOf(const BleConfig &c)
{
    return {FIELD(c, configWord), FIELD(c, cfgA), FIELD(c, cfgB),      FIELD(c, cfgC),
            FIELD(c, cfgD),       FIELD(c, cfgE), FIELD(c, waterType), FIELD(c, surfacePressure),
            FIELD(c, cfgF),       FIELD(c, cfgG), FIELD(c, cfgBytes),  FIELD(c, gasTable1),
            FIELD(c, gasTable2),  FIELD(c, cfgH), FIELD(c, cfgTriple), FIELD(c, tailBytes)};
}

static QStringList fieldsOf(const BleComputer &c)
{
    return {FIELD(c, rawBlock),      FIELD(c, batteryType),   FIELD(c, setting1),
            FIELD(c, setting2),      FIELD(c, setting3),      FIELD(c, setting4),
            FIELD(c, setting5),      FIELD(c, setting6),      FIELD(c, setting7),
            FIELD(c, setting8),      FIELD(c, value64a),      FIELD(c, flags32),
            FIELD(c, value64b),      FIELD(c, entryCount),    FIELD(c, value64c),
            FIELD(c, computerByte1), FIELD(c, quadWords),     FIELD(c, computerWord1),
            FIELD(c, computerWord2), FIELD(c, computerWord3), FIELD(c, computerWord4),
            FIELD(c, computerWord5), FIELD(c, computerWord6), FIELD(c, sixWords),
            FIELD(c, computerByte2), FIELD(c, computerByte3), FIELD(c, computerByte4),
            FIELD(c, value64d),      FIELD(c, value64e),      FIELD(c, computerByte5),
            FIELD(c, computerWord7)};
}

/** A pattern of the long form: version and model, everything else as it falls. */
static VardaData::Payload longForm(int version, int model)
{
    VardaData::Payload payload = patternPayload(quint16(0x0100 | version));
    payload[3] = std::uint8_t(model);
    return payload;
}

// The pattern again, with the first word, the model and the entry count (at its offset) put in.
void TestConfiguration::everyField_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("model");
    QTest::addColumn<int>("countOffset");
    QTest::addColumn<bool>("extended");
    QTest::addColumn<QStringList>("fields");

    const auto row = [](const char *name, int first, int model, int countOffset, bool extended,
                        const char *fields) {
        QTest::newRow(name) << first << model << countOffset << extended << fieldList(fields);
    };
    row("short form", 0x00FE, -1, 136, false, R"(
        configWord=00fe cfgA=18 cfgB=1f cfgC=26 cfgD=2d cfgE=3b34 waterType=42
        surfacePressure=5049 cfgF=57 cfgG=5e cfgBytes=7a81888f96ee
        gasTable1=a4abb2b9c0c7ced5dce3eaf1f8ff060deeeeeeeeeeeeeeee
        gasTable2=eeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeee cfgH=0014
        cfgTriple=221b:eeee:ee,3029:eeee:ee,3e37:eeee:ee tailBytes=656c73eeeeee
        rawBlock=454c535a61686f767d848b9299a0a7aeb5bcc3cad1d8dfe6edf4fb020910171e
        batteryType=25 setting1=2c setting2=33 setting3=3a setting4=41 setting5=48
        setting6=564f setting7=5d setting8=64 value64a=9c958e878079726b
        flags32=a3aab1b8bfc6cdd4dbe2e9f0f7fe050c131a21282f363d444b525960676e757c
        value64b=eeeeeeeeeeeeeeee entryCount=ee value64c=eeeeeeeeeeeeeeee computerByte1=ee
        quadWords=eeee,eeee,eeee,eeee computerWord1=eeee computerWord2=eeee
        computerWord3=eeee computerWord4=eeee computerWord5=eeee computerWord6=eeee
        sixWords=eeee,eeee,eeee,eeee,eeee,eeee computerByte2=ee computerByte3=ee
        computerByte4=ee value64d=eeeeeeeeeeeeeeee value64e=eeeeeeeeeeeeeeee
        computerByte5=ee computerWord7=eeee)");
    row("short form, extended", 0x00FE, -1, 136, true, R"(
        configWord=00fe cfgA=18 cfgB=1f cfgC=26 cfgD=2d cfgE=3b34 waterType=42
        surfacePressure=5049 cfgF=57 cfgG=5e cfgBytes=7a81888f96ee
        gasTable1=a4abb2b9c0c7ced5dce3eaf1f8ff060deeeeeeeeeeeeeeee
        gasTable2=eeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeee cfgH=0014
        cfgTriple=221b:eeee:ee,3029:eeee:ee,3e37:eeee:ee tailBytes=656c73eeeeee
        rawBlock=454c535a61686f767d848b9299a0a7aeb5bcc3cad1d8dfe6edf4fb020910171e
        batteryType=25 setting1=2c setting2=33 setting3=3a setting4=41 setting5=48
        setting6=564f setting7=5d setting8=64 value64a=9c958e878079726b
        flags32=a3aab1b8bfc6cdd4dbe2e9f0f7fe050c131a21282f363d444b525960676e757c
        value64b=b4ada69f98918a83 entryCount=02 value64c=8d867f78716a635c computerByte1=94
        quadWords=a29b,b0a9,beb7,ccc5 computerWord1=dad3 computerWord2=e8e1
        computerWord3=f6ef computerWord4=04fd computerWord5=aca5 computerWord6=9e97
        sixWords=eeee,eeee,eeee,eeee,eeee,eeee computerByte2=0b computerByte3=12
        computerByte4=19 value64d=514a433c352e2720 value64e=89827b746d665f58
        computerByte5=90 computerWord7=bab3)");
    row("Varda 12, extended", 0x010C, 1, 139, true, R"(
        configWord=261f cfgA=2d cfgB=34 cfgC=3b cfgD=42 cfgE=5049 waterType=57
        surfacePressure=655e cfgF=6c cfgG=73 cfgBytes=8f969da4abee
        gasTable1=b9c0c7ced5dce3eaf1f8ff060d141b22eeeeeeeeeeeeeeee
        gasTable2=eeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeee cfgH=0029
        cfgTriple=3730:eeee:ee,453e:eeee:ee,534c:eeee:ee tailBytes=7a8188eeeeee
        rawBlock=5a61686f767d848b9299a0a7aeb5bcc3cad1d8dfe6edf4fb020910171e252c33
        batteryType=3a setting1=41 setting2=48 setting3=4f setting4=56 setting5=5d
        setting6=6b64 setting7=72 setting8=79 value64a=b1aaa39c958e8780
        flags32=b8bfc6cdd4dbe2e9f0f7fe050c131a21282f363d444b525960676e757c838a91
        value64b=c9c2bbb4ada69f98 entryCount=02 value64c=a29b948d867f7871 computerByte1=a9
        quadWords=b7b0,c5be,d3cc,e1da computerWord1=efe8 computerWord2=fdf6
        computerWord3=0b04 computerWord4=1912 computerWord5=c1ba computerWord6=b3ac
        sixWords=eeee,eeee,eeee,eeee,eeee,eeee computerByte2=20 computerByte3=27
        computerByte4=2e value64d=665f58514a433c35 value64e=9e979089827b746d
        computerByte5=a5 computerWord7=cfc8)");
    row("Varda 13, extended", 0x010D, 1, 147, true, R"(
        configWord=261f cfgA=2d cfgB=34 cfgC=3b cfgD=42 cfgE=5049 waterType=57
        surfacePressure=655e cfgF=6c cfgG=73 cfgBytes=8f969da4abee
        gasTable1=b9c0c7ced5dce3eaf1f8ff060d141b222930373e454c535a
        gasTable2=eeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeee cfgH=0061
        cfgTriple=6f68:eeee:ee,7d76:eeee:ee,8b84:eeee:ee tailBytes=7a8188eeeeee
        rawBlock=9299a0a7aeb5bcc3cad1d8dfe6edf4fb020910171e252c333a41484f565d646b
        batteryType=72 setting1=79 setting2=80 setting3=87 setting4=8e setting5=95
        setting6=a39c setting7=aa setting8=b1 value64a=e9e2dbd4cdc6bfb8
        flags32=f0f7fe050c131a21282f363d444b525960676e757c838a91989fa6adb4bbc2c9
        value64b=01faf3ece5ded7d0 entryCount=02 value64c=dad3ccc5beb7b0a9 computerByte1=e1
        quadWords=efe8,fdf6,0b04,1912 computerWord1=2720 computerWord2=352e
        computerWord3=433c computerWord4=514a computerWord5=f9f2 computerWord6=ebe4
        sixWords=150e,231c,312a,3f38,4d46,5b54 computerByte2=58 computerByte3=5f
        computerByte4=66 value64d=9e979089827b746d value64e=d6cfc8c1bab3aca5
        computerByte5=dd computerWord7=0700)");
    row("Varda 13", 0x010D, 1, 147, false, R"(
        configWord=261f cfgA=2d cfgB=34 cfgC=3b cfgD=42 cfgE=5049 waterType=57
        surfacePressure=655e cfgF=6c cfgG=73 cfgBytes=8f969da4abee
        gasTable1=b9c0c7ced5dce3eaf1f8ff060d141b222930373e454c535a
        gasTable2=eeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeee cfgH=0061
        cfgTriple=6f68:eeee:ee,7d76:eeee:ee,8b84:eeee:ee tailBytes=7a8188eeeeee
        rawBlock=9299a0a7aeb5bcc3cad1d8dfe6edf4fb020910171e252c333a41484f565d646b
        batteryType=72 setting1=79 setting2=80 setting3=87 setting4=8e setting5=95
        setting6=a39c setting7=aa setting8=b1 value64a=e9e2dbd4cdc6bfb8
        flags32=f0f7fe050c131a21282f363d444b525960676e757c838a91989fa6adb4bbc2c9
        value64b=eeeeeeeeeeeeeeee entryCount=ee value64c=eeeeeeeeeeeeeeee computerByte1=ee
        quadWords=eeee,eeee,eeee,eeee computerWord1=eeee computerWord2=eeee
        computerWord3=eeee computerWord4=eeee computerWord5=eeee computerWord6=eeee
        sixWords=eeee,eeee,eeee,eeee,eeee,eeee computerByte2=ee computerByte3=ee
        computerByte4=ee value64d=eeeeeeeeeeeeeeee value64e=eeeeeeeeeeeeeeee
        computerByte5=ee computerWord7=eeee)");
    row("Tidemar 1, extended", 0x0101, 2, 0, true, R"(
        configWord=261f cfgA=2d cfgB=34 cfgC=3b cfgD=42 cfgE=5049 waterType=57
        surfacePressure=655e cfgF=6c cfgG=73 cfgBytes=8f969da4abb2
        gasTable1=b9c0c7ced5dce3eaf1f8ff060d141b22eeeeeeeeeeeeeeee
        gasTable2=eeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeee cfgH=0029
        cfgTriple=3730:453e:4c,5a53:6861:6f,7d76:8b84:92 tailBytes=eeeeee7a8188
        rawBlock=99a0a7aeb5bcc3cad1d8dfe6edf4fb020910171e252c333a41484f565d646b72
        batteryType=79 setting1=24 setting2=80 setting3=87 setting4=8e setting5=95
        setting6=a39c setting7=aa setting8=b1 value64a=e9e2dbd4cdc6bfb8
        flags32=f0f7fe050c131a21282f363d444b525960676e757c838a91989fa6adb4bbc2c9
        value64b=eeeeeeeeeeeeeeee entryCount=ee value64c=eeeeeeeeeeeeeeee computerByte1=e5
        quadWords=f3ec,01fa,0f08,1d16 computerWord1=eeee computerWord2=eeee
        computerWord3=eeee computerWord4=eeee computerWord5=eeee computerWord6=eeee
        sixWords=eeee,eeee,eeee,eeee,eeee,eeee computerByte2=ee computerByte3=ee
        computerByte4=ee value64d=eeeeeeeeeeeeeeee value64e=eeeeeeeeeeeeeeee
        computerByte5=de computerWord7=d7d0)");
    row("Tidemar 2, extended", 0x0102, 2, 0, true, R"(
        configWord=261f cfgA=2d cfgB=34 cfgC=3b cfgD=42 cfgE=5049 waterType=57
        surfacePressure=655e cfgF=6c cfgG=73 cfgBytes=8f969da4abb2
        gasTable1=b9c0c7ced5dce3eaf1f8ff060d141b22eeeeeeeeeeeeeeee
        gasTable2=99a0a7aeb5bcc3cad1d8dfe6edf4fb02eeeeeeeeeeeeeeee cfgH=0029
        cfgTriple=3730:453e:4c,5a53:6861:6f,7d76:8b84:92 tailBytes=eeeeee7a8188
        rawBlock=0910171e252c333a41484f565d646b727980878e959ca3aab1b8bfc6cdd4dbe2
        batteryType=e9 setting1=94 setting2=f0 setting3=f7 setting4=fe setting5=05
        setting6=130c setting7=1a setting8=21 value64a=59524b443d362f28
        flags32=60676e757c838a91989fa6adb4bbc2c9d0d7dee5ecf3fa01080f161d242b3239
        value64b=eeeeeeeeeeeeeeee entryCount=ee value64c=eeeeeeeeeeeeeeee computerByte1=55
        quadWords=635c,716a,7f78,8d86 computerWord1=eeee computerWord2=eeee
        computerWord3=eeee computerWord4=eeee computerWord5=eeee computerWord6=eeee
        sixWords=eeee,eeee,eeee,eeee,eeee,eeee computerByte2=ee computerByte3=ee
        computerByte4=ee value64d=eeeeeeeeeeeeeeee value64e=eeeeeeeeeeeeeeee
        computerByte5=4e computerWord7=4740)");
    row("Tidemar 8, extended", 0x0108, 2, 0, true, R"(
        configWord=261f cfgA=2d cfgB=34 cfgC=3b cfgD=42 cfgE=5049 waterType=57
        surfacePressure=655e cfgF=6c cfgG=73 cfgBytes=8f969da4abb2
        gasTable1=b9c0d5dcf1f80d142930454c61687d84eeeeeeeeeeeeeeee
        gasTable2=0910252c41485d647980959cb1b8cdd4eeeeeeeeeeeeeeee cfgH=0099
        cfgTriple=a7a0:b5ae:bc,cac3:d8d1:df,ede6:fbf4:02 tailBytes=eeeeee7a8188
        rawBlock=fe050c131a21282f363d444b525960676e757c838a91989fa6adb4bbc2c9d0d7
        batteryType=de setting1=97 setting2=e5 setting3=ec setting4=f3 setting5=fa
        setting6=0801 setting7=0f setting8=16 value64a=4e474039322b241d
        flags32=555c636a71787f868d949ba2a9b0b7bec5ccd3dae1e8eff6fd040b121920272e
        value64b=eeeeeeeeeeeeeeee entryCount=ee value64c=eeeeeeeeeeeeeeee computerByte1=4a
        quadWords=5851,665f,746d,827b computerWord1=eeee computerWord2=eeee
        computerWord3=eeee computerWord4=eeee computerWord5=eeee computerWord6=eeee
        sixWords=eeee,eeee,eeee,eeee,eeee,eeee computerByte2=ee computerByte3=ee
        computerByte4=ee value64d=eeeeeeeeeeeeeeee value64e=eeeeeeeeeeeeeeee
        computerByte5=43 computerWord7=3c35)");
    row("Tidemar 12, extended", 0x010C, 2, 0, true, R"(
        configWord=261f cfgA=2d cfgB=34 cfgC=3b cfgD=42 cfgE=5049 waterType=57
        surfacePressure=655e cfgF=6c cfgG=73 cfgBytes=8f969da4abb2
        gasTable1=b9c0d5dcf1f80d142930454c61687d84eeeeeeeeeeeeeeee
        gasTable2=0910252c41485d647980959cb1b8cdd4eeeeeeeeeeeeeeee cfgH=0099
        cfgTriple=a7a0:b5ae:bc,cac3:d8d1:df,ede6:fbf4:02 tailBytes=eeeeee7a8188
        rawBlock=21282f363d444b525960676e757c838a91989fa6adb4bbc2c9d0d7dee5ecf3fa
        batteryType=01 setting1=eb setting2=08 setting3=0f setting4=16 setting5=1d
        setting6=2b24 setting7=32 setting8=39 value64a=716a635c554e4740
        flags32=787f868d949ba2a9b0b7bec5ccd3dae1e8eff6fd040b121920272e353c434a51
        value64b=eeeeeeeeeeeeeeee entryCount=ee value64c=eeeeeeeeeeeeeeee computerByte1=6d
        quadWords=7b74,8982,9790,a59e computerWord1=eeee computerWord2=eeee
        computerWord3=eeee computerWord4=eeee computerWord5=eeee computerWord6=eeee
        sixWords=eeee,eeee,eeee,eeee,eeee,eeee computerByte2=ee computerByte3=ee
        computerByte4=ee value64d=eeeeeeeeeeeeeeee value64e=eeeeeeeeeeeeeeee
        computerByte5=66 computerWord7=5f58)");
    row("Tidemar 12", 0x010C, 2, 0, false, R"(
        configWord=261f cfgA=2d cfgB=34 cfgC=3b cfgD=42 cfgE=5049 waterType=57
        surfacePressure=655e cfgF=6c cfgG=73 cfgBytes=8f969da4abb2
        gasTable1=b9c0d5dcf1f80d142930454c61687d84eeeeeeeeeeeeeeee
        gasTable2=0910252c41485d647980959cb1b8cdd4eeeeeeeeeeeeeeee cfgH=0099
        cfgTriple=a7a0:b5ae:bc,cac3:d8d1:df,ede6:fbf4:02 tailBytes=eeeeee7a8188
        rawBlock=21282f363d444b525960676e757c838a91989fa6adb4bbc2c9d0d7dee5ecf3fa
        batteryType=01 setting1=ee setting2=08 setting3=0f setting4=16 setting5=1d
        setting6=2b24 setting7=32 setting8=39 value64a=716a635c554e4740
        flags32=787f868d949ba2a9b0b7bec5ccd3dae1e8eff6fd040b121920272e353c434a51
        value64b=eeeeeeeeeeeeeeee entryCount=ee value64c=eeeeeeeeeeeeeeee computerByte1=ee
        quadWords=eeee,eeee,eeee,eeee computerWord1=eeee computerWord2=eeee
        computerWord3=eeee computerWord4=eeee computerWord5=eeee computerWord6=eeee
        sixWords=eeee,eeee,eeee,eeee,eeee,eeee computerByte2=ee computerByte3=ee
        computerByte4=ee value64d=eeeeeeeeeeeeeeee value64e=eeeeeeeeeeeeeeee
        computerByte5=ee computerWord7=eeee)");
    row("VSKM 1, extended", 0x0101, 3, 0, true, R"(
        configWord=261f cfgA=2d cfgB=34 cfgC=3b cfgD=42 cfgE=5049 waterType=57
        surfacePressure=655e cfgF=6c cfgG=73 cfgBytes=8f969da4abb2
        gasTable1=b9c0c7ced5dce3eaf1f8ff060d141b22eeeeeeeeeeeeeeee
        gasTable2=eeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeeee cfgH=0029
        cfgTriple=3730:453e:4c,5a53:6861:6f,7d76:8b84:92 tailBytes=eeeeee7a8188
        rawBlock=99a0a7aeb5bcc3cad1d8dfe6edf4fb020910171e252c333a41484f565d646b72
        batteryType=79 setting1=24 setting2=80 setting3=87 setting4=8e setting5=95
        setting6=a39c setting7=aa setting8=b1 value64a=e9e2dbd4cdc6bfb8
        flags32=f0f7fe050c131a21282f363d444b525960676e757c838a91989fa6adb4bbc2c9
        value64b=eeeeeeeeeeeeeeee entryCount=ee value64c=eeeeeeeeeeeeeeee computerByte1=e5
        quadWords=f3ec,01fa,0f08,1d16 computerWord1=eeee computerWord2=eeee
        computerWord3=eeee computerWord4=eeee computerWord5=eeee computerWord6=eeee
        sixWords=eeee,eeee,eeee,eeee,eeee,eeee computerByte2=ee computerByte3=ee
        computerByte4=ee value64d=eeeeeeeeeeeeeeee value64e=eeeeeeeeeeeeeeee
        computerByte5=de computerWord7=d7d0)");
    row("VSKM 4, extended", 0x0104, 3, 0, true, R"(
        configWord=261f cfgA=2d cfgB=34 cfgC=3b cfgD=42 cfgE=5049 waterType=57
        surfacePressure=655e cfgF=6c cfgG=73 cfgBytes=8f969da4abb2
        gasTable1=b9c0c7ced5dce3eaf1f8ff060d141b22eeeeeeeeeeeeeeee
        gasTable2=99a0a7aeb5bcc3cad1d8dfe6edf4fb02eeeeeeeeeeeeeeee cfgH=0029
        cfgTriple=3730:453e:4c,5a53:6861:6f,7d76:8b84:92 tailBytes=eeeeee7a8188
        rawBlock=0910171e252c333a41484f565d646b727980878e959ca3aab1b8bfc6cdd4dbe2
        batteryType=e9 setting1=94 setting2=f0 setting3=f7 setting4=fe setting5=05
        setting6=130c setting7=1a setting8=21 value64a=59524b443d362f28
        flags32=60676e757c838a91989fa6adb4bbc2c9d0d7dee5ecf3fa01080f161d242b3239
        value64b=eeeeeeeeeeeeeeee entryCount=ee value64c=eeeeeeeeeeeeeeee computerByte1=55
        quadWords=635c,716a,7f78,8d86 computerWord1=eeee computerWord2=eeee
        computerWord3=eeee computerWord4=eeee computerWord5=eeee computerWord6=eeee
        sixWords=eeee,eeee,eeee,eeee,eeee,eeee computerByte2=ee computerByte3=ee
        computerByte4=ee value64d=eeeeeeeeeeeeeeee value64e=eeeeeeeeeeeeeeee
        computerByte5=4e computerWord7=4740)");
    row("VSKM 8, extended", 0x0108, 3, 0, true, R"(
        configWord=261f cfgA=2d cfgB=34 cfgC=3b cfgD=42 cfgE=5049 waterType=57
        surfacePressure=655e cfgF=6c cfgG=73 cfgBytes=8f969da4abb2
        gasTable1=b9c0d5dcf1f80d142930454c61687d84eeeeeeeeeeeeeeee
        gasTable2=0910252c41485d647980959cb1b8cdd4eeeeeeeeeeeeeeee cfgH=0099
        cfgTriple=a7a0:b5ae:bc,cac3:d8d1:df,ede6:fbf4:02 tailBytes=eeeeee7a8188
        rawBlock=fe050c131a21282f363d444b525960676e757c838a91989fa6adb4bbc2c9d0d7
        batteryType=de setting1=97 setting2=e5 setting3=ec setting4=f3 setting5=fa
        setting6=0801 setting7=0f setting8=16 value64a=4e474039322b241d
        flags32=555c636a71787f868d949ba2a9b0b7bec5ccd3dae1e8eff6fd040b121920272e
        value64b=eeeeeeeeeeeeeeee entryCount=ee value64c=eeeeeeeeeeeeeeee computerByte1=4a
        quadWords=5851,665f,746d,827b computerWord1=eeee computerWord2=eeee
        computerWord3=eeee computerWord4=eeee computerWord5=eeee computerWord6=eeee
        sixWords=eeee,eeee,eeee,eeee,eeee,eeee computerByte2=ee computerByte3=ee
        computerByte4=ee value64d=eeeeeeeeeeeeeeee value64e=eeeeeeeeeeeeeeee
        computerByte5=43 computerWord7=3c35)");
    row("VSKM 21, extended", 0x0115, 3, 0, true, R"(
        configWord=261f cfgA=2d cfgB=34 cfgC=3b cfgD=42 cfgE=5049 waterType=57
        surfacePressure=655e cfgF=6c cfgG=73 cfgBytes=8f969da4abb2
        gasTable1=b9c0d5dcf1f80d142930454c61687d84eeeeeeeeeeeeeeee
        gasTable2=0910252c41485d647980959cb1b8cdd4eeeeeeeeeeeeeeee cfgH=0099
        cfgTriple=a7a0:b5ae:bc,cac3:d8d1:df,ede6:fbf4:02 tailBytes=eeeeee7a8188
        rawBlock=272e353c434a51585f666d747b828990979ea5acb3bac1c8cfd6dde4ebf2f900
        batteryType=07 setting1=c0 setting2=0e setting3=15 setting4=1c setting5=23
        setting6=312a setting7=38 setting8=3f value64a=777069625b544d46
        flags32=7e858c939aa1a8afb6bdc4cbd2d9e0e7eef5fc030a11181f262d343b42495057
        value64b=eeeeeeeeeeeeeeee entryCount=ee value64c=eeeeeeeeeeeeeeee computerByte1=73
        quadWords=817a,8f88,9d96,aba4 computerWord1=eeee computerWord2=eeee
        computerWord3=eeee computerWord4=eeee computerWord5=eeee computerWord6=eeee
        sixWords=eeee,eeee,eeee,eeee,eeee,eeee computerByte2=ee computerByte3=ee
        computerByte4=ee value64d=eeeeeeeeeeeeeeee value64e=eeeeeeeeeeeeeeee
        computerByte5=6c computerWord7=655e)");
    row("VSKM 21", 0x0115, 3, 0, false, R"(
        configWord=261f cfgA=2d cfgB=34 cfgC=3b cfgD=42 cfgE=5049 waterType=57
        surfacePressure=655e cfgF=6c cfgG=73 cfgBytes=8f969da4abb2
        gasTable1=b9c0d5dcf1f80d142930454c61687d84eeeeeeeeeeeeeeee
        gasTable2=0910252c41485d647980959cb1b8cdd4eeeeeeeeeeeeeeee cfgH=0099
        cfgTriple=a7a0:b5ae:bc,cac3:d8d1:df,ede6:fbf4:02 tailBytes=eeeeee7a8188
        rawBlock=272e353c434a51585f666d747b828990979ea5acb3bac1c8cfd6dde4ebf2f900
        batteryType=07 setting1=ee setting2=0e setting3=15 setting4=1c setting5=23
        setting6=312a setting7=38 setting8=3f value64a=777069625b544d46
        flags32=7e858c939aa1a8afb6bdc4cbd2d9e0e7eef5fc030a11181f262d343b42495057
        value64b=eeeeeeeeeeeeeeee entryCount=ee value64c=eeeeeeeeeeeeeeee computerByte1=ee
        quadWords=eeee,eeee,eeee,eeee computerWord1=eeee computerWord2=eeee
        computerWord3=eeee computerWord4=eeee computerWord5=eeee computerWord6=eeee
        sixWords=eeee,eeee,eeee,eeee,eeee,eeee computerByte2=ee computerByte3=ee
        computerByte4=ee value64d=eeeeeeeeeeeeeeee value64e=eeeeeeeeeeeeeeee
        computerByte5=ee computerWord7=eeee)");
}

void TestConfiguration::everyField()
{
    QFETCH(const int, first);
    QFETCH(const int, model);
    QFETCH(const int, countOffset);
    QFETCH(const bool, extended);
    VardaData::Payload payload = patternPayload(quint16(first));
    if (model >= 0)
        payload[3] = std::uint8_t(model);
    if (countOffset > 0)
        payload[std::size_t(countOffset)] = 2;

    VardaData data = usedStore();
    data.processComputer(payload, extended);
    QTEST(fieldsOf(data.config) + fieldsOf(data.computer), "fields");
    QVERIFY(data.computer.entries.isEmpty());
}

// Where the fields start, and which reader goes on.
void TestConfiguration::form_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<int>("configWord");
    QTest::addColumn<int>("cfgA");
    QTest::addColumn<QByteArray>("tailBytes");

    const auto row = [](const char *name, const char *header, int configWord, int cfgA,
                        const char *tailBytes) {
        QTest::newRow(name) << QByteArray(header) << configWord << cfgA << QByteArray(tailBytes);
    };
    // The header is followed by 10 11 .. 1a (11 bytes of fields) and 1b 1c 1d.
    row("0", "0000", 0, 0x10, "1b1c1deeeeee");
    row("254", "fe00", 254, 0x10, "1b1c1deeeeee");
    row("255, Varda", "ff00 01 3412", 0x1234, 0x10, "1b1c1deeeeee");
    row("0x010D, no model", "0d01 00 3412", 0x1234, 0x10, "1b1c1deeeeee");
    row("0x010D, Varda", "0d01 01 3412", 0x1234, 0x10, "1b1c1deeeeee");
    row("0x010D, Tidemar", "0d01 02 3412", 0x1234, 0x10, "eeeeee1b1c1d");
    row("0x010D, VSKM", "0d01 03 3412", 0x1234, 0x10, "eeeeee1b1c1d");
    row("0x010D, third party", "0d01 04 3412", 0x1234, 0x10, "eeeeeeeeeeee");
    row("0x010D, 255", "0d01 ff 3412", 0x1234, 0x10, "eeeeeeeeeeee");
    row("0x0100", "0001 02 3412", 0x1234, 0x10, "eeeeee1b1c1d");
    row("0xFFFF", "ffff 03 ffff", 0xFFFF, 0x10, "eeeeee1b1c1d");
}

void TestConfiguration::form()
{
    QFETCH(const QByteArray, header);
    VardaData data = usedStore();
    data.processComputer(payloadOf(header + "10111213 1514 16 1817 191a 1b1c1d"), true);
    QTEST(int(data.config.configWord), "configWord");
    QTEST(int(data.config.cfgA), "cfgA");
    QCOMPARE(int(data.config.cfgD), 0x13);
    QCOMPARE(int(data.config.cfgE), 0x1415);
    QCOMPARE(int(data.config.waterType), 0x16);
    QCOMPARE(int(data.config.surfacePressure), 0x1718);
    QCOMPARE(int(data.config.cfgG), 0x1A);
    QTEST(hexOf(data.config.tailBytes).toLatin1(), "tailBytes");

    const bool isRead = data.config.tailBytes[0] != 0xEE || data.config.tailBytes[3] != 0xEE;
    QCOMPARE(int(data.computer.value64a != 0xEEEEEEEEEEEEEEEE), int(isRead));
    QCOMPARE(data.owner.isEmpty(), data.config.tailBytes[3] != 0xEE);
}

void TestConfiguration::vardaWidths_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<int>("countOffset");
    QTest::addColumn<int>("gas8");
    QTest::addColumn<int>("gas11");
    QTest::addColumn<int>("rawBlock0");
    QTest::addColumn<int>("flags31");
    QTest::addColumn<int>("computerWord7");
    QTest::addColumn<int>("sixWords5");

    const auto row = [](int version, int countOffset, int gas8, int gas11, int rawBlock0,
                        int flags31, int computerWord7, int sixWords5) {
        QTest::addRow("%d", version) << version << countOffset << gas8 << gas11 << rawBlock0
                                     << flags31 << computerWord7 << sixWords5;
    };
    row(0, 139, 0xEE, 0xEE, 0x5A, 0x91, 0x352E, 0xEEEE);
    row(1, 139, 0xEE, 0xEE, 0x5A, 0x91, 0x352E, 0xEEEE);
    row(8, 139, 0xEE, 0xEE, 0x5A, 0x91, 0x352E, 0xEEEE);
    row(12, 139, 0xEE, 0xEE, 0x5A, 0x91, 0x352E, 0xEEEE);
    row(13, 147, 0x29, 0x5A, 0x92, 0xC9, 0x6D66, 0xC1BA);
    row(14, 147, 0x29, 0x5A, 0x92, 0xC9, 0x6D66, 0xC1BA);
    row(255, 147, 0x29, 0x5A, 0x92, 0xC9, 0x6D66, 0xC1BA);
}

void TestConfiguration::vardaWidths()
{
    QFETCH(const int, version);
    QFETCH(const int, countOffset);
    VardaData::Payload payload = longForm(version, ComputerModel::Varda);
    payload[std::size_t(countOffset)] = 0;
    VardaData data = usedStore();
    data.processComputer(payload, true);
    QTEST(int(data.config.gasTable1[8].oxygen), "gas8");
    QTEST(int(data.config.gasTable1[11].helium), "gas11");
    QTEST(int(std::uint8_t(data.computer.rawBlock[0])), "rawBlock0");
    QTEST(int(data.computer.flags32[31]), "flags31");
    QTEST(int(data.computer.computerWord7), "computerWord7");
    QTEST(int(data.computer.sixWords[5]), "sixWords5");
    QCOMPARE(data.owner, QStringLiteral("before"));
}

static void addWidthColumns()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<int>("table1Last");
    QTest::addColumn<int>("table2First");
    QTest::addColumn<int>("table2Last");
    QTest::addColumn<int>("rawBlock0");
    QTest::addColumn<int>("rawBlock31");
    QTest::addColumn<int>("flags31");
    QTest::addColumn<int>("setting1");
    QTest::addColumn<int>("quadWords3");
}

static void addWidthRow(int version, int table1Last, int table2First, int table2Last, int rawBlock0,
                        int rawBlock31, int flags31, int setting1, int quadWords3)
{
    QTest::addRow("%d", version) << version << table1Last << table2First << table2Last << rawBlock0
                                 << rawBlock31 << flags31 << setting1 << quadWords3;
}

static void checkWidths(int model)
{
    QFETCH(const int, version);
    VardaData data = usedStore();
    data.processComputer(longForm(version, model), true);
    QTEST(int(data.config.gasTable1[7].helium), "table1Last");
    QTEST(int(data.config.gasTable2[0].oxygen), "table2First");
    QTEST(int(data.config.gasTable2[7].helium), "table2Last");
    QTEST(int(std::uint8_t(data.computer.rawBlock[0])), "rawBlock0");
    QTEST(int(std::uint8_t(data.computer.rawBlock[31])), "rawBlock31");
    QTEST(int(data.computer.flags32[31]), "flags31");
    QTEST(int(data.computer.setting1), "setting1");
    QTEST(int(data.computer.quadWords[3]), "quadWords3");
    QCOMPARE(int(data.config.gasTable1[8].oxygen), 0xEE);
    QCOMPARE(int(data.config.gasTable2[8].oxygen), 0xEE);
}

void TestConfiguration::tidemarWidths_data()
{
    addWidthColumns();
    const auto row = addWidthRow;
    row(0, 0x22, 0xEE, 0xEE, 0x99, 0x72, 0xC9, 0x24, 0x1D16);
    row(1, 0x22, 0xEE, 0xEE, 0x99, 0x72, 0xC9, 0x24, 0x1D16);
    row(2, 0x22, 0x99, 0x02, 0x09, 0xE2, 0x39, 0x94, 0x8D86);
    row(4, 0x22, 0x99, 0x02, 0x09, 0xE2, 0x39, 0x94, 0x8D86);
    row(5, 0x22, 0x99, 0x02, 0x1E, 0xF7, 0x4E, 0xA9, 0xA29B);
    row(7, 0x22, 0x99, 0x02, 0x1E, 0xF7, 0x4E, 0xA9, 0xA29B);
    row(8, 0x84, 0x09, 0xD4, 0xFE, 0xD7, 0x2E, 0x97, 0x827B);
    row(9, 0x84, 0x09, 0xD4, 0xFE, 0xD7, 0x2E, 0x97, 0x827B);
    row(10, 0x84, 0x09, 0xD4, 0x05, 0xDE, 0x35, 0x9E, 0x8982);
    row(11, 0x84, 0x09, 0xD4, 0x21, 0xFA, 0x51, 0xBA, 0xA59E);
    row(12, 0x84, 0x09, 0xD4, 0x21, 0xFA, 0x51, 0xEB, 0xA59E);
    row(13, 0x84, 0x09, 0xD4, 0x21, 0xFA, 0x51, 0xEB, 0xA59E);
    row(255, 0x84, 0x09, 0xD4, 0x21, 0xFA, 0x51, 0xEB, 0xA59E);
}

void TestConfiguration::tidemarWidths()
{
    checkWidths(ComputerModel::Tidemar);
}

void TestConfiguration::vskmWidths_data()
{
    addWidthColumns();
    const auto row = addWidthRow;
    row(0, 0x22, 0xEE, 0xEE, 0x99, 0x72, 0xC9, 0x24, 0x1D16);
    row(1, 0x22, 0xEE, 0xEE, 0x99, 0x72, 0xC9, 0x24, 0x1D16);
    row(2, 0x22, 0x99, 0x02, 0x09, 0xE2, 0x39, 0x94, 0x8D86);
    row(4, 0x22, 0x99, 0x02, 0x09, 0xE2, 0x39, 0x94, 0x8D86);
    row(5, 0x22, 0x99, 0x02, 0x1E, 0xF7, 0x4E, 0xA9, 0xA29B);
    row(7, 0x22, 0x99, 0x02, 0x1E, 0xF7, 0x4E, 0xA9, 0xA29B);
    row(8, 0x84, 0x09, 0xD4, 0xFE, 0xD7, 0x2E, 0x97, 0x827B);
    row(9, 0x84, 0x09, 0xD4, 0xFE, 0xD7, 0x2E, 0x97, 0x827B);
    row(10, 0x84, 0x09, 0xD4, 0x05, 0xDE, 0x35, 0x9E, 0x8982);
    row(11, 0x84, 0x09, 0xD4, 0x21, 0xFA, 0x51, 0xBA, 0xA59E);
    row(12, 0x84, 0x09, 0xD4, 0x28, 0x01, 0x58, 0xC1, 0xACA5);
    row(13, 0x84, 0x09, 0xD4, 0x44, 0x1D, 0x74, 0xDD, 0xC8C1);
    row(14, 0x84, 0x09, 0xD4, 0x52, 0x2B, 0x82, 0xEB, 0xD6CF);
    row(15, 0x84, 0x09, 0xD4, 0x08, 0xE1, 0x38, 0xA1, 0x8C85);
    row(16, 0x84, 0x09, 0xD4, 0x08, 0xE1, 0x38, 0xA1, 0x8C85);
    row(17, 0x84, 0x09, 0xD4, 0x1D, 0xF6, 0x4D, 0xB6, 0xA19A);
    row(18, 0x84, 0x09, 0xD4, 0x1D, 0xF6, 0x4D, 0xB6, 0xA19A);
    row(19, 0x84, 0x09, 0xD4, 0x1D, 0xF6, 0x4D, 0xB6, 0xA19A);
    row(20, 0x84, 0x09, 0xD4, 0xC5, 0x9E, 0xF5, 0x5E, 0x4942);
    row(21, 0x84, 0x09, 0xD4, 0x27, 0x00, 0x57, 0xC0, 0xABA4);
    row(22, 0x84, 0x09, 0xD4, 0x27, 0x00, 0x57, 0xC0, 0xABA4);
    row(255, 0x84, 0x09, 0xD4, 0x27, 0x00, 0x57, 0xC0, 0xABA4);
}

void TestConfiguration::vskmWidths()
{
    checkWidths(ComputerModel::VSKM);
}

// Version 13: the count stands at byte 147; 34 entries and more end outside the buffer.
void TestConfiguration::entries_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<quint64>("value64c");
    QTest::addColumn<int>("quadWords1");
    QTest::addColumn<int>("sixWords5");

    const auto row = [](int count, quint64 value64c, int quadWords1, int sixWords5) {
        QTest::addRow("%d", count) << count << value64c << quadWords1 << sixWords5;
    };
    row(0, 0x4039322B241D160F, 0x635C, 0xC1BA);
    row(1, 0x8D867F78716A635C, 0xB0A9, 0x0E07);
    row(3, 0x272019120B04FDF6, 0x4A43, 0xA8A1);
    row(32, 0xE0D9D2CBC4BDB6AF, 0x00FC, 0x0000);
    row(33, 0x00000000000000FC, 0x0000, 0x0000);
    row(34, 0x0000000000000000, 0x0000, 0x0000);
    row(255, 0x0000000000000000, 0x0000, 0x0000);
}

void TestConfiguration::entries()
{
    QFETCH(const int, count);
    VardaData::Payload payload = longForm(13, ComputerModel::Varda);
    payload[147] = std::uint8_t(count);
    VardaData data = usedStore();
    data.processComputer(payload, true);
    QCOMPARE(int(data.computer.entryCount), count);
    QTEST(quint64(data.computer.value64c), "value64c");
    QTEST(int(data.computer.quadWords[1]), "quadWords1");
    QTEST(int(data.computer.sixWords[5]), "sixWords5");
    QVERIFY(data.computer.entries.isEmpty());
}

// Version 1 of Tidemar and VSKM has the text at byte 58, version 12 of Varda at byte 49.
void TestConfiguration::owner_data()
{
    QTest::addColumn<int>("model");
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<QString>("owner");

    for (const int model : {2, 3}) {
        const auto row = [model](const char *name, const QByteArray &block, const QString &owner) {
            QTest::addRow("%d, %s", model, name) << model << block << owner;
        };
        row("plain", QByteArray("Jean\0trash", 10), QStringLiteral("Jean"));
        row("UTF-8", "Andr\xC3\xA9", QStringLiteral("Andr\u00E9"));
        row("nobody", QByteArray("\0nobody", 7), QString());
        row("32 bytes", QByteArray(32, 'w'), QString(32, QLatin1Char('w')));
    }
    QTest::newRow("Varda keeps it") << 1 << QByteArray("Jean") << QStringLiteral("before");
}

void TestConfiguration::owner()
{
    QFETCH(const int, model);
    QFETCH(const QByteArray, block);
    const std::size_t at = model == ComputerModel::Varda ? 49 : 58;
    VardaData::Payload payload{};
    payload[1] = model == ComputerModel::Varda ? 12 : 1;
    payload[2] = 1;
    payload[3] = std::uint8_t(model);
    std::copy(block.begin(), block.end(), payload.begin() + std::ptrdiff_t(at));
    payload[at + 32] = 'x';
    VardaData data = usedStore();
    data.processComputer(payload, false);
    QTEST(data.owner, "owner");
    QCOMPARE(QByteArray(data.computer.rawBlock.data(), int(block.size())), block);
    QCOMPARE(int(data.computer.batteryType), int('x'));
}

// A whole answer as a computer would give it, version 8 with the extended section.
void TestConfiguration::tidemarByHand()
{
    VardaData data;
    data.processComputer(
        payloadOf("0801 02 3412"               // version 8, Tidemar, configWord
                  "01020304 0605 00 f503 0708" // cfgA .. cfgD, cfgE, sea water, 1013 mbar
                  "a1a2a3 b1b2b3b4b5b6"        // tailBytes, cfgBytes
                  "1500 ffff 2023 ffff 3200 ffff 6400 ffff" // air, 32/35, 50 %, oxygen
                  "0000 ffff 0000 ffff 0000 ffff 0c41 ffff" // ..., 12/65
                  "05"                                      // cfgH
                  "0100 0200 03 0400 0500 06 0700 0800 09"
                  "0a50 ffff 0000 ffff 0000 ffff 0000 ffff" // 10/80
                  "0000 ffff 0000 ffff 0000 ffff 1520 ffff"
                  "ffffff" // skipped from version 5 on
                  "4d6172636f00000000000000000000000000000000000000000000000000000000" // Marco
                  "000000000000000000000000000000000000000000000000000000000000000000"),
        true);
    QCOMPARE(int(data.config.configWord), 0x1234);
    QCOMPARE(int(data.config.surfacePressure), 1013);
    QCOMPARE(hexOf(data.config.tailBytes), QStringLiteral("000000a1a2a3"));
    QCOMPARE(hexOf(data.config.cfgBytes), QStringLiteral("b1b2b3b4b5b6"));
    QCOMPARE(hexOf(data.config.gasTable1),
             QStringLiteral("15002023320064000000000000000c410000000000000000"));
    QCOMPARE(hexOf(data.config.cfgTriple),
             QStringLiteral("0001:0002:03,0004:0005:06,0007:0008:09"));
    QCOMPARE(hexOf(data.config.gasTable2),
             QStringLiteral("0a50000000000000000000000000152000000000 00000000")
                 .remove(QLatin1Char(' ')));
    QCOMPARE(data.owner, QStringLiteral("Marco"));
}

QTEST_APPLESS_MAIN(TestConfiguration)
#include "tst_configuration.moc"
