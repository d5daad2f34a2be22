#pragma once

#include "Singleton.h"

#include <QHash>
#include <QString>

// The host's configuration. Keys are written "Section:name", which is the
// entry `name` under `[Section]` of an INI file; a key without a section names
// an entry outside any section.
//
// The stand-in reads the INI file named by $MORVA_CONFIG once, when it is
// made. setValue() changes the value for this process only; the file is never
// written, as a till's configuration belongs to its administrator.
class Config {
public:
    Config();
    virtual ~Config();

    virtual QString value(const QString& key, const QString& defaultValue = QString()) const;
    virtual void setValue(const QString& key, const QString& value);

    // The file that was read, empty when $MORVA_CONFIG was not set.
    QString fileName() const;

    // The INI file's key ("Section/name") of a configuration key ("Section:name").
    static QString settingsKey(const QString& key);

private:
    QString fileName_;
    QHash<QString, QString> values_; // by settingsKey()
};

template <>
Config* Singleton<Config>::instance;
