#pragma once

#include "CommandLine.h"

#include <emulator/AdminClient.h>

#include <QJsonObject>
#include <QTextStream>

#include <optional>

namespace vesk::cli {

// A CALL of `vesk emulator verify`: an operation's name, then conditions on
// its body joined by "&&" ('commitCheque $.chequeId == "C-1" && $.card exists'),
// as the admin API takes it: {"operation": ..., "where": [...]}. "&&" inside
// a quoted value does not join. nullopt, with what is wrong, for a bad one.
std::optional<QJsonObject> parseCall(const QString& text, QString* error);

// vesk emulator journal [count | clear]: what the journal kept.
int journalAction(const CommandLine& line, const emulator::AdminClient& client, QTextStream& out,
                  QTextStream& err);

// vesk emulator verify CALL...: whether the calls were made.
int verifyAction(const CommandLine& line, const emulator::AdminClient& client, QTextStream& out,
                 QTextStream& err);

} // namespace vesk::cli
