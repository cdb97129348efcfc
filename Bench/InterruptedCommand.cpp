#include "InterruptedCommand.h"

#include "foundation/TDError.h"
#include "replace/InterruptedRewrites.h"

#include <cstdio>

namespace tidemark {

namespace {

const char *nameOf(InterruptedRewrites::State state)
{
    switch (state) {
    case InterruptedRewrites::State::Damaged:
        return "damaged";
    case InterruptedRewrites::State::UnusableBackup:
        return "unusable-backup";
    case InterruptedRewrites::State::Moved:
        break;
    }
    return "moved";
}

QByteArray encoded(const FilePath &path)
{
    return path.bytes().toPercentEncoding("/");
}

} // namespace

bool decideInterruptedRewrites(const DriverOptions &options)
{
    InterruptedRewrites rewrites(options.interruptedFolder);
    for (const InterruptedRewrites::File &file : rewrites.files())
        std::printf("%s\t%s\t%s\n", nameOf(file.state), encoded(file.path).constData(),
                    encoded(file.backup).constData());
    if (rewrites.progress().total > 0)
        std::fprintf(stderr, "%lld of %lld files were done\n",
                     static_cast<long long>(rewrites.progress().done),
                     static_cast<long long>(rewrites.progress().total));
    QList<InterruptedRewrites::Failure> failures;
    if (options.decision == DriverOptions::Decision::PutBack)
        failures = rewrites.putBack();
    else if (options.decision == DriverOptions::Decision::Keep)
        rewrites.keep();
    for (const InterruptedRewrites::Failure &failure : std::as_const(failures))
        std::fprintf(stderr, "%s: %s\n", failure.file.path.cString(),
                     TDError::posixError(failure.errorNumber).localizedFailureReason().toUtf8().constData());
    return failures.isEmpty();
}

} // namespace tidemark
