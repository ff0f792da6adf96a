// SPDX-License-Identifier: MIT
#include "headerfields.h"
#include "payload.h"

#include <QtTest/qtest.h>

class TestLogbook : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyField_data();
    void everyField();
    void form_data();
    void form();
    void kindByte_data();
    void kindByte();
    void below1020_data();
    void below1020();
    void tidemarBit_data();
    void tidemarBit();
    void signedBytes();
    void vardaByHand();
    void appends();
};

static TidemarDiveHeader decode(const VardaData::Payload &payload,
                                ComputerModel::ComputerModelIn model)
{
    VardaData data;
    data.computerModel = model;
    data.processLogbook(payload);
    return data.diveHeaders.value(0);
}

// What no answer fills; looked at once, in everyField().
static QStringList unfilled()
{
    return fieldList("headerByte3=00 reservedBlock="
                     "000000000000000000000000000000000000000000000000"
                     "000000000000000000000000000000000000000000000000 "
                     "headerByte4=00 headerByte6=00 headerWord9=0000 headerWord10=0000 "
                     "text1= text2= text3= text4=");
}

// The pattern with the first word put in.
void TestLogbook::everyField_data()
{
    QTest::addColumn<ComputerModel::ComputerModelIn>("model");
    QTest::addColumn<quint16>("first");
    QTest::addColumn<QStringList>("fields");

    const auto row = [](const char *name, ComputerModel::ComputerModelIn model, int first,
                        const char *fields) {
        QTest::newRow(name) << model << quint16(first) << fieldList(fields);
    };
    row("Varda 0", ComputerModel::Varda, 0x1234, R"(
        diveNumber=4660 model=Varda stamp=211a130c05fef7f0 stamp2=2095879203654923244
        tenths1=1567 tenths2=1926.8 sampleInterval=5 value32a=cdc6bfb8 kindByte=1f
        tidemarBit=1 headerWord1=4942 below1020=0 headerByte1=26 headerByte2=2d
        headerWord2=837c headerWord3=2f28 headerWord4=c9c2 value32b=756e6760
        count1=2677576074 count2=3149180326 value32c=39322b24
        tissueN2=5750,736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4
        tissueHe=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        gasSlotMask=0010 gasO2=172533414f5d6b7900000000 gasHe=1e2c3a485664728000000000
        headerByte5=18 headerWord5=958e headerWord6=a39c headerWord7=b1aa
        value32d=e9e2dbd4 headerWord8=0000 signed1=82 signed2=89 headerWord11=d7d0
        headerWord12=e5de value32e=554e4740 value32f=716a635c headerByte7=00
        headerWord13=0001 headerWord14=0384)");
    row("Varda 1", ComputerModel::Varda, 0x8001, R"(
        diveNumber=7960 model=Varda stamp=3d362f28211a130c stamp2=4121404043104227080
        tenths1=2286.6 tenths2=2646.4 sampleInterval=148 value32a=b0a9a29b kindByte=2d
        tidemarBit=1 headerWord1=5750 below1020=0 headerByte1=34 headerByte2=3b
        headerWord2=9f98 headerWord3=4b44 headerWord4=e5de value32b=918a837c
        count1=3149180326 count2=3620784578 value32c=554e4740
        tissueN2=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        tissueHe=736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4,1710
        gasSlotMask=001e gasO2=2533414f5d6b798700000000 gasHe=2c3a48566472808e00000000
        headerByte5=26 headerWord5=a39c headerWord6=b1aa headerWord7=bfb8
        value32d=f7f0e9e2 headerWord8=05fe signed1=110 signed2=117 headerWord11=f3ec
        headerWord12=01fa value32e=716a635c value32f=8d867f78 headerByte7=00
        headerWord13=0001 headerWord14=0384)");
    row("Varda 4", ComputerModel::Varda, 0x8004, R"(
        diveNumber=7960 model=Varda stamp=3d362f28211a130c stamp2=4121404043104227080
        tenths1=2286.6 tenths2=2646.4 sampleInterval=148 value32a=b0a9a29b kindByte=2d
        tidemarBit=1 headerWord1=5750 below1020=0 headerByte1=34 headerByte2=3b
        headerWord2=9f98 headerWord3=4b44 headerWord4=e5de value32b=918a837c
        count1=3149180326 count2=3620784578 value32c=554e4740
        tissueN2=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        tissueHe=736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4,1710
        gasSlotMask=001e gasO2=2533414f5d6b798700000000 gasHe=2c3a48566472808e00000000
        headerByte5=26 headerWord5=a39c headerWord6=b1aa headerWord7=bfb8
        value32d=f7f0e9e2 headerWord8=05fe signed1=110 signed2=117 headerWord11=f3ec
        headerWord12=01fa value32e=716a635c value32f=8d867f78 headerByte7=00
        headerWord13=0001 headerWord14=0384)");
    row("Varda 5", ComputerModel::Varda, 0x8005, R"(
        diveNumber=7960 model=Varda stamp=7c756e676059524b stamp2=8678834931903057479
        tenths1=3905.7 tenths2=4265.5 sampleInterval=211 value32a=efe8e1da kindByte=2d
        tidemarBit=1 headerWord1=5750 below1020=0 headerByte1=34 headerByte2=3b
        headerWord2=ded7 headerWord3=8a83 headerWord4=241d value32b=d0c9c2bb
        count1=4210289893 count2=370083841 value32c=948d867f
        tissueN2=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        tissueHe=736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4,1710
        gasSlotMask=251e gasO2=2c3a48566472808e9caab8c6 gasHe=33414f5d6b798795a3b1bfcd
        headerByte5=26 headerWord5=e2db headerWord6=f0e9 headerWord7=fef7
        value32d=362f2821 headerWord8=443d signed1=-83 signed2=-76 headerWord11=322b
        headerWord12=4039 value32e=b0a9a29b value32f=ccc5beb7 headerByte7=00
        headerWord13=0001 headerWord14=0384)");
    row("Varda 6", ComputerModel::Varda, 0x8006, R"(
        diveNumber=7960 model=Varda stamp=7c756e676059524b stamp2=8678834931903057479
        tenths1=3905.7 tenths2=4265.5 sampleInterval=211 value32a=efe8e1da kindByte=2d
        tidemarBit=1 headerWord1=5750 below1020=0 headerByte1=34 headerByte2=3b
        headerWord2=ded7 headerWord3=8a83 headerWord4=241d value32b=d0c9c2bb
        count1=4210289893 count2=370083841 value32c=948d867f
        tissueN2=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        tissueHe=736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4,1710
        gasSlotMask=251e gasO2=2c3a48566472808e9caab8c6 gasHe=33414f5d6b798795a3b1bfcd
        headerByte5=26 headerWord5=e2db headerWord6=f0e9 headerWord7=fef7
        value32d=362f2821 headerWord8=443d signed1=-83 signed2=-76 headerWord11=322b
        headerWord12=4039 value32e=b0a9a29b value32f=ccc5beb7 headerByte7=f6
        headerWord13=04fd headerWord14=0384)");
    row("Varda 10", ComputerModel::Varda, 0x800A, R"(
        diveNumber=7960 model=Varda stamp=7c756e676059524b stamp2=8678834931903057479
        tenths1=3905.7 tenths2=4265.5 sampleInterval=211 value32a=efe8e1da kindByte=2d
        tidemarBit=1 headerWord1=5750 below1020=0 headerByte1=34 headerByte2=3b
        headerWord2=ded7 headerWord3=8a83 headerWord4=241d value32b=d0c9c2bb
        count1=4210289893 count2=370083841 value32c=948d867f
        tissueN2=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        tissueHe=736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4,1710
        gasSlotMask=251e gasO2=2c3a48566472808e9caab8c6 gasHe=33414f5d6b798795a3b1bfcd
        headerByte5=26 headerWord5=e2db headerWord6=f0e9 headerWord7=fef7
        value32d=362f2821 headerWord8=443d signed1=-83 signed2=-76 headerWord11=322b
        headerWord12=4039 value32e=b0a9a29b value32f=ccc5beb7 headerByte7=f6
        headerWord13=04fd headerWord14=120b)");
    row("Tidemar 0", ComputerModel::Tidemar, 0x1234, R"(
        diveNumber=4660 model=Tidemar stamp=6059524b443d362f stamp2=6653310092436910635
        tenths1=3186.1 tenths2=3545.9 sampleInterval=5 value32a=0c05fef7 kindByte=1f
        tidemarBit=1 headerWord1=4942 below1020=0 headerByte1=26 headerByte2=2d
        headerWord2=c2bb headerWord3=6e67 headerWord4=0801 value32b=b4ada69f
        count1=3738685641 count2=4210289893 value32c=78716a63
        tissueN2=5750,736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4
        tissueHe=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        gasSlotMask=0010 gasO2=172533414f5d6b7900000000 gasHe=1e2c3a485664728000000000
        headerByte5=18 headerWord5=958e headerWord6=b8b1 headerWord7=dbd4
        value32d=28211a13 headerWord8=0000 signed1=-111 signed2=-104 headerWord11=160f
        headerWord12=241d value32e=948d867f value32f=b0a9a29b headerByte7=00
        headerWord13=0001 headerWord14=0384)");
    row("Tidemar 1", ComputerModel::Tidemar, 0x8001, R"(
        diveNumber=7960 model=Tidemar stamp=6e676059524b443d stamp2=7666072512169984057
        tenths1=3545.9 tenths2=3905.7 sampleInterval=197 value32a=e1dad3cc kindByte=2d
        tidemarBit=1 headerWord1=5750 below1020=0 headerByte1=34 headerByte2=3b
        headerWord2=d0c9 headerWord3=7c75 headerWord4=160f value32b=c2bbb4ad
        count1=3974487767 count2=134347507 value32c=867f7871
        tissueN2=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        tissueHe=736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4,1710
        gasSlotMask=001e gasO2=2533414f5d6b798700000000 gasHe=2c3a48566472808e00000000
        headerByte5=26 headerWord5=a39c headerWord6=c6bf headerWord7=e9e2
        value32d=362f2821 headerWord8=0000 signed1=-97 signed2=-90 headerWord11=241d
        headerWord12=322b value32e=a29b948d value32f=beb7b0a9 headerByte7=00
        headerWord13=0001 headerWord14=0384)");
    row("Tidemar 4", ComputerModel::Tidemar, 0x8004, R"(
        diveNumber=7960 model=Tidemar stamp=6e676059524b443d stamp2=7666072512169984057
        tenths1=3545.9 tenths2=3905.7 sampleInterval=197 value32a=e1dad3cc kindByte=2d
        tidemarBit=0 headerWord1=5750 below1020=0 headerByte1=34 headerByte2=3b
        headerWord2=d0c9 headerWord3=7c75 headerWord4=160f value32b=c2bbb4ad
        count1=3974487767 count2=134347507 value32c=867f7871
        tissueN2=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        tissueHe=736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4,1710
        gasSlotMask=001e gasO2=2533414f5d6b798700000000 gasHe=2c3a48566472808e00000000
        headerByte5=26 headerWord5=a39c headerWord6=c6bf headerWord7=e9e2
        value32d=362f2821 headerWord8=0000 signed1=-97 signed2=-90 headerWord11=241d
        headerWord12=322b value32e=a29b948d value32f=beb7b0a9 headerByte7=00
        headerWord13=0001 headerWord14=0384)");
    row("Tidemar 5", ComputerModel::Tidemar, 0x8005, R"(
        diveNumber=7960 model=Tidemar stamp=ada69f98918a837c stamp2=-6223240672740737160
        tenths1=5165 tenths2=5524.8 sampleInterval=4 value32a=2019120b kindByte=2d
        tidemarBit=1 headerWord1=5750 below1020=0 headerByte1=34 headerByte2=3b
        headerWord2=0f08 headerWord3=bbb4 headerWord4=554e value32b=01faf3ec
        count1=723787030 count2=1195391282 value32c=c5beb7b0
        tissueN2=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        tissueHe=736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4,1710
        gasSlotMask=251e gasO2=2c3a48566472808e9caab8c6 gasHe=33414f5d6b798795a3b1bfcd
        headerByte5=26 headerWord5=e2db headerWord6=05fe headerWord7=2821
        value32d=756e6760 headerWord8=0000 signed1=-34 signed2=-27 headerWord11=635c
        headerWord12=716a value32e=e1dad3cc value32f=fdf6efe8 headerByte7=00
        headerWord13=0001 headerWord14=0384)");
    row("Tidemar 6", ComputerModel::Tidemar, 0x8006, R"(
        diveNumber=7960 model=Tidemar stamp=ada69f98918a837c stamp2=-6223240672740737160
        tenths1=5165 tenths2=5524.8 sampleInterval=4 value32a=2019120b kindByte=2d
        tidemarBit=1 headerWord1=5750 below1020=0 headerByte1=34 headerByte2=3b
        headerWord2=0f08 headerWord3=bbb4 headerWord4=554e value32b=01faf3ec
        count1=723787030 count2=1195391282 value32c=c5beb7b0
        tissueN2=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        tissueHe=736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4,1710
        gasSlotMask=251e gasO2=2c3a48566472808e9caab8c6 gasHe=33414f5d6b798795a3b1bfcd
        headerByte5=26 headerWord5=e2db headerWord6=05fe headerWord7=2821
        value32d=756e6760 headerWord8=0000 signed1=-34 signed2=-27 headerWord11=635c
        headerWord12=716a value32e=e1dad3cc value32f=fdf6efe8 headerByte7=00
        headerWord13=0001 headerWord14=0384)");
    row("Tidemar 10", ComputerModel::Tidemar, 0x800A, R"(
        diveNumber=7960 model=Tidemar stamp=ada69f98918a837c stamp2=-6223240672740737160
        tenths1=5165 tenths2=5524.8 sampleInterval=4 value32a=2019120b kindByte=2d
        tidemarBit=1 headerWord1=5750 below1020=0 headerByte1=34 headerByte2=3b
        headerWord2=0f08 headerWord3=bbb4 headerWord4=554e value32b=01faf3ec
        count1=723787030 count2=1195391282 value32c=c5beb7b0
        tissueN2=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        tissueHe=736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4,1710
        gasSlotMask=251e gasO2=2c3a48566472808e9caab8c6 gasHe=33414f5d6b798795a3b1bfcd
        headerByte5=26 headerWord5=e2db headerWord6=05fe headerWord7=2821
        value32d=756e6760 headerWord8=0000 signed1=-34 signed2=-27 headerWord11=635c
        headerWord12=716a value32e=e1dad3cc value32f=fdf6efe8 headerByte7=00
        headerWord13=0001 headerWord14=0384)");
    row("VSKM 0", ComputerModel::VSKM, 0x1234, R"(
        diveNumber=4660 model=VSKM stamp=6059524b443d362f stamp2=6653310092436910635
        tenths1=3186.1 tenths2=3545.9 sampleInterval=5 value32a=0c05fef7 kindByte=1f
        tidemarBit=1 headerWord1=4942 below1020=0 headerByte1=26 headerByte2=2d
        headerWord2=c2bb headerWord3=6e67 headerWord4=0801 value32b=b4ada69f
        count1=3738685641 count2=4210289893 value32c=78716a63
        tissueN2=5750,736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4
        tissueHe=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        gasSlotMask=0010 gasO2=172533414f5d6b7900000000 gasHe=1e2c3a485664728000000000
        headerByte5=18 headerWord5=958e headerWord6=b8b1 headerWord7=dbd4
        value32d=28211a13 headerWord8=0000 signed1=-111 signed2=-104 headerWord11=160f
        headerWord12=241d value32e=948d867f value32f=b0a9a29b headerByte7=00
        headerWord13=0001 headerWord14=0384)");
    row("VSKM 1", ComputerModel::VSKM, 0x8001, R"(
        diveNumber=7960 model=VSKM stamp=6e676059524b443d stamp2=7666072512169984057
        tenths1=3545.9 tenths2=3905.7 sampleInterval=197 value32a=e1dad3cc kindByte=2d
        tidemarBit=1 headerWord1=5750 below1020=0 headerByte1=34 headerByte2=3b
        headerWord2=d0c9 headerWord3=7c75 headerWord4=160f value32b=c2bbb4ad
        count1=3974487767 count2=134347507 value32c=867f7871
        tissueN2=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        tissueHe=736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4,1710
        gasSlotMask=001e gasO2=2533414f5d6b798700000000 gasHe=2c3a48566472808e00000000
        headerByte5=26 headerWord5=a39c headerWord6=c6bf headerWord7=e9e2
        value32d=362f2821 headerWord8=0000 signed1=-97 signed2=-90 headerWord11=241d
        headerWord12=322b value32e=a29b948d value32f=beb7b0a9 headerByte7=00
        headerWord13=0001 headerWord14=0384)");
    row("VSKM 4", ComputerModel::VSKM, 0x8004, R"(
        diveNumber=7960 model=VSKM stamp=6e676059524b443d stamp2=7666072512169984057
        tenths1=3545.9 tenths2=3905.7 sampleInterval=197 value32a=e1dad3cc kindByte=2d
        tidemarBit=1 headerWord1=5750 below1020=0 headerByte1=34 headerByte2=3b
        headerWord2=d0c9 headerWord3=7c75 headerWord4=160f value32b=c2bbb4ad
        count1=3974487767 count2=134347507 value32c=867f7871
        tissueN2=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        tissueHe=736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4,1710
        gasSlotMask=001e gasO2=2533414f5d6b798700000000 gasHe=2c3a48566472808e00000000
        headerByte5=26 headerWord5=a39c headerWord6=c6bf headerWord7=e9e2
        value32d=362f2821 headerWord8=0000 signed1=-97 signed2=-90 headerWord11=241d
        headerWord12=322b value32e=a29b948d value32f=beb7b0a9 headerByte7=00
        headerWord13=0001 headerWord14=0384)");
    row("VSKM 5", ComputerModel::VSKM, 0x8005, R"(
        diveNumber=7960 model=VSKM stamp=ada69f98918a837c stamp2=-6223240672740737160
        tenths1=5165 tenths2=5524.8 sampleInterval=4 value32a=2019120b kindByte=2d
        tidemarBit=1 headerWord1=5750 below1020=0 headerByte1=34 headerByte2=3b
        headerWord2=0f08 headerWord3=bbb4 headerWord4=554e value32b=01faf3ec
        count1=723787030 count2=1195391282 value32c=c5beb7b0
        tissueN2=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        tissueHe=736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4,1710
        gasSlotMask=251e gasO2=2c3a48566472808e9caab8c6 gasHe=33414f5d6b798795a3b1bfcd
        headerByte5=26 headerWord5=e2db headerWord6=05fe headerWord7=2821
        value32d=756e6760 headerWord8=0000 signed1=-34 signed2=-27 headerWord11=635c
        headerWord12=716a value32e=e1dad3cc value32f=fdf6efe8 headerByte7=00
        headerWord13=0001 headerWord14=0384)");
    row("VSKM 6", ComputerModel::VSKM, 0x8006, R"(
        diveNumber=7960 model=VSKM stamp=ada69f98918a837c stamp2=-6223240672740737160
        tenths1=5165 tenths2=5524.8 sampleInterval=4 value32a=2019120b kindByte=2d
        tidemarBit=1 headerWord1=5750 below1020=0 headerByte1=34 headerByte2=3b
        headerWord2=0f08 headerWord3=bbb4 headerWord4=554e value32b=01faf3ec
        count1=723787030 count2=1195391282 value32c=c5beb7b0
        tissueN2=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        tissueHe=736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4,1710
        gasSlotMask=251e gasO2=2c3a48566472808e9caab8c6 gasHe=33414f5d6b798795a3b1bfcd
        headerByte5=26 headerWord5=e2db headerWord6=05fe headerWord7=2821
        value32d=756e6760 headerWord8=0000 signed1=-34 signed2=-27 headerWord11=635c
        headerWord12=716a value32e=e1dad3cc value32f=fdf6efe8 headerByte7=00
        headerWord13=0001 headerWord14=0384)");
    row("VSKM 10", ComputerModel::VSKM, 0x800A, R"(
        diveNumber=7960 model=VSKM stamp=ada69f98918a837c stamp2=-6223240672740737160
        tenths1=5165 tenths2=5524.8 sampleInterval=4 value32a=2019120b kindByte=2d
        tidemarBit=1 headerWord1=5750 below1020=0 headerByte1=34 headerByte2=3b
        headerWord2=0f08 headerWord3=bbb4 headerWord4=554e value32b=01faf3ec
        count1=723787030 count2=1195391282 value32c=c5beb7b0
        tissueN2=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        tissueHe=736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4,1710
        gasSlotMask=251e gasO2=2c3a48566472808e9caab8c6 gasHe=33414f5d6b798795a3b1bfcd
        headerByte5=26 headerWord5=e2db headerWord6=05fe headerWord7=2821
        value32d=756e6760 headerWord8=0000 signed1=-34 signed2=-27 headerWord11=635c
        headerWord12=716a value32e=e1dad3cc value32f=fdf6efe8 headerByte7=00
        headerWord13=0001 headerWord14=0384)");
    row("no model, 4", ComputerModel::Unknown, 0x8004, R"(
        diveNumber=7960 model=Unknown stamp=2f28211a130c05fe stamp2=3108641623371153914
        tenths1=1926.8 tenths2=2286.6 sampleInterval=134 value32a=a29b948d kindByte=2d
        tidemarBit=1 headerWord1=5750 below1020=0 headerByte1=34 headerByte2=3b
        headerWord2=918a headerWord3=3d36 headerWord4=d7d0 value32b=837c756e
        count1=2913378200 count2=3384982452 value32c=47403932
        tissueN2=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        tissueHe=736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4,1710
        gasSlotMask=001e gasO2=2533414f5d6b798700000000 gasHe=2c3a48566472808e00000000
        headerByte5=26 headerWord5=a39c headerWord6=b1aa headerWord7=bfb8
        value32d=f7f0e9e2 headerWord8=0000 signed1=96 signed2=103 headerWord11=e5de
        headerWord12=f3ec value32e=635c554e value32f=7f78716a headerByte7=00
        headerWord13=0001 headerWord14=0384)");
    row("third party, 10", ComputerModel::ThirdParty, 0x800A, R"(
        diveNumber=7960 model=ThirdParty stamp=6e676059524b443d stamp2=7666072512169984057
        tenths1=3545.9 tenths2=3905.7 sampleInterval=197 value32a=e1dad3cc kindByte=2d
        tidemarBit=1 headerWord1=5750 below1020=0 headerByte1=34 headerByte2=3b
        headerWord2=d0c9 headerWord3=7c75 headerWord4=160f value32b=c2bbb4ad
        count1=3974487767 count2=134347507 value32c=867f7871
        tissueN2=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        tissueHe=736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4,1710
        gasSlotMask=251e gasO2=2c3a48566472808e9caab8c6 gasHe=33414f5d6b798795a3b1bfcd
        headerByte5=26 headerWord5=e2db headerWord6=f0e9 headerWord7=fef7
        value32d=362f2821 headerWord8=0000 signed1=-97 signed2=-90 headerWord11=241d
        headerWord12=322b value32e=a29b948d value32f=beb7b0a9 headerByte7=00
        headerWord13=0001 headerWord14=0384)");
    row("Varda, 0x8100", ComputerModel::Varda, 0x8100, R"(
        diveNumber=7960 model=Varda stamp=2f28211a130c05fe stamp2=3108641623371153914
        tenths1=1926.8 tenths2=2286.6 sampleInterval=5 value32a=dbd4cdc6 kindByte=2d
        tidemarBit=1 headerWord1=5750 below1020=0 headerByte1=34 headerByte2=3b
        headerWord2=918a headerWord3=3d36 headerWord4=d7d0 value32b=837c756e
        count1=2913378200 count2=3384982452 value32c=47403932
        tissueN2=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        tissueHe=736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4,1710
        gasSlotMask=001e gasO2=2533414f5d6b798700000000 gasHe=2c3a48566472808e00000000
        headerByte5=26 headerWord5=a39c headerWord6=b1aa headerWord7=bfb8
        value32d=f7f0e9e2 headerWord8=0000 signed1=96 signed2=103 headerWord11=e5de
        headerWord12=f3ec value32e=635c554e value32f=7f78716a headerByte7=00
        headerWord13=0001 headerWord14=0384)");
    row("Tidemar, 0x8100", ComputerModel::Tidemar, 0x8100, R"(
        diveNumber=7960 model=Tidemar stamp=6e676059524b443d stamp2=7666072512169984057
        tenths1=3545.9 tenths2=3905.7 sampleInterval=5 value32a=1a130c05 kindByte=2d
        tidemarBit=1 headerWord1=5750 below1020=0 headerByte1=34 headerByte2=3b
        headerWord2=d0c9 headerWord3=7c75 headerWord4=160f value32b=c2bbb4ad
        count1=3974487767 count2=134347507 value32c=867f7871
        tissueN2=655e,817a,9d96,b9b2,d5ce,f1ea,0d06,2922,453e,615a,7d76,9992,b5ae,d1ca,ede6,0902
        tissueHe=736c,8f88,aba4,c7c0,e3dc,fff8,1b14,3730,534c,6f68,8b84,a7a0,c3bc,dfd8,fbf4,1710
        gasSlotMask=001e gasO2=2533414f5d6b798700000000 gasHe=2c3a48566472808e00000000
        headerByte5=26 headerWord5=a39c headerWord6=c6bf headerWord7=e9e2
        value32d=362f2821 headerWord8=0000 signed1=-97 signed2=-90 headerWord11=241d
        headerWord12=322b value32e=a29b948d value32f=beb7b0a9 headerByte7=00
        headerWord13=0001 headerWord14=0384)");
}

