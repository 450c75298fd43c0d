#include "sync/PrinterAgreement.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "tests/support/ParsedPPD.h"

namespace TkPPDUpdating::Testing {
namespace {

/// Lines of a PPD and what a printer calls itself: its model as over IPP or SNMP, its device ID.
struct Pair {
    const char* PPD;
    const char* model;
    const char* deviceID;

    friend std::ostream& operator<<(std::ostream& stream, const Pair& pair) {
        return stream << pair.PPD << " and " << pair.model << " " << pair.deviceID;
    }
};

bool agree(const Pair& pair) {
    OrbCSPrinterIdentity answer;
    if (*pair.model) {
        answer.models.emplace_back(pair.model);
    }
    if (*pair.deviceID) {
        answer.deviceIDs.emplace_back(pair.deviceID);
    }
    const auto PPD = PrinterAgreement::identityOfPPD(*parsedPPD(pair.PPD));
    EXPECT_EQ(PrinterAgreement::agree(PPD, answer), PrinterAgreement::agree(answer, PPD)) << pair;
    return PrinterAgreement::agree(PPD, answer);
}

constexpr Pair kSamePrinters[] = {
    {"*Manufacturer: \"HP\"\n*Product: \"(HP LaserJet P2015 Series)\"\n", "HP LaserJet P2015", ""},
    {"*Manufacturer: \"HP\"\n*ModelName: \"HP LaserJet P2015 Series\"\n", "HP LaserJet P2015", ""},
    {"*ModelName: \"HP LaserJet P2015 Series\"\n", "HP LaserJet P2015dn", ""},
    {"*ModelName: \"HP LaserJet P2015dn\"\n", "HP LaserJet P2015 Series", ""},
    {"*Manufacturer: \"HP\"\n*ModelName: \"HP LaserJet 4250\"\n", "hp LaserJet 4250", ""},
    {"*Manufacturer: \"HP\"\n*Product: \"(hp LaserJet 4250)\"\n", "",
     "MFG:Hewlett-Packard;CMD:PJL,PCLXL;MDL:HP LaserJet 4250;CLS:PRINTER;"},
    {"*Manufacturer: \"Hewlett-Packard\"\n*ModelName: \"HP LaserJet 4250\"\n", "",
     "MANUFACTURER:HP; MODEL:LaserJet 4250;"},
    {"*Manufacturer: \"Epson\"\n*ModelName: \"Epson WF-2860 Series\"\n", "EPSON WF-2860 Series",
     ""},
    {"*Manufacturer: \"Epson\"\n*ModelName: \"Epson WF-2860\"\n", "",
     "MFG:EPSON;CMD:ESCPL2;MDL:WF-2860 Series;CLS:PRINTER;DES:EPSON WF-2860 Series;"},
    {"*Manufacturer: \"Seiko Epson\"\n*ModelName: \"EPSON WF-2860\"\n", "",
     "MFG:EPSON;MDL:WF-2860;"},
    {"*Manufacturer: \"Ricoh\"\n*ModelName: \"Ricoh MP C2503\"\n", "RICOH MP C2503", ""},
    {"*Manufacturer: \"Ricoh\"\n*ModelName: \"MP-C2503\"\n", "RICOH  MP  C2503", ""},
    {"*Manufacturer: \"Ricoh\"\n*ModelName: \"Other\"\n*Product: \"(One)\"\n*Product: \"(MP "
     "C2503)\"\n",
     "RICOH MP C2503", ""},
    {"*1284DeviceID: \"MFG:Brother;CMD:PCL;MDL:HL-L2350DW series;\"\n", "Brother HL-L2350DW series",
     ""},
    {"*Manufacturer: \"Oki\"\n*ModelName: \"OKI C5650\"\n", "", "MFG:OKI DATA CORP;MDL:C5650;"},
    {"*Manufacturer: \"Xerox\"\n*ModelName: \"Xerox Phaser 6500N\"\n",
     "Xerox Phaser 6500N; Net 43.35,Controller 201104211157", ""},
    {"*Manufacturer: \"Samsung\"\n*ModelName: \"Samsung ML-2850 Series\"\n",
     "Samsung ML-2850 Series OS 1.01", "MFG:Samsung;MDL:ML-2850 Series;"},
    {"*Manufacturer: \"Konica Minolta\"\n*ModelName: \"bizhub C258\"\n",
     "KONICA MINOLTA bizhub C258", ""},
    {"*ModelName: \"Dr\xC3\xBC"
     "cker 7\"\n",
     "DR\xC3\xBC"
     "CKER 7",
     ""},
};

constexpr Pair kOtherPrinters[] = {
    {"*Manufacturer: \"HP\"\n*ModelName: \"HP LaserJet P2015 Series\"\n", "Axis OfficeBASIC", ""},
    {"*Manufacturer: \"HP\"\n*ModelName: \"HP LaserJet P2015 Series\"\n", "HP JetDirect 300X", ""},
    {"*Manufacturer: \"Ricoh\"\n*ModelName: \"Ricoh MP C2503\"\n", "RICOH MP C250", ""},
    {"*Manufacturer: \"Ricoh\"\n*ModelName: \"Ricoh MP C250 Series\"\n", "RICOH MP C2503", ""},
    {"*Manufacturer: \"Ricoh\"\n*ModelName: \"Ricoh MP C2503\"\n", "RICOH MP C250 3", ""},
    {"*Manufacturer: \"Ricoh\"\n*ModelName: \"Ricoh MP C2503\"\n", "SAVIN MP C2503", ""},
    {"*Manufacturer: \"Ricoh\"\n*ModelName: \"MP C2503\"\n", "", "MFG:SAVIN;MDL:MP C2503;"},
    {"*ModelName: \"HP LaserJet P2015\"\n", "HP LaserJet P2015dn", ""},
    {"*ModelName: \"HP LaserJet P2015dn Series\"\n", "HP LaserJet P2015", ""},
    {"*ModelName: \"HP LaserJet 1020 Series\"\n", "HP LaserJet 1020 Plus", ""},
    {"*ModelName: \"HP LaserJet Series\"\n", "HP LaserJetA", ""},
    {"*ModelName: \"HP LaserJet 1020 Series\"\n", "HP Color LaserJet 1020", ""},
    {"*Manufacturer: \"HP\"\n*ModelName: \"HP\"\n", "HP", ""},
    {"*Manufacturer: \"HP\"\n*ModelName: \"HP Series\"\n", "HP Series", ""},
    {"*ModelName: \"Zr 1-2\"\n", "Zr 12", ""},
    {"*ModelName: \"Kyocera FS-1700\"\n", "Kyocera FS-1700+", ""},
    {"*NickName: \"Zr Office 20\"\n", "Zr Office 20", ""},
    {"*ModelName: \"Zr Office 20\"\n", "", ""},
    {"*ModelName: \"()\"\n", "()", ""},
    {"*ModelName: \"\"\n", "", "MFG:;MDL:;"},
    {"*ModelName: \"Zr Office 20\"\n", "", "MDL"},
    {"*ModelName: \"Zr Office 20\"\n", "", ";;:;MDLX:Zr Office 20;DES:Zr Office 20"},
};

TEST(PrinterAgreement, OfTheNamesOfOnePrinter) {
    for (const Pair& pair : kSamePrinters) {
        EXPECT_TRUE(agree(pair)) << pair;
    }
}

TEST(PrinterAgreement, OfDifferentPrintersThereIsNone) {
    for (const Pair& pair : kOtherPrinters) {
        EXPECT_FALSE(agree(pair)) << pair;
    }
}

TEST(PrinterAgreement, AnyOfSeveralNamesIsEnough) {
    OrbCSPrinterIdentity answer;
    answer.models = {"Print server of the second floor", "Zr Office 20"};
    const auto PPD = PrinterAgreement::identityOfPPD(*parsedPPD("*ModelName: \"Zr Office 20\"\n"));
    EXPECT_TRUE(PrinterAgreement::agree(PPD, answer));
}

TEST(PrinterAgreement, ShowsAModelOfBoundedLength) {
    OrbCSPrinterIdentity identity;
    EXPECT_EQ(PrinterAgreement::shownModel(identity), "");
    identity.deviceIDs = {"MFG:Zr;MDL:Office 20;"};
    EXPECT_EQ(PrinterAgreement::shownModel(identity), "Office 20");
    identity.models = {"- -", "Zr Office 20"};
    EXPECT_EQ(PrinterAgreement::shownModel(identity), "Zr Office 20");
    identity.models = {std::string(1000, 'a')};
    EXPECT_EQ(PrinterAgreement::shownModel(identity), std::string(77, 'a') + "...");
}

TEST(PrinterAgreement, ComparesAHostileNumberOfNamesInNoTime) {
    std::string lines;
    for (int index = 0; index < 20000; ++index) {
        lines += "*Product: \"(Zr " + std::to_string(index) + ")\"\n*Manufacturer: \"Zr" +
                 std::to_string(index) + "\"\n";
    }
    const auto PPD = PrinterAgreement::identityOfPPD(*parsedPPD(lines));
    EXPECT_LE(PPD.models.size() + PPD.makers.size(), 200U);
}

TEST(PrinterAgreement, AProductOfAPPDStandsInParentheses) {
    for (const char* lines :
         {"*Product: \"(Office 20)\"\n", "*Product: \"()\"\n*Product: \"(A)\"\n",
          "*Product: \"(Office \\(20\\))\"\n"}) {
        EXPECT_TRUE(PrinterAgreement::saysProduct(*parsedPPD(lines))) << lines;
    }
    for (const char* lines : {"", "*Product: \"Office 20\"\n", "*Product: \"(Office 20\"\n",
                              "*Product: \"\"\n", "*Product: \"()\"\n", "*Product: \"( - )\"\n",
                              "*Product:\n", "*ModelName: \"(Office 20)\"\n"}) {
        EXPECT_FALSE(PrinterAgreement::saysProduct(*parsedPPD(lines))) << lines;
    }
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
