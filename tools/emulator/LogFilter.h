#pragma once

#include <QLoggingCategory>
#include <QString>
#include <QStringView>

namespace vesk::emulator {

// The levels of one logging category that are on.
struct LogLevels {
    bool debug = false;
    bool info = true;
    bool warning = true;
    bool critical = true;

    bool operator==(const LogLevels& other) const {
        return debug == other.debug && info == other.info && warning == other.warning &&
               critical == other.critical;
    }
};

// What logging rules (Qt's syntax, one rule a line or separated by ';') make
// of one of the emulator's categories: debug off and info and above on, then
// every rule that names the category, in order, the later winning. A rule
// for every category ("*", "*.info") does not name it: rules written for the
// client library's loggers ("*=false", "veskdisc.debug=true") never silence
// the emulator, while "vesk.emulator.body.debug=true" or "vesk*=false" do
// what they say.
LogLevels emulatorLogLevels(const QString& rules, QStringView category);

// The rules that Qt applies in this process, in Qt's order: the [Rules] of
// QtProject/qtlogging.ini in the user's configuration, of the file that
// QT_LOGGING_CONF names, then QT_LOGGING_RULES.
QString processLoggingRules();

// For a program that serves the emulator: a category filter that sets the
// emulator's categories as emulatorLogLevels(rules) says and leaves every
// other category to the filter before it, which it returns.
QLoggingCategory::CategoryFilter installEmulatorLogFilter(const QString& rules);

} // namespace vesk::emulator
