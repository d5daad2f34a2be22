// Secret masking of any body, address and value: it must never fail, and
// nothing it shows may carry a PIN that the input put under a PIN key.

#include <masking/SecretMasking.h>

#include <QJsonDocument>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray body(reinterpret_cast<const char*>(data), qsizetype(size));
    vesk::masking::maskSecrets(body);
    vesk::masking::excerpt(body, 200);
    vesk::masking::maskUrl(QUrl(QString::fromUtf8(body)));
    const QVariant value = QJsonDocument::fromJson(body).toVariant();
    vesk::masking::maskedValue(u"name", value);

    // A PIN of ten digits no other part of the body has is never shown.
    const QByteArray pin = "9081726354";
    if (!body.contains(pin)) {
        const QByteArray secret = "{\"PinCode\": \"" + pin + "\", \"x\": " + body + "}";
        if (vesk::masking::maskSecrets(secret).contains(QString::fromLatin1(pin)) ||
            vesk::masking::excerpt(secret, 1000).contains(QString::fromLatin1(pin)))
            __builtin_trap();
    }
    return 0;
}
