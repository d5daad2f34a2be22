#pragma once

#include <QLoggingCategory>
#include <QStringList>

#include <mutex>
#include <string>

namespace vesk::test {

// Collects what Qt's logging writes while it lives, one line each as
// "<category> <level>: <message>", with the given filter rules in force; puts
// the previous handler back and clears the rules after.
class LogCapture {
public:
    explicit LogCapture(const QString& rules = QString()) {
        {
            const std::lock_guard<std::mutex> lock(mutex());
            captured().clear();
        }
        previous_ = qInstallMessageHandler(&LogCapture::handle);
        QLoggingCategory::setFilterRules(rules);
    }
    ~LogCapture() {
        QLoggingCategory::setFilterRules(QString());
        qInstallMessageHandler(previous_);
    }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    QStringList lines() const {
        const std::lock_guard<std::mutex> lock(mutex());
        return captured();
    }
    std::string all() const { return lines().join(QLatin1Char('\n')).toStdString(); }

private:
    static std::mutex& mutex() {
        static std::mutex instance;
        return instance;
    }
    static QStringList& captured() {
        static QStringList instance;
        return instance;
    }
    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& message) {
        static const char* const levels[] = {"debug", "warning", "critical", "fatal", "info"};
        const std::lock_guard<std::mutex> lock(mutex());
        captured() << QStringLiteral("%1 %2: %3")
                          .arg(QString::fromUtf8(context.category ? context.category : "-"),
                               QString::fromLatin1(levels[type]), message);
    }

    QtMessageHandler previous_ = nullptr;
};

} // namespace vesk::test
