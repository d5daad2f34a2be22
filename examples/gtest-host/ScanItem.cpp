#include "ScanItem.h"

#include <vesk/vesk.h>

namespace till {

ScannedLine scanItem(const QString& sectionId, const QString& barcode) {
    vesk::sales::ItemInfoRequest request;
    request.sectionId = sectionId;
    request.barcode = barcode;
    ScannedLine line;
    try {
        const vesk::sales::ItemInfoResponse item =
            vesk::sales::Api::getInstance()->itemInfo(request).response();
        line.state = ScannedLine::State::Priced;
        line.name = item.name;
        line.price = item.price;
    } catch (const vesk::NetworkException& e) {
        line.state = ScannedLine::State::Offline;
        line.message = QString::fromUtf8(e.what());
    } catch (const vesk::Exception& e) {
        line.state = ScannedLine::State::Refused;
        line.message = QStringLiteral("%1 (%2)").arg(QString::fromUtf8(e.what())).arg(e.code());
    }
    return line;
}

} // namespace till
