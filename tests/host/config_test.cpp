#include <morva/Config.h>

#include "support/LogCapture.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

namespace {

// Points $MORVA_CONFIG at an INI file with the given text for the life of
// the scope.
class ConfigFile {
public:
    explicit ConfigFile(const char* text) {
        path_ = dir_.filePath(QStringLiteral("till.ini")).toStdString();
        std::ofstream(path_) << text;
        setenv("MORVA_CONFIG", path_.c_str(), 1);
    }
    ~ConfigFile() { unsetenv("MORVA_CONFIG"); }
    const std::string& path() const { return path_; }

private:
    QTemporaryDir dir_;
    std::string path_;
};

TEST(Config, ReadsSectionColonNameFromTheIniFile) {
    const ConfigFile file("[Vesk.disc]\nurl=http://backoffice:8080/disc/\n"
                          "[Network]\ntimeoutMs=3000\n");
    const Config config;
    EXPECT_EQ(config.value("Vesk.disc:url"), QStringLiteral("http://backoffice:8080/disc/"));
    EXPECT_EQ(config.value("Network:timeoutMs"), QStringLiteral("3000"));
    EXPECT_EQ(config.fileName(), QString::fromStdString(file.path()));
}

TEST(Config, MissingKeyGivesTheDefault) {
    const ConfigFile file("[Vesk.disc]\nurl=http://x/\n");
    const Config config;
    EXPECT_EQ(config.value("Vesk.loyalty:url", "fallback"), QStringLiteral("fallback"));
    EXPECT_EQ(config.value("Vesk.disc:other"), QString());
    EXPECT_TRUE(config.value("Vesk.disc:other").isNull());
}

TEST(Config, KeyWithoutSectionIsAnEntryOutsideAnySection) {
    const ConfigFile file("top=1\n[S]\nname=2\n");
    const Config config;
    EXPECT_EQ(config.value("top"), QStringLiteral("1"));
    EXPECT_EQ(config.value("S:name"), QStringLiteral("2"));
}

TEST(Config, ValueWithCommasIsKeptAsWritten) {
    const ConfigFile file("[S]\nlist=a,b,c\n");
    EXPECT_EQ(Config().value("S:list"), QStringLiteral("a,b,c"));
}

TEST(Config, WithoutTheVariableEveryKeyGivesItsDefault) {
    unsetenv("MORVA_CONFIG");
    const Config config;
    EXPECT_EQ(config.value("Vesk.disc:url", "d"), QStringLiteral("d"));
    EXPECT_TRUE(config.fileName().isEmpty());
}

TEST(Config, MissingFileGivesDefaults) {
    setenv("MORVA_CONFIG", "/nonexistent/till.ini", 1);
    const Config config;
    unsetenv("MORVA_CONFIG");
    EXPECT_EQ(config.value("Vesk.disc:url", "d"), QStringLiteral("d"));
}

TEST(Config, SetValueOverridesForThisProcessAndLeavesTheFileAlone) {
    const ConfigFile file("[Vesk.disc]\nurl=http://old/\n");
    Config config;
    config.setValue("Vesk.disc:url", "http://new/");
    EXPECT_EQ(config.value("Vesk.disc:url"), QStringLiteral("http://new/"));
    std::ifstream in(file.path());
    const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_EQ(text, "[Vesk.disc]\nurl=http://old/\n");
}

TEST(Config, SettingsKeyMapsTheFirstColonToAGroup) {
    EXPECT_EQ(Config::settingsKey("A:b"), QStringLiteral("A/b"));
    EXPECT_EQ(Config::settingsKey("b"), QStringLiteral("b"));
    EXPECT_EQ(Config::settingsKey("A:b:c"), QStringLiteral("A/b:c"));
}

TEST(ConfigSingleton, IsEmptyUntilMadeThenStaysTheSame) {
    Config* previous = Singleton<Config>::instance;
    Singleton<Config>::instance = nullptr;
    Config* made = Singleton<Config>::getInstance();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(Singleton<Config>::getInstance(), made);
    delete made;
    Singleton<Config>::instance = previous;
}

TEST(Config, FileThatDoesNotExistIsWarnedAboutAndEveryKeyTakesItsDefault) {
    QTemporaryDir dir;
    const QString missing = dir.filePath(QStringLiteral("missing.ini"));
    setenv("MORVA_CONFIG", missing.toLocal8Bit().constData(), 1);
    vesk::test::LogCapture log;

    const Config config;
    unsetenv("MORVA_CONFIG");

    EXPECT_EQ(config.value("Network:timeoutMs", "15000"), QStringLiteral("15000"));
    ASSERT_EQ(log.lines().size(), 1) << log.all();
    EXPECT_EQ(log.lines().first(),
              QStringLiteral("morva.config warning: $MORVA_CONFIG names \"%1\", which does not "
                             "exist; every key takes its default")
                  .arg(missing));
}

TEST(Config, FolderInsteadOfAFileIsWarnedAbout) {
    QTemporaryDir dir;
    setenv("MORVA_CONFIG", dir.path().toLocal8Bit().constData(), 1);
    vesk::test::LogCapture log;

    const Config config;
    unsetenv("MORVA_CONFIG");

    ASSERT_EQ(log.lines().size(), 1) << log.all();
    EXPECT_EQ(log.lines().first(),
              QStringLiteral("morva.config warning: $MORVA_CONFIG names \"%1\", which is not a "
                             "file; every key takes its default")
                  .arg(dir.path()));
}

TEST(Config, ReadableFileIsReadWithoutAWarning) {
    const ConfigFile file("[Network]\ntimeoutMs=3000\n");
    vesk::test::LogCapture log;

    const Config config;

    EXPECT_EQ(config.value("Network:timeoutMs"), QStringLiteral("3000"));
    EXPECT_EQ(log.all(), "");
}

} // namespace
