#pragma once

#include "Focus/FocusKey.h"

#include <QList>
#include <QRectF>

#include <algorithm>
#include <cmath>
#include <optional>

namespace ClipboardCore {

/// Something that can take the focus, and where it is. y grows downward.
template <typename Key>
struct FocusCandidate
{
    Key key;
    QRectF rect;
    bool operator==(const FocusCandidate&) const = default;
};

/// The same, with the region it belongs to.
template <typename Key, typename Band>
struct BandedCandidate
{
    Key key;
    Band band;
    QRectF rect;
    bool operator==(const BandedCandidate&) const = default;
};

/// Finds what an arrow key moves the focus to, from the rectangles on screen alone.
namespace SpatialNav {

/// Where a target lies, seen from a source along a move.
struct Metrics
{
    double primary = 0;   // from the source's leading edge to the target's centre
    double gap = 0;       // between the facing edges; negative when they overlap
    double cross = 0;     // between the centres, across the move
    bool overlap = false; // the two overlap across the move

    /// Strictly more than half a point ahead.
    [[nodiscard]] constexpr bool isAhead() const { return primary > 0.5; }
    /// Lower is nearer; lying aside costs two and a half times as much as lying away.
    [[nodiscard]] constexpr double score() const { return (gap > 0 ? gap : 0) + 2.5 * cross; }
};

[[nodiscard]] Metrics metrics(const QRectF& source, const QRectF& target, FocusMove move);

/// The box around both. Unlike QRectF::united(), an empty rectangle keeps its place in it.
[[nodiscard]] QRectF boundingBox(const QRectF& a, const QRectF& b);

/// The nearest of the candidates that are ahead; the first of several that are equally near.
template <typename Candidate>
[[nodiscard]] auto nearest(const QRectF& source, FocusMove move, const QList<Candidate>& among)
    -> std::optional<decltype(Candidate::key)>
{
    std::optional<decltype(Candidate::key)> best;
    double bestScore = 0;
    for (const auto& candidate : among) {
        const Metrics seen = metrics(source, candidate.rect, move);
        if (!seen.isAhead() || (best && seen.score() >= bestScore))
            continue;
        best = candidate.key;
        bestScore = seen.score();
    }
    return best;
}

/// The nearest one in the source's own band. When that has none ahead: the band most directly in the move's path,
/// judged by the box around its members, and the nearest in there.
template <typename Key, typename Band>
[[nodiscard]] std::optional<Key> nearest(const QRectF& source, const Band& band, FocusMove move,
                                         const QList<BandedCandidate<Key, Band>>& among)
{
    struct Group
    {
        Band band;
        QRectF box;
        QList<BandedCandidate<Key, Band>> members;
    };
    QList<Group> groups; // in order of first appearance
    Group own{band, {}, {}};
    for (const auto& candidate : among) {
        if (candidate.band == band) {
            own.members.append(candidate);
            continue;
        }
        auto group = std::find_if(groups.begin(), groups.end(),
                                  [&](const Group& known) { return known.band == candidate.band; });
        if (group == groups.end())
            group = groups.insert(group, Group{candidate.band, candidate.rect, {}});
        group->box = boundingBox(group->box, candidate.rect);
        group->members.append(candidate);
    }
    if (auto key = nearest(source, move, own.members))
        return key;

    const Group* chosen = nullptr;
    Metrics chosenMetrics;
    for (const Group& group : groups) {
        const Metrics seen = metrics(source, group.box, move);
        const bool isBetter =
            !chosen || (seen.overlap != chosenMetrics.overlap ? seen.overlap : seen.score() < chosenMetrics.score());
        if (seen.isAhead() && isBetter) {
            chosen = &group;
            chosenMetrics = seen;
        }
    }
    return chosen ? nearest(source, move, chosen->members) : std::nullopt;
}

} // namespace SpatialNav
} // namespace ClipboardCore
