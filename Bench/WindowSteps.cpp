#include "WindowSteps.h"

#include "window/results/ResultsFilterBox.h"

#include <QAction>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QScrollBar>

#include <algorithm>
#include <cstdio>
#include <random>

using namespace Qt::Literals::StringLiterals;

namespace tidemark {

namespace {

constexpr double STEP_GOAL = 50;
constexpr double COMMAND_GOAL = 1000;
constexpr double FILTER_GOAL = 100;

QString inMilliseconds(double duration)
{
    return QString::number(duration, 'f', duration < 10 ? 1 : 0) + u" ms"_s;
}

/// A person at the window who does the same thing many times.
class Steps
{
public:
    explicit Steps(BenchWindow &window) : _window(window) {}

    void scroll(const QString &state)
    {
        _small(u"wheel, "_s + state, 1000, [this] { _window.wheel(1); });
        _small(u"scroll bar to anywhere, "_s + state, 300, [this] { _scrollAnywhere(); });
        _small(u"page down, "_s + state, 300, [this] { _window.press(Qt::Key_PageDown); });
    }

    void walk(
        const QString &state, const std::function<void()> &first = [] {})
    {
        first();
        _window.press(Qt::Key_Home);
        _small(u"next match, "_s + state, 1000, [this] { _window.press(Qt::Key_Down); });
        _small(u"next file, "_s + state, 500, [this] { _window.press(Qt::Key_Down, Qt::ControlModifier); });
        _small(u"extend, "_s + state, 1000, [this] { _window.press(Qt::Key_Down, Qt::ShiftModifier); });
    }

    void select(const QString &state)
    {
        _small(u"click anywhere, "_s + state, 300, [this] { _clickAnywhere({}); });
        _small(u"add by Ctrl+click anywhere, "_s + state, 300,
               [this] { _clickAnywhere(Qt::ControlModifier); });
        _large(u"extend by Shift+click anywhere, "_s + state, 20,
               [this] { _clickAnywhere(Qt::ShiftModifier); });
    }

    /// As one types in Replace.
    void showReplacements(const QString &state)
    {
        _setReplacementsShown(true);
        int length = 0;
        const QString text = u"an ebb"_s;
        _small(u"another letter in Replace, "_s + state, int(text.size()),
               [&] { _window.document().setReplaceText(text.first(++length)); });
        scroll(state);
        walk(state);
        _setReplacementsShown(false);
    }

    void withEverythingSelected()
    {
        const QString state = u"all selected"_s;
        _large(u"select all"_s, 3, [this] { _selectAll(); });
        _small(u"wheel, "_s + state, 300, [this] { _window.wheel(1); });
        _small(u"extend, "_s + state, 10, [this] { _window.press(Qt::Key_Up, Qt::ShiftModifier); });
        _large(u"Ctrl+click, "_s + state, 10, [this] { _clickAnywhere(Qt::ControlModifier); });
        _large(u"close one file, "_s + state, 3, [this] { _window.press(Qt::Key_Left); });
        _large(u"next match, "_s + state, 1, [this] { _window.press(Qt::Key_Down); });
        _selectAll();
        _large(u"lines to copy, "_s + state, 1, [this] { _window.navigation().selection().selectedLines(); });
        _large(u"question of Replace Selection, "_s + state, 1,
               [this] { _window.actions().replaceSelection->trigger(); });
        _closeSheet();
    }

    void commands()
    {
        _large(u"question of Replace All"_s, 1, [this] { _window.actions().replaceAll->trigger(); });
        _closeSheet();
        _large(u"collapse all, all selected"_s, 1, [this] { _expandOrCollapse(); });
        _large(u"expand all"_s, 1, [this] { _expandOrCollapse(); });
        _large(u"collapse all"_s, 1, [this] { _expandOrCollapse(); });
        _expandOrCollapse();
        int column = 0;
        _large(u"sort by a column"_s, 3,
               [this, &column] { _window.view().header()->setSortIndicator(column++, Qt::DescendingOrder); });
    }

    /// As one types it.
    void filter()
    {
        QLineEdit &field = _window.controller().resultsPane().filterBox().field();
        const QString text = u"line 4"_s;
        int length = 0;
        _measure(
            u"filter by another letter"_s, int(text.size()), [&] { field.setText(text.first(++length)); },
            FILTER_GOAL);
        _measure(
            u"filter by what every line has"_s, 1, [&] { field.setText(u"a tide"_s); }, FILTER_GOAL);
        _measure(
            u"filter by what no line has"_s, 1, [&] { field.setText(u"harbour"_s); }, FILTER_GOAL);
        walk(u"filtered"_s, [&] { field.setText(u"line 4"_s); });
        _measure(
            u"filter no more"_s, 1, [&] { field.clear(); }, FILTER_GOAL);
    }

