#pragma once

#include <QByteArray>
#include <QLoggingCategory>
#include <QString>

// The host logs through Log4Qt. The stand-in keeps Log4Qt's names and writes
// through Qt's logging categories.
namespace Log4Qt {

/// A named logger of the host. The stand-in writes through the Qt logging
/// category of the same name, so that QT_LOGGING_RULES turns each logger on
/// and off ("veskdisc.info=true", "vesk*.debug=true", ...). Loggers are quiet
/// below warnings unless a rule enables them: a till's output is not filled
/// with one line per call by default. Its functions may be called from any
/// thread.
class Logger {
public:
    /// A logger writing to the category `name`; hosts get theirs from
    /// LogManager::logger().
    explicit Logger(const QString& name);
    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;

    /// The logger's name, which is its category's.
    QString name() const;
    /// The Qt logging category that the logger writes to.
    const QLoggingCategory& category() const;

    /// Whether debug lines are written (a rule enabled them).
    bool isDebugEnabled() const;
    /// Whether info lines are written (a rule enabled them).
    bool isInfoEnabled() const;

    /// Writes `message` at debug level, if enabled.
    void debug(const QString& message) const;
    /// Writes `message` at info level, if enabled.
    void info(const QString& message) const;
    /// Writes `message` as a warning (shown unless a rule turns it off).
    void warn(const QString& message) const;
    /// Writes `message` as an error (Qt's critical level).
    void error(const QString& message) const;

private:
    const QByteArray name_; // QLoggingCategory keeps a pointer to this text
    QLoggingCategory category_;
};

/// Where a host gets its loggers.
class LogManager {
public:
    /// The logger of that name, made on first use and kept for the life of the
    /// process; the same name always gives the same logger. Thread-safe.
    /// `factory` is accepted for the host's signature and not used.
    static Logger* logger(const QString& name, const QString& factory = QString());
};

} // namespace Log4Qt
