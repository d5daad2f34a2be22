#pragma once

#include "VeskProcess.h"

#include <emulator/Emulator.h>

#include <gtest/gtest.h>

#include <memory>

namespace vesk::cli::test {

// An emulator with the shipped seed, fresh for each test, on a port of the
// system's choosing; vesk is pointed at it with --url.
class EmulatorTest : public ::testing::Test {
protected:
    void SetUp() override;

    // --url disc=... --url loyalty=... --url sales=...
    QStringList urlOptions() const;
    QString serviceUrl(const QString& service) const { return emulator_->serviceUrl(service); }
    quint16 port() const { return emulator_->port(); }

    // vesk call SERVICE OPERATION REQUEST with the emulator's URLs.
    VeskRun call(const QString& service, const QString& operation, const QString& request) const;
    // The same, expected to succeed silently; its response object.
    QJsonObject respond(const QString& service, const QString& operation,
                        const QString& request) const;

    // Identifies a loyalty card; its token.
    QString identify(const QString& card) const;

private:
    std::unique_ptr<emulator::Emulator> emulator_;
};

// The seed's goods and cards.
inline const QString coffee = QStringLiteral("4601234000017");
inline const QString mug = QStringLiteral("4601234000024");
inline const QString teapot = QStringLiteral("4601234000048");
inline const QString goldCard = QStringLiteral("2775000000011");
inline const QString silverCard = QStringLiteral("2775000000028");

} // namespace vesk::cli::test
