#pragma once

#include "foundation/FilePath.h"
#include "foundation/WorkerThreads.h"
#include "text/TextEncoding.h"

#include <QObject>

#include <atomic>

namespace tidemark {

/// What a file itself tells of the encoding that it may be in.
struct EncodingSample
{
    /// Of the first line that is no text in the encoding that was tried; 0 where each is.
    qint64 lineNumber = 0;
    QList<StringEncoding> likely; ///< the likeliest first
};

/// Takes a sample on a thread of its own. Main thread only.
class EncodingSampler : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    ~EncodingSampler() override;

    /// The encoding as for the line reader. Once.
    void start(const FilePath &path, StringEncoding encoding);

Q_SIGNALS:
    void sampled(const tidemark::EncodingSample &sample);

private:
    std::atomic<bool> _isStopped = false;
    WorkerThreads _worker{1}; ///< last: it ends first
};

} // namespace tidemark