void TestLogbook::everyField()
{
    QFETCH(const ComputerModel::ComputerModelIn, model);
    QFETCH(const quint16, first);
    const TidemarDiveHeader header = decode(patternPayload(first), model);

    QStringList fields = headerFieldsOf(header)
                         + QStringList{FIELD(header, headerByte7), FIELD(header, headerWord13),
                                       FIELD(header, headerWord14)};
    const QStringList defaults = unfilled();
    for (const QString &field : defaults)
        QVERIFY2(fields.removeOne(field), qPrintable(field));
    QTEST(fields, "fields");
}

void TestLogbook::form_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("diveNumber");
    QTest::addColumn<int>("headerByte5");

    // Bytes 3 and on are 11 22 33.
    const auto row = [](int first, int diveNumber, int headerByte5) {
        QTest::addRow("0x%04X", first) << first << diveNumber << headerByte5;
    };
    row(0x0000, 0, 0x11);
    row(0x0001, 1, 0x11);
    row(0x7FFF, 0x7FFF, 0x11);
    row(0x8000, 0x8000, 0x11);
    row(0x8001, 0x2211, 0x33);
    row(0x8100, 0x2211, 0x33);
    row(0xFFFF, 0x2211, 0x33);
}

void TestLogbook::form()
{
    QFETCH(const int, first);
    VardaData::Payload payload = payloadOf("0000 11 22 33 44");
    payload[1] = std::uint8_t(first);
    payload[2] = std::uint8_t(first >> 8);
    const TidemarDiveHeader header = decode(payload, ComputerModel::Varda);
    QTEST(int(header.diveNumber), "diveNumber");
    QTEST(int(header.headerByte5), "headerByte5");
}

