#include "session/ResultsRemoval.h"
#include "support/Testing.h"

#include <ostream>
#include <vector>

namespace tidemark {

void PrintTo(const ResultPath &path, std::ostream *out)
{
    *out << path.file;
    if (path.isLine())
        *out << ':' << path.line;
}

} // namespace tidemark

namespace tidemark::test {
namespace {

TEST(ResultsRemoval, SelectsWhatFollowsTheRemovedOnes)
{
    const struct
    {
        const char *name;
        std::vector<int> lineCounts;
        QList<ResultPath> selection;
        QList<ResultPath> removed;
        ResultPath selectedAfterwards;
    } cases[] = {
        {"a line in the middle", {3}, {{0, 1}}, {{0, 1}}, {0, 1}},
        {"several lines of one file", {5}, {{0, 0}, {0, 2}}, {{0, 0}, {0, 2}}, {0, 1}},
        {"a file's last line", {3, 2}, {{0, 2}}, {{0, 2}}, {1, 0}},
        {"the last line of all", {3, 2}, {{1, 1}}, {{1, 1}}, {0, 0}},
        {"all lines of a file", {2, 3}, {{0, 0}, {0, 1}}, {{0}}, {0, 0}},
        {"all lines of the last file", {2, 2}, {{1, 0}, {1, 1}}, {{1}}, {0, 0}},
        {"a file in the middle", {1, 1, 1}, {{1}}, {{1}}, {1, 0}},
        {"two files at the end", {1, 1, 1}, {{1}, {2}}, {{1}, {2}}, {0, 0}},
        {"everything", {1, 1}, {{0}, {0, 0}, {1}, {1, 0}}, {{0}, {1}}, {0, 0}},
        {"lines of two files", {3, 4}, {{0, 2}, {1, 1}}, {{0, 2}, {1, 1}}, {1, 2}},
        {"a greater line in an earlier file", {9, 4}, {{0, 7}, {1, 1}}, {{0, 7}, {1, 1}}, {0, 0}},
        {"a whole file before a line", {2, 4}, {{0, 0}, {0, 1}, {1, 0}}, {{0}, {1, 0}}, {0, 0}},
        {"nothing", {2}, {}, {}, {0, -1}},
    };
    for (const auto &test : cases) {
        const ResultsRemoval removal =
            ResultsRemoval::ofSelection(test.selection, int(test.lineCounts.size()),
                                        [&test](int file) { return test.lineCounts[size_t(file)]; });
        EXPECT_EQ(removal.paths, test.removed) << test.name;
        EXPECT_EQ(removal.selectedAfterwards, test.selectedAfterwards) << test.name;
    }
}

} // namespace

} // namespace tidemark::test
