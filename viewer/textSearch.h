#pragma once

#include "viewer/job.h"

#include <QString>
#include <QStringMatcher>
#include <QVector>

#include <memory>

namespace norvex {
namespace Viewer {

/// Finds a text in another one: all places that do not overlap. It counts beside the window, piece by piece; what is
/// counted already can be walked through.
class TextSearch : public QObject
{
    Q_OBJECT

public:
    /// Starts to count. The text sought has no line feed.
    TextSearch(QObject* parent, const QString& text, const QString& sought, Qt::CaseSensitivity sensitivity);

    int length() const { return sought_.size(); }
    bool isFinished() const { return countedPieces_ == firstHits_.size(); }
    /// Of the text that is counted.
    int percent() const;
    /// The number of hits in the text that is counted.
    int count() const { return count_; }

    enum class Found {
        Yes,
        No,     ///< there is none
        NotYet, ///< the text that decides it is not counted yet
    };

    /// The first hit at or behind a place.
    Found next(int from, int& hit) const;
    /// The last hit in front of a place.
    Found previous(int from, int& hit) const;
    /// The number of a hit, from 1.
    int numberOf(int hit) const;
    /// The hits that touch a range of the text, whether counted or not, to mark them.
    /// @param lineBegin where the line of the range begins; a hit stands in one line
    QVector<int> hitsIn(int lineBegin, int begin, int end) const;

signals:
    /// More of the text is counted; at last all of it.
    void advanced();

private:
    struct Counted
    {
        int piece;
        int firstHit;
        int hits;
    };
    class Results;

    void take();
    int begin(int piece) const;
    int pieceOf(int place) const;
    int hitBehind(int hit) const;

    const QString text_;
    const QString sought_;
    const QStringMatcher matcher_;
    const bool overlapsItself_;
    QVector<int> firstHits_; // of each piece, -1 for none
    QVector<int> hits_;      // the number in each piece
    int countedPieces_ = 0;
    int count_ = 0;
    std::shared_ptr<Results> results_;
};

} // namespace Viewer
} // namespace norvex
