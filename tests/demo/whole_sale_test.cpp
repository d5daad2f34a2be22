// The whole sale of the demo, against an emulator in this process.

#include <demo/WholeSale.h>

#include <gtest/gtest.h>

namespace vesk::demo::test {
namespace {

const char* const receipt = R"(============================================
RECEIPT  store S01                  CHQ-1001
--------------------------------------------
1 Coffee beans, 1 kg
    2 x 1200.00                      2400.00
    5% for GOLD card holders         -120.00
    Coffee and mug: 10% off the set  -120.00
    3% off when paying by bank card   -57.29
2 Ceramic mug, 300 ml
    1 x 450.00                        450.00
    5% for GOLD card holders          -22.50
    Coffee and mug: 10% off the set   -45.00
    3% off when paying by bank card   -10.15
3 Green tea, 100 g
    1 x 300.00                        300.00
    5% for GOLD card holders          -15.00
    3% off when paying by bank card    -7.56
--------------------------------------------
Subtotal                             3150.00
Discounts                            -397.50
TOTAL                                2752.50
Paid by bank card                    2425.00
Paid with bonuses                     327.50
--------------------------------------------
Loyalty card ****0011           Anna Petrova
Bonuses accrued                        48.50
Bonus balance                         221.00
Parking P-000123: 2 free hours
Parking to pay                        100.00
--------------------------------------------
Thank you, Anna Petrova! Bonuses paid:
327.50, accrued: 48.50. Balance: 221.00.
============================================
)";

TEST(WholeSaleTest, EveryStepBehavesAndTheReceiptIsPrinted) {
    Options options;
    options.port = 0;
    QString output;
    QTextStream out(&output);
    const int result = runWholeSale(options, out);
    out.flush();
    EXPECT_EQ(result, 0) << output.toStdString();
    const qsizetype start = output.indexOf(QStringLiteral("====="));
    const qsizetype end = output.lastIndexOf(QStringLiteral("=====\n"));
    ASSERT_GE(start, 0) << output.toStdString();
    EXPECT_EQ(output.mid(start, end + 6 - start).toStdString(), receipt);
    EXPECT_TRUE(output.endsWith(QStringLiteral("\nEvery step behaved as the seed says.\n")))
        << output.toStdString();
}

} // namespace
} // namespace vesk::demo::test