void TestLogbook::kindByte_data()
{
    QTest::addColumn<ComputerModel::ComputerModelIn>("model");
    QTest::addColumn<int>("sent");
    QTest::addColumn<int>("kindByte");

    QTest::newRow("Varda 3") << ComputerModel::Varda << 3 << 3;
    QTest::newRow("no model 3") << ComputerModel::Unknown << 3 << 3;
    QTest::newRow("third party 3") << ComputerModel::ThirdParty << 3 << 3;
    QTest::newRow("Tidemar 3") << ComputerModel::Tidemar << 3 << 5;
    QTest::newRow("VSKM 3") << ComputerModel::VSKM << 3 << 5;
    QTest::newRow("Tidemar 2") << ComputerModel::Tidemar << 2 << 2;
    QTest::newRow("Tidemar 5") << ComputerModel::Tidemar << 5 << 5;
    QTest::newRow("VSKM 0") << ComputerModel::VSKM << 0 << 0;
}

void TestLogbook::kindByte()
{
    QFETCH(const ComputerModel::ComputerModelIn, model);
    QFETCH(const int, sent);
    VardaData::Payload payload{};
    payload[1] = 9;
    payload[4] = std::uint8_t(sent);
    QTEST(int(decode(payload, model).kindByte), "kindByte");

    payload = payloadOf("0580 0900");
    payload[6] = std::uint8_t(sent);
    QTEST(int(decode(payload, model).kindByte), "kindByte");
}

