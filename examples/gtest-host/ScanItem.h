#pragma once

#include <QString>

namespace till {

// What the till shows for a scanned barcode.
struct ScannedLine {
    enum class State {
        Priced,  // the back office knows the item: name and price
        Refused, // the back office answered with an error: its message
        Offline  // the back office could not be reached: sell offline
    };
    State state = State::Offline;
    QString name;
    double price = 0;
    QString message;
};

// Looks the barcode up in the store section's stock through the sales service.
ScannedLine scanItem(const QString& sectionId, const QString& barcode);

} // namespace till
