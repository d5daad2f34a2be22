#pragma once

#include <morva/Config.h>

#include <QMap>

namespace vesk::test {

// Installs a fresh Config singleton with the given values for the life of
// the scope, and puts the previous one back afterwards.
class ConfigScope {
public:
    explicit ConfigScope(const QMap<QString, QString>& values = {})
        : previous_(Singleton<Config>::instance) {
        Singleton<Config>::instance = &config_;
        for (auto it = values.begin(); it != values.end(); ++it)
            config_.setValue(it.key(), it.value());
    }
    ~ConfigScope() { Singleton<Config>::instance = previous_; }
    ConfigScope(const ConfigScope&) = delete;
    ConfigScope& operator=(const ConfigScope&) = delete;

    Config& config() { return config_; }

private:
    Config* previous_;
    Config config_;
};

} // namespace vesk::test
