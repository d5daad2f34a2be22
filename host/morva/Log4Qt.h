#pragma once

#include <QByteArray>
#include <QLoggingCategory>
#include <QString>

// The host logs through Log4Qt. The stand-in keeps Log4Qt's names and writes
// through Qt's logging categories, so that QT_LOGGING_RULES turns each named
// logger on and off ("veskdisc.info=true", "vesk*.debug=true", ...).
// Loggers are quiet below warnings unless a rule enables them: a till's
// output is not filled with one line per call by default.
namespace Log4Qt {

class Logger {
public:
    explicit Logger(const QString& name);
    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;

    QString name() const;
    const QLoggingCategory& category() const;

    bool isDebugEnabled() const;
    bool isInfoEnabled() const;

    void debug(const QString& message) const;
    void info(const QString& message) const;
    void warn(const QString& message) const;
    void error(const QString& message) const;

private:
    const QByteArray name_; // QLoggingCategory keeps a pointer to this text
    QLoggingCategory category_;
};

class LogManager {
public:
    // The logger of that name, made on first use and kept for the life of the
    // process; the same name always gives the same logger. Thread-safe.
    static Logger* logger(const QString& name, const QString& factory = QString());
};

} // namespace Log4Qt
