#include "Bench.h"

#include <emulator/AdminClient.h>

#include <vesk/vesk.h>

namespace vesk::demo {
namespace {

const char* const discPath = "/api/axapta/ExchangeData_Disc/";
const char* const loyaltyPath = "/api/axapta/ExchangeData_Loyalty/";
const char* const salesPath = "/api/axapta/ExchangeData_Sales/";

QString serviceUrl(const QString& base, const char* path) {
    return base + QLatin1String(path);
}

// The clients are made once per process, with the base URLs configured then.
// The first run configures them; a later run finds them made already and
// must serve where they point.
std::optional<QUrl> madeClientsAddress() {
    if (!Singleton<disc::Api>::instance && !Singleton<loyalty::Api>::instance &&
        !Singleton<sales::Api>::instance)
        return std::nullopt;
    return disc::Api::getInstance()->baseUrl();
}

bool clientsPointAt(const QString& base) {
    return disc::Api::getInstance()->baseUrl() == QUrl(serviceUrl(base, discPath)) &&
           loyalty::Api::getInstance()->baseUrl() == QUrl(serviceUrl(base, loyaltyPath)) &&
           sales::Api::getInstance()->baseUrl() == QUrl(serviceUrl(base, salesPath));
}

} // namespace

std::optional<Bench> openBench(const Options& options, QTextStream& out) {
    QString host = options.host;
    quint16 port = options.port;
    const std::optional<QUrl> made = madeClientsAddress();
    if (made && !options.external) {
        // Serve where the clients already point.
        host = made->host();
        port = static_cast<quint16>(made->port());
    }

    Bench bench;
    std::unique_ptr<emulator::Emulator>& inProcess = bench.inProcess;
    QString& base = bench.base;
    bool& fresh = bench.fresh;
    if (options.external) {
        base = QStringLiteral("http://%1:%2").arg(host).arg(port);
        out << "Emulator expected at " << base << "\n";
        // Earlier runs spent the seed's bonuses and stock: start from the seed again.
        const emulator::AdminClient::Result reset = emulator::AdminClient(base).reset();
        fresh = reset.kind == emulator::AdminClient::Result::Kind::Done;
        if (fresh)
            out << "Emulator reset to its seed\n";
        else
            out << "Emulator not reset (" << reset.message
                << "); its numbers are checked loosely\n";
    } else {
        emulator::Options emulatorOptions;
        emulatorOptions.host = host;
        emulatorOptions.port = port;
        inProcess = std::make_unique<emulator::Emulator>(emulatorOptions);
        QString error;
        if (!inProcess->start(&error)) {
            out << "FAILED: cannot start the emulator: " << error
                << "\n(is one running already? then run with --external)\n";
            out.flush();
            return std::nullopt;
        }
        base = inProcess->baseUrl();
        out << "Emulator started in this process at " << base << " with the shipped seed\n";
    }

    if (!made) {
        Config* config = Singleton<Config>::getInstance();
        config->setValue(QStringLiteral("Vesk.disc:url"), serviceUrl(base, discPath));
        config->setValue(QStringLiteral("Vesk.loyalty:url"), serviceUrl(base, loyaltyPath));
        config->setValue(QStringLiteral("Vesk.sales:url"), serviceUrl(base, salesPath));
    }
    if (!clientsPointAt(base)) {
        out << "FAILED: the service clients of this process were made for "
            << disc::Api::getInstance()->baseUrl().toString() << " and friends, not " << base
            << "\n";
        out.flush();
        return std::nullopt;
    }
    out << "disc     " << disc::Api::getInstance()->baseUrl().toString() << "\n"
        << "loyalty  " << loyalty::Api::getInstance()->baseUrl().toString() << "\n"
        << "sales    " << sales::Api::getInstance()->baseUrl().toString() << "\n";

    return bench;
}

} // namespace vesk::demo
