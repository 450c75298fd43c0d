#include "backends/snmp/SNMPRows.h"

#include <gtest/gtest.h>

#include <string>

namespace TkPPDUpdating::Testing {
namespace {

using namespace PrinterMIB;

TEST(SNMPRows, GivesACellByItsColumnAndRow) {
    SNMPRows rows;
    rows.set(prtInputType, {1, 2}, 3);
    rows.set(prtInputName, {1, 2}, "Tray 2");
    EXPECT_EQ(rows.number(prtInputType, {1, 2}), 3);
    EXPECT_EQ(rows.text(prtInputName, {1, 2}), "Tray 2");
    EXPECT_EQ(rows.number(prtInputType, {1, 1}), std::nullopt);
    EXPECT_EQ(rows.number(prtInputStatus, {1, 2}), std::nullopt);
    EXPECT_EQ(rows.size(), 2U);
}

TEST(SNMPRows, ACellOfAnotherSyntaxIsNone) {
    SNMPRows rows;
    rows.set(prtInputType, {1, 2}, "3");
    rows.set(prtInputName, {1, 2}, 3);
    EXPECT_EQ(rows.number(prtInputType, {1, 2}), std::nullopt);
    EXPECT_EQ(rows.text(prtInputName, {1, 2}), std::nullopt);
}

TEST(SNMPRows, ARowWithTooManyOrTooFewNumbersIsLeftOut) {
    SNMPRows rows;
    rows.set(prtInputType, {1}, 3);
    rows.set(prtInputType, {1, 2, 3}, 3);
    rows.set(prtInputType, {}, 3);
    rows.set(hrDeviceDescr, {1, 1}, "x");
    EXPECT_EQ(rows.size(), 0U);
    rows.set(hrDeviceDescr, {1}, "x");
    EXPECT_EQ(rows.size(), 1U);
}

TEST(SNMPRows, TheFirstCellOfAPlaceStays) {
    SNMPRows rows;
    rows.set(prtInputType, {1, 2}, 3);
    rows.set(prtInputType, {1, 2}, 4);
    EXPECT_EQ(rows.number(prtInputType, {1, 2}), 3);
    EXPECT_EQ(rows.size(), 1U);
}

TEST(SNMPRows, ATextLosesThePaddingBehindIt) {
    SNMPRows rows;
    rows.set(prtInputName, {1, 1}, std::string("Tray 1 \0\0 ", 10));
    rows.set(prtInputName, {1, 2}, std::string("\0\0", 2));
    rows.set(prtInputName, {1, 3}, std::string(" a\0b", 4));
    EXPECT_EQ(rows.text(prtInputName, {1, 1}), "Tray 1");
    EXPECT_EQ(rows.text(prtInputName, {1, 2}), "");
    EXPECT_EQ(rows.text(prtInputName, {1, 3}), std::string_view(" a\0b", 4));
}

TEST(SNMPRows, ListsTheRowsOfSeveralColumnsOnceAndInOrder) {
    SNMPRows rows;
    rows.set(prtInputType, {1, 10}, 3);
    rows.set(prtInputType, {1, 2}, 3);
    rows.set(prtInputName, {1, 2}, "a");
    rows.set(prtInputName, {1, 3}, "b");
    const std::vector<SNMPRows::Row> expected = {{1, 2}, {1, 3}, {1, 10}};
    EXPECT_EQ(rows.rowsOf({prtInputType, prtInputName}), expected);
    EXPECT_TRUE(rows.rowsOf({prtInputStatus}).empty());
}

TEST(SNMPRows, KnowsWhichColumnWasCutShort) {
    SNMPRows rows;
    rows.setCutShort(prtInputType);
    EXPECT_FALSE(rows.isWhole(prtInputType));
    EXPECT_TRUE(rows.isWhole(prtInputName));
}

}  // namespace
}  // namespace TkPPDUpdating::Testing
