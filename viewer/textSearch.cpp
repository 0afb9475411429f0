#include "viewer/textSearch.h"

#include <QMutex>
#include <QMutexLocker>

#include <algorithm>

namespace norvex {
namespace Viewer {

namespace {

/// A piece is searched in a few milliseconds.
const int pieceSize = 1 << 20;

/// Further back no overlapping places are looked for to mark hits: a run of so many shows no difference.
const int overlapReach = 4096;

/// Whether two places at which a text stands can overlap: it begins as it ends.
bool canOverlap(const QString& text, Qt::CaseSensitivity sensitivity)
{
    for (int length = 1; length < text.size(); ++length) {
        if (text.startsWith(text.rightRef(length), sensitivity)) {
            return true;
        }
    }
    return false;
}

int piecesOf(const QString& text)
{
    return text.size() / pieceSize + 1;
}

} // namespace

/// What the counting thread found, until the window takes it.
class TextSearch::Results
{
public:
    void add(const Counted& counted)
    {
        const QMutexLocker lock(&mutex_);
        counted_.append(counted);
    }

    QVector<Counted> take()
    {
        const QMutexLocker lock(&mutex_);
        QVector<Counted> taken;
        taken.swap(counted_);
        return taken;
    }

private:
    QMutex mutex_;
    QVector<Counted> counted_;
};

TextSearch::TextSearch(QObject* parent, const QString& text, const QString& sought,
                       Qt::CaseSensitivity sensitivity)
    : QObject(parent), text_(text), sought_(sought), matcher_(sought, sensitivity),
      overlapsItself_(canOverlap(sought, sensitivity)), firstHits_(piecesOf(text), -1),
      hits_(piecesOf(text), 0), results_(std::make_shared<Results>())
{
    const auto count = [text, matcher = matcher_, length = sought.size(),
                        results = results_](const JobControl& control) {
        const int pieces = piecesOf(text);
        int hit = matcher.indexIn(text, 0);
        for (int piece = 0; piece < pieces && !control.isCancelled(); ++piece) {
            Counted counted = {piece, -1, 0};
            const qint64 end = (piece + 1LL) * pieceSize;
            while (hit != -1 && hit < end && !control.isCancelled()) {
                counted.firstHit = counted.hits == 0 ? hit : counted.firstHit;
                ++counted.hits;
                hit = matcher.indexIn(text, hit + length);
            }
            results->add(counted);
            control.setProgress(static_cast<int>(100LL * (piece + 1) / pieces));
        }
    };
    auto* const job = new Job(this, count, [this](bool) { take(); });
    connect(job, &Job::progressed, this, &TextSearch::take);
}

void TextSearch::take()
{
    const QVector<Counted> taken = results_->take();
    for (const Counted& counted : taken) {
        firstHits_[counted.piece] = counted.firstHit;
        hits_[counted.piece] = counted.hits;
        count_ += counted.hits;
        ++countedPieces_;
    }
    if (!taken.isEmpty()) {
        emit advanced();
    }
}

int TextSearch::percent() const
{
    return static_cast<int>(100LL * countedPieces_ / firstHits_.size());
}

int TextSearch::pieceOf(int place) const
{
    return std::min(std::max(place, 0) / pieceSize, firstHits_.size() - 1);
}

int TextSearch::hitBehind(int hit) const
{
    return matcher_.indexIn(text_, hit + sought_.size());
}

TextSearch::Found TextSearch::next(int from, int& hit) const
{
    for (int piece = pieceOf(from); piece < countedPieces_; ++piece) {
        int candidate = firstHits_.at(piece);
        for (int left = hits_.at(piece); left > 0; --left) {
            if (candidate >= from) {
                hit = candidate;
                return Found::Yes;
            }
            candidate = left > 1 ? hitBehind(candidate) : -1;
        }
    }
    return isFinished() ? Found::No : Found::NotYet;
}

TextSearch::Found TextSearch::previous(int from, int& hit) const
{
    const int last = pieceOf(from - 1);
    if (last >= countedPieces_) {
        return Found::NotYet;
    }
    for (int piece = last; piece >= 0; --piece) {
        int found = -1;
        int candidate = firstHits_.at(piece);
        for (int left = hits_.at(piece); left > 0 && candidate < from; --left) {
            found = candidate;
            candidate = left > 1 ? hitBehind(candidate) : -1;
        }
        if (found != -1) {
            hit = found;
            return Found::Yes;
        }
    }
    return Found::No;
}

int TextSearch::numberOf(int hit) const
{
    const int last = pieceOf(hit);
    int number = 0;
    for (int piece = 0; piece < last; ++piece) {
        number += hits_.at(piece);
    }
    int candidate = firstHits_.at(last);
    for (int left = hits_.at(last); left > 0 && candidate <= hit; --left) {
        ++number;
        candidate = left > 1 ? hitBehind(candidate) : -1;
    }
    return number;
}

QVector<int> TextSearch::hitsIn(int lineBegin, int begin, int end) const
{
    // A hit may begin in front of the range. Which of overlapping places are hits depends on those in front of them.
    const int place = std::max(lineBegin, begin - (overlapsItself_ ? overlapReach : sought_.size() - 1));
    QVector<int> hits;
    const qint64 textEnd = std::min<qint64>(qint64(end) + sought_.size() - 1, text_.size());
    const QString text = QString::fromRawData(text_.constData() + place, static_cast<int>(textEnd) - place);
    for (int hit = matcher_.indexIn(text); hit != -1 && place + hit < end;
         hit = matcher_.indexIn(text, hit + sought_.size())) {
        if (place + hit + sought_.size() > begin) {
            hits.append(place + hit);
        }
    }
    return hits;
}

} // namespace Viewer
} // namespace norvex
