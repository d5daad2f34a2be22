#pragma once

#include "Singleton.h"

#include <QHash>
#include <QString>

/// The host's configuration. Keys are written "Section:name", which is the
/// entry `name` under `[Section]` of an INI file; a key without a section names
/// an entry outside any section.
///
/// The stand-in reads the INI file named by $MORVA_CONFIG once, when it is
/// made. setValue() changes the value for this process only; the file is never
/// written, as a till's configuration belongs to its administrator.
///
/// The process has one, Singleton<Config>::getInstance(), made on first use.
/// value() may be called from any thread; setValue() must not run while
/// another thread reads or writes the configuration. The library and the
/// transport read their keys once, when a service's client is made.
class Config {
public:
    /// Reads the INI file named by $MORVA_CONFIG, if set. A name that is no
    /// readable file is warned about (logger "morva.config"), and every key
    /// then takes its default.
    Config();
    virtual ~Config();

    /// The value of `key` ("Section:name"), or `defaultValue` when the file
    /// has no such entry.
    virtual QString value(const QString& key, const QString& defaultValue = QString()) const;
    /// Sets `key` for this process only; the file is not written.
    virtual void setValue(const QString& key, const QString& value);

    /// The file that was read, empty when $MORVA_CONFIG was not set.
    QString fileName() const;

    /// The INI file's key ("Section/name") of a configuration key ("Section:name").
    static QString settingsKey(const QString& key);

private:
    QString fileName_;
    QHash<QString, QString> values_; // by settingsKey()
};

/// @cond
template <>
Config* Singleton<Config>::instance;
/// @endcond