    void remove()
    {
        _window.press(Qt::Key_Home);
        _small(u"remove a line"_s, 20, [this] {
            _window.press(Qt::Key_Down);
            _window.press(Qt::Key_Delete);
        });
        for (int line = 0; line < 300; ++line)
            _clickAnywhere(Qt::ControlModifier);
        _large(u"remove 300 scattered lines"_s, 1, [this] { _window.press(Qt::Key_Delete); });
        _window.press(Qt::Key_Home);
        for (int line = 0; line < 100; ++line)
            _window.press(Qt::Key_Down);
        _window.press(Qt::Key_End, Qt::ShiftModifier);
        _large(u"remove all lines but 100"_s, 1, [this] { _window.press(Qt::Key_Delete); });
    }

private:
    void _small(const QString &what, int count, const std::function<void()> &action)
    {
        _measure(what, count, action, STEP_GOAL);
    }

    void _large(const QString &what, int count, const std::function<void()> &action)
    {
        _measure(what, count, action, COMMAND_GOAL);
    }

    void _measure(const QString &what, int count, const std::function<void()> &action, double goal)
    {
        Duration longest;
        double sum = 0;
        for (int number = 0; number < count; ++number) {
            const Duration duration = _window.step(action);
            sum += duration.wall;
            if (duration.wall > longest.wall)
                longest = duration;
        }
        printDuration(count > 1 ? what + u" (mean %1)"_s.arg(inMilliseconds(sum / count)) : what, longest,
                      goal);
    }

    int _upTo(int highest) { return std::uniform_int_distribution(0, highest)(_random); }

    void _scrollAnywhere()
    {
        QScrollBar *bar = _window.view().verticalScrollBar();
        bar->setValue(_upTo(bar->maximum()));
    }

    void _clickAnywhere(Qt::KeyboardModifiers modifiers)
    {
        _scrollAnywhere();
        const QRect rect = _window.view().viewport()->rect();
        _window.click({rect.width() / 2, _upTo(rect.height() - 1)}, modifiers);
    }

    void _selectAll() { _window.press(Qt::Key_A, Qt::ControlModifier); }
    void _expandOrCollapse() { _window.actions().expandCollapseAll->trigger(); }

    void _setReplacementsShown(bool areShown)
    {
        if (_window.actions().showReplacements->isChecked() != areShown)
            _window.step([this] { _window.actions().showReplacements->trigger(); });
    }

    void _closeSheet()
    {
        if (auto *sheet = _window.controller().window()->findChild<QMessageBox *>())
            sheet->reject();
        _window.step([] {});
    }

    BenchWindow &_window;
    std::mt19937 _random{42};
};

} // namespace

void printRow(const QString &what, const QString &measured, const QString &goal, bool isMet)
{
    const QString row =
        u"| "_s + what + u" | "_s + measured + (isMet ? u" | "_s : u" (MISSED) | "_s) + goal + u" |"_s;
    std::printf("%s\n", row.toUtf8().constData());
    std::fflush(stdout);
}

void printDuration(const QString &what, Duration duration, double goal)
{
    printRow(what, inMilliseconds(duration.wall) + u", own "_s + inMilliseconds(duration.own),
             u"< "_s + inMilliseconds(goal), duration.wall < goal);
}

void measureSteps(BenchWindow &window)
{
    Steps steps(window);
    ResultsNavigation::setShowHideState(true);
    window.actions().expandCollapseAll->trigger();
    const QString closed = u"files closed"_s;
    steps.scroll(closed);
    steps.walk(closed);
    window.actions().expandCollapseAll->trigger();
    const QString open = u"files open"_s;
    steps.scroll(open);
    steps.walk(open);
    steps.select(open);
    steps.showReplacements(u"replacements shown"_s);
    steps.filter();
    window.actions().showContext->trigger();
    steps.walk(u"context shown"_s);
    steps.filter();
    window.actions().showContext->trigger();
    steps.withEverythingSelected();
    steps.commands();
    steps.remove();
}

} // namespace tidemark
