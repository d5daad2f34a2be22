// A till looks up a scanned item through the sales service:
//
//     typed-host SALES_URL BARCODE
//
// prints the item's name and price, or the service's refusal (exit 2) or the
// network failure (exit 3).

#include "ScannedItem.h"

#include <vesk/vesk.h>

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: typed-host SALES_URL BARCODE\n");
        return 64;
    }
    // The client reads its base URL once, when it is made: set it before.
    Singleton<Config>::getInstance()->setValue(QStringLiteral("Vesk.sales:url"),
                                               QString::fromLocal8Bit(argv[1]));

    till::ScannedItem scanned;
    scanned.barcode = QString::fromLocal8Bit(argv[2]);
    scanned.count = 1;
    // The till's record goes through the same strategies as the library's.
    const QVariantMap scan = serder::serialize(scanned).toMap();
    std::printf("scanned %s x%d\n", qPrintable(scan.value(QStringLiteral("barcode")).toString()),
                scan.value(QStringLiteral("count")).toInt());

    vesk::sales::ItemInfoRequest request;
    request.barcode = scanned.barcode;
    try {
        // Preparing the call sends nothing; response() performs it.
        const vesk::sales::ItemInfoResponse item =
            vesk::sales::Api::getInstance()->itemInfo(request).response();
        std::printf("%s: %s, %.2f\n", qPrintable(item.barcode), qPrintable(item.name), item.price);
        return 0;
    } catch (const vesk::NetworkException& e) {
        std::fprintf(stderr, "no reply: %s\n", e.what());
        return 3;
    } catch (const vesk::Exception& e) {
        std::fprintf(stderr, "refused (%d): %s\n", e.code(), e.what());
        return 2;
    }
}
