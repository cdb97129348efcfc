#include "matching/LinePrefilter.h"
#include "reading/TDFileReader.h"
#include "text/PlainTextPattern.h"
#include "text/Utf8.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

#include <fstream>

using namespace tidemark;

namespace {

/// About a megabyte of lines as they stand in source files.
QByteArray sampleText(bool withOtherScripts)
{
    QByteArray text;
    for (int line = 0; text.size() < (1 << 20); ++line) {
        text += "static int value_" + QByteArray::number(line) +
                " = compute(argument, 0x7F); // a comment of some words\n";
        if (withOtherScripts && line % 8 == 0)
            text += "Прилив и отлив — слова, которых нет в коде; größer, façade\n";
    }
    return text;
}

void LineReader(benchmark::State &state)
{
    const QTemporaryDir folder;
    const FilePath path = FilePath::fromDisplayText(folder.filePath(QStringLiteral("sample")));
    const QByteArray text = sampleText(state.range(0) != 0);
    std::ofstream(path.cString(), std::ios::binary).write(text.constData(), text.size());
    for (auto _ : state) {
        TDError error;
        const auto reader = TDFileReader::fileReaderWithFile(path, TD_ENCODING_UTF8, error);
        while (const auto line = reader->getNextLineWithEOLCharacters(true, error))
            benchmark::DoNotOptimize(line->size());
        reader->closeFile(error);
    }
    state.SetBytesProcessed(state.iterations() * text.size());
}
BENCHMARK(LineReader)->Arg(0)->Arg(1);

void Validation(benchmark::State &state)
{
    const QByteArray text = sampleText(state.range(0) != 0);
    for (auto _ : state)
        benchmark::DoNotOptimize(isValidUtf8(text));
    state.SetBytesProcessed(state.iterations() * text.size());
}
BENCHMARK(Validation)->Arg(0)->Arg(1);

void scan(benchmark::State &state, const std::unique_ptr<const LinePrefilter> &prefilter)
{
    if (!prefilter) {
        state.SkipWithError("no prefilter");
        return;
    }
    const QByteArray text = sampleText(true);
    LinePrefilter::Scanner scanner(*prefilter);
    std::vector<LineSpan> lines;
    for (auto _ : state) {
        lines.clear();
        benchmark::DoNotOptimize(scanner.candidateLines(text, lines));
    }
    state.SetBytesProcessed(state.iterations() * text.size());
}

void PrefilterPlainText(benchmark::State &state)
{
    scan(state, LinePrefilter::forPlainText(PlainTextPattern(QStringLiteral("EAGAIN"), CaseRule::Ignore)));
}
BENCHMARK(PrefilterPlainText);

void PrefilterExpression(benchmark::State &state)
{
    scan(state, LinePrefilter::forExpression("[A-Z]+_SUSPEND", CaseRule::Ignore));
}
BENCHMARK(PrefilterExpression);

void PlainTextSearch(benchmark::State &state)
{
    const QString text = QString::fromUtf8(sampleText(true));
    const PlainTextPattern pattern(state.range(0) != 0 ? QStringLiteral("НЕТУ") : QStringLiteral("EAGAIN"),
                                   CaseRule::Ignore);
    for (auto _ : state)
        benchmark::DoNotOptimize(pattern.firstRange(text, {0, text.size()}));
    state.SetBytesProcessed(state.iterations() * text.size() * 2);
}
BENCHMARK(PlainTextSearch)->Arg(0)->Arg(1);

} // namespace

BENCHMARK_MAIN();