void TestLogbook::below1020_data()
{
    QTest::addColumn<QByteArray>("word");
    QTest::addColumn<bool>("below");

    QTest::newRow("0") << QByteArray("0000") << true;
    QTest::newRow("1019") << QByteArray("fb03") << true;
    QTest::newRow("1020") << QByteArray("fc03") << false;
    QTest::newRow("65535") << QByteArray("ffff") << false;
}

void TestLogbook::below1020()
{
    QFETCH(const QByteArray, word);
    QTEST(decode(payloadOf("0100 00000000" + word), ComputerModel::Varda).below1020, "below");
    QTEST(decode(payloadOf("0180 0100 00000000" + word), ComputerModel::VSKM).below1020, "below");
}

// The byte stands at 179 in version 4 and at 188 from version 5 on.
void TestLogbook::tidemarBit_data()
{
    QTest::addColumn<ComputerModel::ComputerModelIn>("model");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("bit");

    QTest::newRow("Tidemar 0") << ComputerModel::Tidemar << 0x0001 << 0 << 1;
    QTest::newRow("Tidemar 3") << ComputerModel::Tidemar << 0x8003 << 179 << 1;
    QTest::newRow("Tidemar 4") << ComputerModel::Tidemar << 0x8004 << 179 << 0;
    QTest::newRow("Tidemar 5") << ComputerModel::Tidemar << 0x8005 << 188 << 0;
    QTest::newRow("Tidemar 255") << ComputerModel::Tidemar << 0x80FF << 188 << 0;
    QTest::newRow("VSKM 4") << ComputerModel::VSKM << 0x8004 << 179 << 1;
    QTest::newRow("Varda 4") << ComputerModel::Varda << 0x8004 << 179 << 1;
}

