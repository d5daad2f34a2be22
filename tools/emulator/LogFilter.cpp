#include "LogFilter.h"

#include "Log.h"

#include <QFile>
#include <QStandardPaths>
#include <QStringList>

#include <mutex>

namespace vesk::emulator {

namespace {

// Whether a rule's category pattern ("name", "*name", "name*", "*name*")
// matches, as Qt matches it.
bool patternMatches(QStringView pattern, QStringView category) {
    const bool anyStart = pattern.startsWith(QLatin1Char('*'));
    const bool anyEnd = pattern.size() > 1 && pattern.endsWith(QLatin1Char('*'));
    QStringView core = pattern.mid(anyStart ? 1 : 0);
    core.chop(anyEnd ? 1 : 0);
    if (anyStart && anyEnd)
        return category.contains(core);
    if (anyStart)
        return category.endsWith(core);
    if (anyEnd)
        return category.startsWith(core);
    return category == core;
}

// The [Rules] lines of a qtlogging.ini file.
QString rulesOfFile(const QString& fileName) {
    QFile file(fileName);
    if (fileName.isEmpty() || !file.open(QIODevice::ReadOnly | QIODevice::Text))
        return QString();
    QStringList rules;
    bool inRules = false;
    for (const QString& raw : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
        const QString line = raw.trimmed();
        if (line.startsWith(QLatin1Char('[')))
            inRules = line.compare(QLatin1String("[Rules]"), Qt::CaseInsensitive) == 0;
        else if (inRules)
            rules << line;
    }
    return rules.join(QLatin1Char('\n'));
}

struct Installed {
    std::mutex mutex;
    QString rules;
    QLoggingCategory::CategoryFilter previous = nullptr;
};

Installed& installed() {
    static Installed instance;
    return instance;
}

void filter(QLoggingCategory* category) {
    Installed& state = installed();
    const QLatin1String name(category->categoryName());
    // By name: Qt calls the filter under the lock that a category's first
    // use takes, so touching lcEmulator() here could wait for itself.
    if (name == QLatin1String(emulatorCategoryName) ||
        name == QLatin1String(emulatorBodyCategoryName)) {
        QString rules;
        {
            const std::lock_guard<std::mutex> lock(state.mutex);
            rules = state.rules;
        }
        const LogLevels levels = emulatorLogLevels(rules, QString(name));
        category->setEnabled(QtDebugMsg, levels.debug);
        category->setEnabled(QtInfoMsg, levels.info);
        category->setEnabled(QtWarningMsg, levels.warning);
        category->setEnabled(QtCriticalMsg, levels.critical);
        return;
    }
    QLoggingCategory::CategoryFilter previous = nullptr;
    {
        const std::lock_guard<std::mutex> lock(state.mutex);
        previous = state.previous;
    }
    if (previous)
        previous(category);
}

} // namespace

LogLevels emulatorLogLevels(const QString& rules, QStringView category) {
    LogLevels levels;
    const QString text = QString(rules).replace(QLatin1Char(';'), QLatin1Char('\n'));
    for (const QString& raw : text.split(QLatin1Char('\n'))) {
        const QString line = raw.trimmed();
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (equals <= 0)
            continue;
        QString pattern = line.left(equals).trimmed();
        const QString value = line.mid(equals + 1).trimmed();
        if (value != QLatin1String("true") && value != QLatin1String("false"))
            continue;
        const bool on = value == QLatin1String("true");
        bool* only = nullptr; // one level, or all of them when null
        for (auto [suffix, level] :
             {std::pair{".debug", &levels.debug}, std::pair{".info", &levels.info},
              std::pair{".warning", &levels.warning}, std::pair{".critical", &levels.critical}}) {
            if (pattern.endsWith(QLatin1String(suffix))) {
                pattern.chop(qsizetype(qstrlen(suffix)));
                only = level;
                break;
            }
        }
        if (pattern.isEmpty() || pattern == QLatin1String("*") ||
            !patternMatches(pattern, category))
            continue;
        if (only)
            *only = on;
        else
            levels.debug = levels.info = levels.warning = levels.critical = on;
    }
    return levels;
}

QString processLoggingRules() {
    QStringList parts;
    parts << rulesOfFile(QStandardPaths::locate(QStandardPaths::GenericConfigLocation,
                                                QStringLiteral("QtProject/qtlogging.ini")));
    parts << rulesOfFile(qEnvironmentVariable("QT_LOGGING_CONF"));
    parts << qEnvironmentVariable("QT_LOGGING_RULES");
    parts.removeAll(QString());
    return parts.join(QLatin1Char('\n'));
}

QLoggingCategory::CategoryFilter installEmulatorLogFilter(const QString& rules) {
    Installed& state = installed();
    {
        const std::lock_guard<std::mutex> lock(state.mutex);
        state.rules = rules;
    }
    // Qt calls the filter at once for every category, under its own lock.
    const QLoggingCategory::CategoryFilter previous = QLoggingCategory::installFilter(filter);
    if (previous != filter) {
        const std::lock_guard<std::mutex> lock(state.mutex);
        state.previous = previous;
    }
    return previous;
}

} // namespace vesk::emulator
