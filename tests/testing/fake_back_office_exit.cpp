// A host's test program that installs the double, calls through it and
// ends: nothing may be printed, at the end least of all.

#include <vesk/testing/FakeBackOffice.h>
#include <vesk/vesk.h>

#include <cstdio>

int main() {
    vesk::testing::FakeBackOffice& fake = vesk::testing::FakeBackOffice::install();
    vesk::sales::ItemInfoResponse milk;
    milk.name = QStringLiteral("Milk");
    fake.on(QStringLiteral("itemInfo")).reply(milk);

    const auto answer =
        vesk::sales::Api::getInstance()->itemInfo(vesk::sales::ItemInfoRequest()).response();
    if (answer.name != QStringLiteral("Milk")) {
        std::fprintf(stderr, "the scripted reply did not arrive: \"%s\"\n",
                     qPrintable(answer.name));
        return 1;
    }
    return 0;
}