void TestLogbook::tidemarBit()
{
    QFETCH(const ComputerModel::ComputerModelIn, model);
    QFETCH(const int, first);
    QFETCH(const int, offset);
    VardaData::Payload payload{};
    payload.fill(0xFF);
    payload[1] = std::uint8_t(first);
    payload[2] = std::uint8_t(first >> 8);
    if (offset > 0)
        payload[std::size_t(offset)] = 0xFE;
    QTEST(int(decode(payload, model).tidemarBit), "bit");
}

// The plain layout of a Varda has the two at bytes 121 and 122.
void TestLogbook::signedBytes()
{
    VardaData::Payload payload = payloadOf("0100");
    payload[121] = 0x80;
    payload[122] = 0xFF;
    const TidemarDiveHeader header = decode(payload, ComputerModel::Varda);
    QCOMPARE(header.signed1, -128.0);
    QCOMPARE(header.signed2, -1.0);
}

// Version 10, where everything that a Varda can send is there.
void TestLogbook::vardaByHand()
{
    const TidemarDiveHeader header = decode(
        payloadOf("0a80 2a00"   // version 10, dive 42
                  "01 00 50 4b" // headerByte5, kindByte, headerByte1, headerByte2
                  "f503 0201"   // 1013, headerWord1
                  "0100 0200 0300 0400 0500 0600 0700 0800 0900 0a00 0b00 0c00 0d00 0e00 0f00 1000"
                  "1100 1200 1300 1400 1500 1600 1700 1800 1900 1a00 1b00 1c00 1d00 1e00 1f00 2000"
                  "0300" // gas slots 0 and 1
                  "1500 3200 0000 0000 0000 0000 0000 0000 0000 0000 0000 1241"
                  "ff 0403 0605 0807"          // skipped, headerWord5 to headerWord7
                  "0d0c0b0a 11100f0e"          // value32a for a while, value32d
                  "1312"                       // headerWord8
                  "00f1536500000000"           // stamp
                  "0200 7b00 f401"             // headerWord3, 12.3, 50.0
                  "f6 14"                      // -10, 20
                  "04030201 0605"              // value32b, headerWord2
                  "e8030000 ffffffff"          // 1000, 4294967295
                  "0100 0200 0300"             // headerWord4, headerWord11, headerWord12
                  "feffffffffffffff"           // stamp2
                  "01000000 02000000 03000000" // value32c, value32e, value32f
                  "0a 78563412"                // sampleInterval, value32a
                  "07 0403"                    // headerByte7, headerWord13
                  "8403"                       // headerWord14
                  "ffffffffffff"),
        ComputerModel::Varda);
    QCOMPARE(headerFieldsOf(header), fieldList(R"(
        diveNumber=42 model=Varda stamp=000000006553f100 stamp2=-2 tenths1=12.3 tenths2=50
        sampleInterval=10 value32a=12345678 kindByte=00 tidemarBit=1 headerWord1=0102 below1020=1
        headerByte1=50 headerByte2=4b headerWord2=0506 headerWord3=0002 headerWord4=0001
        value32b=01020304 count1=1000 count2=4294967295 value32c=00000001
        tissueN2=0001,0003,0005,0007,0009,000b,000d,000f,0011,0013,0015,0017,0019,001b,001d,001f
        tissueHe=0002,0004,0006,0008,000a,000c,000e,0010,0012,0014,0016,0018,001a,001c,001e,0020
        gasSlotMask=0003 headerByte3=00 gasO2=153200000000000000000012
        gasHe=000000000000000000000041
        reservedBlock=000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000
        headerByte4=00 headerByte5=01 headerByte6=00 headerWord5=0304 headerWord6=0506
        headerWord7=0708 value32d=0e0f1011 headerWord8=1213 signed1=-10 signed2=20
        headerWord9=0000 headerWord10=0000 headerWord11=0002 headerWord12=0003 value32e=00000002
        value32f=00000003 text1= text2= text3= text4=)"));
    QCOMPARE(int(header.headerByte7), 7);
    QCOMPARE(int(header.headerWord13), 0x0304);
    QCOMPARE(int(header.headerWord14), 900);
}

void TestLogbook::appends()
{
    VardaData data;
    data.computerModel = ComputerModel::Tidemar;
    data.processLogbook(payloadOf("0300"));
    data.computerModel = ComputerModel::VSKM;
    data.processLogbook(payloadOf("0100"));
    data.processLogbook(payloadOf("0300"));
    QCOMPARE(data.diveHeaders.size(), 3);
    QCOMPARE(int(data.diveHeaders[0].diveNumber), 3);
    QCOMPARE(data.diveHeaders[0].model, ComputerModel::Tidemar);
    QCOMPARE(int(data.diveHeaders[1].diveNumber), 1);
    QCOMPARE(data.diveHeaders[1].model, ComputerModel::VSKM);
    QCOMPARE(int(data.diveHeaders[2].diveNumber), 3);
}

QTEST_APPLESS_MAIN(TestLogbook)
#include "tst_logbook.moc"
