#include "app/TDApplicationController.h"

#include "foundation/LocalizedText.h"
#include "session/SearchStatusLine.h"
#include "support/TaskCount.h"
#include "support/gui/WindowFixture.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QThreadPool>
#include <QTimer>

#include <algorithm>
#include <map>
#include <random>

using namespace Qt::Literals::StringLiterals;

namespace tidemark::test {

namespace {

constexpr int FEW_SCHEDULES = 30;
constexpr int LONGEST_SCHEDULE = 40;
constexpr qsizetype MOST_WINDOWS = 3;

/// What a search for a text finds in the end, found by itself.
class Oracle : public TDSearchEngineDelegate
{
public:
    Oracle(const QString &findText, const QList<TDSearchLocation> &locations)
    {
        TDSearchEngine engine;
        // The engine lets go of it before it goes.
        engine.setDelegate(std::shared_ptr<TDSearchEngineDelegate>(this, [](TDSearchEngineDelegate *) {}));
        engine.startSearch(findText, locations, false);
    }
    void didFindMatchInFile(const std::shared_ptr<TDFindResultItem> &file) override { files << file->path(); }
    void didFinishSearch(quint64 scanned, quint64 fileMatches, quint64 matches) override
    {
        status = finishedStatus(matches, fileMatches, scanned, SearchEnd::Completed);
    }

    QList<FilePath> files;
    QString status;
};

QList<FilePath> pathsOf(const FindResultItems &files)
{
    QList<FilePath> paths;
    for (const auto &file : files)
        paths << file->path();
    return paths;
}

/// Someone without patience, whose every move follows from the seed.
class Schedule
{
public:
    Schedule(unsigned seed, const std::map<QString, std::unique_ptr<Oracle>> &oracles,
             const QList<TDSearchLocation> &locations)
        : _random(seed), _oracles(oracles), _locations(locations)
    {}

    /// From the start of the application until it has quit and is gone.
    void run()
    {
        {
            TDApplicationController application;
            _application = &application;
            application.awakeFromNib();
            application.applicationDidFinishLaunching();
            _watch(application.documents().first());
            _stepsLeft = _number(LONGEST_SCHEDULE);
            _isPatient = _number(3) == 0;
            QTimer::singleShot(0, &application, [this] { _step(); });
            QApplication::exec();
        }
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        for (const QPointer<WindowedDocument> &document : _documents)
            EXPECT_EQ(document, nullptr);
    }

    int completed = 0;

private:
    int _number(int below) { return int(_random() % unsigned(below)); }

    void _watch(WindowedDocument *document)
    {
        _documents << document;
        document->setSearchLocations(_locations);
        QObject::connect(&document->findResults(), &FindResults::appended, document,
                         [this, document] { _check(*document); });
        QObject::connect(&document->myDocumentController()->searchControl(), &SearchControl::searchFinished,
                         document, [this, document] { _checkFinished(*document); });
    }

    /// Everything in the window belongs to the search started last.
    void _check(const WindowedDocument &document)
    {
        for (const auto &file : document.findResults().files())
            ASSERT_EQ(file->findText(), _searchedFor[&document]);
    }
    void _checkFinished(const WindowedDocument &document)
    {
        const Oracle &expected = *_oracles.at(_searchedFor[&document]);
        const QList<FilePath> found = pathsOf(document.findResults().files());
        if (document.resultsStatusText().startsWith(localizedString("Search interrupted ("))) {
            EXPECT_EQ(found, expected.files.first(found.size()));
            return;
        }
        EXPECT_EQ(document.resultsStatusText(), expected.status);
        EXPECT_EQ(found, expected.files);
        ++completed;
    }

    void _step()
    {
        const QList<WindowedDocument *> documents = _application->documents();
        if (_stepsLeft == 0) {
            const bool waits =
                _isPatient && std::ranges::any_of(documents, [](const WindowedDocument *document) {
                    return document->myDocumentController()->searching();
                });
            if (waits)
                QTimer::singleShot(5, _application, [this] { _step(); });
            else
                _quit();
            return;
        }
        --_stepsLeft;
        WindowedDocument *document =
            documents.isEmpty() ? nullptr : documents[_number(int(documents.size()))];
        const int choice = _number(12);
        if (document == nullptr || (choice < 3 && documents.size() < MOST_WINDOWS))
            _watch(_application->openUntitledDocument(TD_DOCUMENT_TYPE));
        else if (choice < 8)
            _startSearch(*document);
        else if (choice < 11)
            document->myDocumentController()->stopSearch();
        else
            document->myDocumentController()->window()->close();
        const int pauses[] = {0, 0, 0, 1, 2, 5, 20};
        QTimer::singleShot(pauses[_number(std::size(pauses))], _application, [this] { _step(); });
    }
    void _startSearch(WindowedDocument &document)
    {
        auto oracle = _oracles.begin();
        std::advance(oracle, _number(int(_oracles.size())));
        _searchedFor[&document] = oracle->first;
        document.setFindText(oracle->first);
        document.myDocumentController()->startSearch(StartStopButton::On);
    }
    void _quit()
    {
        const QList<WindowedDocument *> documents = _application->documents();
        if (_number(2) == 0) {
            for (WindowedDocument *document : documents)
                document->myDocumentController()->window()->close();
        }
        _application->terminate();
    }

    std::mt19937 _random;
    const std::map<QString, std::unique_ptr<Oracle>> &_oracles;
    const QList<TDSearchLocation> _locations;
    TDApplicationController *_application = nullptr;
    QList<QPointer<WindowedDocument>> _documents;
    QHash<const WindowedDocument *, QString> _searchedFor;
    int _stepsLeft = 0;
    bool _isPatient = false; ///< lets its searches end before it quits
};

class RandomSchedules : public WindowTest
{
protected:
    RandomSchedules() { setKindsInForce(Kind::defaultKinds()); }
};

TEST_F(RandomSchedules, LeaveNothingBehindAndMixNothingUp)
{
    const QByteArray given = qgetenv("TIDEMARK_SCHEDULES");
    const int schedules = given.isEmpty() ? FEW_SCHEDULES : given.toInt();
    const QByteArray other = qgetenv("TIDEMARK_TEST_TREE");
    const FilePath tree(other.isEmpty() ? QByteArray(TIDEMARK_SOURCE_DIR "/Src") : other);
    const QList<TDSearchLocation> locations = {location(tree)};
    std::map<QString, std::unique_ptr<Oracle>> oracles;
    for (const QString &text : {u"include"_s, u"e"_s, u"Search"_s, u"found\tnowhere"_s, u"const QString"_s})
        oracles[text] = std::make_unique<Oracle>(text, locations);
    EXPECT_GT(oracles[u"include"_s]->files.size(), 100);

    QElapsedTimer duration;
    duration.start();
    int completed = 0;
    int tasks = 0;
    for (int number = 0; number < schedules && !HasFailure(); ++number) {
        SCOPED_TRACE(number);
        Schedule schedule(unsigned(number), oracles, locations);
        schedule.run();
        completed += schedule.completed;
        QThreadPool::globalInstance()->waitForDone();
        // The first one starts what the toolkit keeps.
        if (number == 0)
            tasks = taskCount();
        EXPECT_TRUE(waitFor([tasks] { return taskCount() <= tasks; }));
    }
    std::printf("%d schedules in %lld ms, %d searches completed\n", schedules,
                static_cast<long long>(duration.elapsed()), completed);
    EXPECT_GT(completed, schedules / 20);
}

} // namespace

} // namespace tidemark::test
