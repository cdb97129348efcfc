#pragma once

namespace tidemark {

/// Lets a write beyond the process's limit on the size of files fail with EFBIG, like any other, instead of
/// ending the process. A handler that somebody has set stays. Any thread.
void ignoreSignalOfFileSizeLimit();

} // namespace tidemark
