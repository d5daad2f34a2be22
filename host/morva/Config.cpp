#include "Config.h"

#include "Log4Qt.h"

#include <QFileInfo>
#include <QSettings>
#include <QStringList>

template <>
Config* Singleton<Config>::instance = nullptr;

Config::Config() {
    fileName_ = qEnvironmentVariable("MORVA_CONFIG");
    if (fileName_.isEmpty())
        return;
    const Log4Qt::Logger* log = Log4Qt::LogManager::logger(QStringLiteral("morva.config"));
    const QFileInfo file(fileName_);
    if (!file.isFile() || !file.isReadable()) {
        log->warn(QStringLiteral("$MORVA_CONFIG names \"%1\", which %2; every key takes its "
                                 "default")
                      .arg(fileName_, !file.exists()   ? QStringLiteral("does not exist")
                                      : !file.isFile() ? QStringLiteral("is not a file")
                                                       : QStringLiteral("cannot be read")));
        return;
    }
    const QSettings settings(fileName_, QSettings::IniFormat);
    if (settings.status() != QSettings::NoError) {
        log->warn(QStringLiteral("$MORVA_CONFIG names \"%1\", which is not a readable INI file; "
                                 "the keys read before the fault are used, the others take their "
                                 "defaults")
                      .arg(fileName_));
    }
    for (const QString& key : settings.allKeys()) {
        const QVariant value = settings.value(key);
        // An unquoted comma makes QSettings read a list; the text is what was meant.
        values_.insert(key, value.userType() == QMetaType::QStringList
                                ? value.toStringList().join(QLatin1Char(','))
                                : value.toString());
    }
}

Config::~Config() = default;

QString Config::value(const QString& key, const QString& defaultValue) const {
    return values_.value(settingsKey(key), defaultValue);
}

void Config::setValue(const QString& key, const QString& value) {
    values_.insert(settingsKey(key), value);
}

QString Config::fileName() const {
    return fileName_;
}

QString Config::settingsKey(const QString& key) {
    const qsizetype colon = key.indexOf(QLatin1Char(':'));
    if (colon < 0)
        return key;
    return key.left(colon) + QLatin1Char('/') + key.mid(colon + 1);
}
