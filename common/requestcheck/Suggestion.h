#pragma once

#include <QString>
#include <QStringList>

namespace vesk::check {

// The one of `candidates` that `word` was probably meant to be: the first
// equal to it but for letter case, else the nearest by edit distance when it
// is close for the word's length (one edit in up to 7 characters, two up to
// 11, three beyond). Empty when none is that close, or `word` is one of them.
QString closestName(const QString& word, const QStringList& candidates);

// "; did you mean NAME?" for the closest name, or nothing.
QString didYouMean(const QString& word, const QStringList& candidates);

} // namespace vesk::check
