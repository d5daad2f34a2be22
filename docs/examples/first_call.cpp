// The first typed call of a till: the item behind a barcode, from the sales
// service whose base URL the configuration names.
//
//     MORVA_CONFIG=/etc/till/vesk.ini first-call 4601234000017
//
// Exit 0: the item; 2: the service refused; 3: no answer.
#include <vesk/vesk.h>

#include <cstdio>

int main(int argc, char** argv) {
    vesk::sales::ItemInfoRequest request;
    request.barcode = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("4601234000017");
    try {
        // itemInfo() only prepares the call; response() performs it.
        const vesk::sales::ItemInfoResponse item =
            vesk::sales::Api::getInstance()->itemInfo(request).response();
        std::printf("%s: %s, %.2f\n", qPrintable(item.barcode), qPrintable(item.name), item.price);
        return 0;
    } catch (const vesk::NetworkException& e) { // a NetworkException is also a vesk::Exception
        const bool nothingSent =
            vesk::lastCallOutcome().reached() == vesk::CallOutcome::Reached::No;
        std::fprintf(stderr, "no answer (%s): %s\n",
                     nothingSent ? "nothing was sent" : "the service may have it", e.what());
        return 3;
    } catch (const vesk::Exception& e) {
        std::fprintf(stderr, "refused (%d): %s\n", e.code(), e.what());
        return 2;
    }
}
