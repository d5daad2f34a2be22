#include "Log4Qt.h"

#include <QHash>
#include <QMutex>

namespace Log4Qt {

Logger::Logger(const QString& name)
    : name_(name.toUtf8())
    , category_(name_.constData(), QtWarningMsg) {}

QString Logger::name() const {
    return QString::fromUtf8(name_);
}
const QLoggingCategory& Logger::category() const {
    return category_;
}

bool Logger::isDebugEnabled() const {
    return category_.isDebugEnabled();
}
bool Logger::isInfoEnabled() const {
    return category_.isInfoEnabled();
}

void Logger::debug(const QString& message) const {
    if (category_.isDebugEnabled())
        QMessageLogger().debug(category_).noquote() << message;
}

void Logger::info(const QString& message) const {
    if (category_.isInfoEnabled())
        QMessageLogger().info(category_).noquote() << message;
}

void Logger::warn(const QString& message) const {
    if (category_.isWarningEnabled())
        QMessageLogger().warning(category_).noquote() << message;
}

void Logger::error(const QString& message) const {
    if (category_.isCriticalEnabled())
        QMessageLogger().critical(category_).noquote() << message;
}

Logger* LogManager::logger(const QString& name, const QString& /*factory*/) {
    // Loggers live until the process ends: hosts keep raw pointers to them.
    static QMutex mutex;
    static auto* loggers = new QHash<QString, Logger*>();
    const QMutexLocker lock(&mutex);
    Logger*& logger = (*loggers)[name];
    if (!logger)
        logger = new Logger(name);
    return logger;
}

} // namespace Log4Qt
