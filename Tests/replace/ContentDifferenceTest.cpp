#include "replace/ContentDifference.h"

#include "replace/NewContent.h"
#include "support/Testing.h"

#include <fcntl.h>
#include <random>
#include <unistd.h>

namespace tidemark::test {
namespace {

/// What a plan makes of a content.
QByteArray outcomeOf(const RewritePlan &plan, const QByteArray &content)
{
    QByteArray outcome;
    for (const RewritePlan::Segment &segment : plan.segments())
        outcome += segment.isNew ? segment.newBytes : content.mid(segment.offset, segment.length);
    return outcome;
}

class ContentDifferenceTest : public testing::Test
{
protected:
    int below(int limit) { return int(_random() % unsigned(limit)); }
    QByteArray randomBytes(int count)
    {
        // Few letters, so that much looks alike.
        QByteArray bytes;
        const int letters = 1 + below(4);
        for (int index = 0; index < count; ++index)
            bytes += char('a' + below(letters));
        return bytes;
    }
    /// Replaces a few stretches, also empty ones, by others, also by themselves.
    RewritePlan randomPlan(const QByteArray &content)
    {
        std::vector<RewritePlan::Segment> segments;
        qint64 offset = 0;
        while (offset < content.size()) {
            const qint64 kept = std::min<qint64>(below(60), content.size() - offset);
            segments.push_back({offset, kept, {}, false});
            const qint64 old = std::min<qint64>(below(30), content.size() - offset - kept);
            QByteArray now = content.mid(offset + kept, old);
            if (below(3) > 0)
                now.replace(below(20), below(9), randomBytes(below(40)));
            segments.push_back({0, now.size(), now, true});
            offset += kept + old;
        }
        return RewritePlan(std::move(segments));
    }
    std::optional<QByteArray> differences(const RewritePlan &plan, const QByteArray &content)
    {
        const int file = ::open(_folder.write("old", content).cString(), O_RDONLY);
        const auto bytes = differencesOf(plan, file);
        ::close(file);
        return bytes;
    }

    std::mt19937 _random{20120704};
    TemporaryFolder _folder;
};

TEST_F(ContentDifferenceTest, LeadBackAlsoThroughSeveralPlansAtOnce)
{
    for (int round = 0; round < 2000; ++round) {
        const QByteArray first = randomBytes(below(300));
        const RewritePlan plan = randomPlan(first);
        const QByteArray second = outcomeOf(plan, first);
        const RewritePlan nextPlan = randomPlan(second);
        const QByteArray third = outcomeOf(nextPlan, second);
        EXPECT_EQ(outcomeOf(composedPlan(plan, nextPlan), first), third);

        const auto toFirst = planBack(*differences(plan, first), second.size(), first.size());
        const auto toSecond = planBack(*differences(nextPlan, second), third.size(), second.size());
        ASSERT_TRUE(toFirst && toSecond);
        EXPECT_EQ(outcomeOf(*toFirst, second), first);
        EXPECT_EQ(outcomeOf(composedPlan(*toSecond, *toFirst), third), first);
    }
}

TEST_F(ContentDifferenceTest, TakeLittleMoreThanTheOldBytesHoweverLongTheLine)
{
    for (const int length : {1, 5, 40, 400, 5000}) {
        QByteArray content;
        QByteArray changed;
        for (int match = 0; match < 60; ++match) {
            QByteArray gap;
            for (int index = 0; index < 20 + below(2000); ++index)
                gap += char('a' + below(26));
            const QByteArray old(length, 'X');
            content += gap + old;
            changed += gap + QByteArray(1 + below(2 * length), 'Y');
        }
        const RewritePlan plan({{0, changed.size(), changed, true}});
        EXPECT_LT(differences(plan, content)->size(), 60 * (length + 8)) << length;
    }
}

TEST_F(ContentDifferenceTest, NothingButTheRightSizesComesOfDamagedOnes)
{
    for (int round = 0; round < 2000; ++round) {
        const QByteArray content = randomBytes(200);
        const RewritePlan plan = randomPlan(content);
        const qint64 newSize = outcomeOf(plan, content).size();
        QByteArray damaged = *differences(plan, content);
        if (!damaged.isEmpty())
            damaged[below(int(damaged.size()))] = char(below(256));
        damaged.truncate(damaged.size() - below(3));
        if (const auto back = planBack(damaged, newSize, content.size())) {
            EXPECT_EQ(back->newSize(), content.size());
            for (const RewritePlan::Segment &segment : back->segments())
                EXPECT_TRUE(segment.isNew ||
                            (segment.offset >= 0 && segment.offset + segment.length <= newSize));
        }
    }
}

} // namespace
} // namespace tidemark::test
