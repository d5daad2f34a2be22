#include "Suggestion.h"

#include <QList>

#include <algorithm>

namespace vesk::check {
namespace {

// Levenshtein distance: insertions, deletions and substitutions, each 1.
qsizetype editDistance(const QString& a, const QString& b) {
    QList<qsizetype> row(b.size() + 1);
    for (qsizetype j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (qsizetype i = 1; i <= a.size(); ++i) {
        qsizetype diagonal = row[0];
        row[0] = i;
        for (qsizetype j = 1; j <= b.size(); ++j) {
            const qsizetype above = row[j];
            row[j] =
                std::min({row[j] + 1, row[j - 1] + 1, diagonal + (a[i - 1] == b[j - 1] ? 0 : 1)});
            diagonal = above;
        }
    }
    return row[b.size()];
}

qsizetype allowedEdits(qsizetype length) {
    return length <= 7 ? 1 : length <= 11 ? 2 : 3;
}

} // namespace

QString closestName(const QString& word, const QStringList& candidates) {
    if (word.isEmpty() || candidates.contains(word))
        return QString();
    for (const QString& candidate : candidates)
        if (candidate.compare(word, Qt::CaseInsensitive) == 0)
            return candidate;
    QString best;
    qsizetype bestDistance = allowedEdits(word.size()) + 1;
    for (const QString& candidate : candidates) {
        const qsizetype distance = editDistance(word.toLower(), candidate.toLower());
        if (distance < bestDistance) {
            best = candidate;
            bestDistance = distance;
        }
    }
    return best;
}

QString didYouMean(const QString& word, const QStringList& candidates) {
    const QString closest = closestName(word, candidates);
    return closest.isEmpty() ? QString() : QStringLiteral("; did you mean %1?").arg(closest);
}

} // namespace vesk::check
