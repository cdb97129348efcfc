#include "session/SelectedRows.h"
#include "support/ResultNodes.h"
#include "support/Testing.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

using namespace Qt::StringLiterals;

namespace tidemark {

namespace {

TEST(SelectedRows, BehaveAsASetOfRows)
{
    constexpr int LINES = 12;
    const auto file = test::fileNode("/t/file", QStringList(LINES, u"foo"_s));
    std::mt19937 random(7);
    const auto upTo = [&random](int most) { return std::uniform_int_distribution(0, most)(random); };
    SelectedRows rows;
    std::set<int> expected;
    for (int step = 0; step < 2000; ++step) {
        SelectedRows change;
        const int first = upTo(LINES - 1);
        const int last = first + upTo(LINES - 1 - first);
        change.addLines(file.get(), first, last);
        const bool adds = upTo(1) == 1;
        adds ? rows.add(change) : rows.remove(change);
        for (int line = first; line <= last; ++line)
            adds ? void(expected.insert(line)) : void(expected.erase(line));
        for (int line = 0; line < LINES; ++line)
            ASSERT_EQ(rows.contains(*file->children()[line]), expected.contains(line)) << step << ' ' << line;
        ASSERT_EQ(rows.isEmpty(), expected.empty());
        // Neighbours are one run, so that equal sets compare equal.
        for (const auto &[runFirst, runLast] : rows.lines().value(file.get()))
            ASSERT_FALSE(expected.contains(runFirst - 1) || expected.contains(runLast + 1));
    }
}

} // namespace

} // namespace tidemark
