# The headers that nearly every file reads, compiled once a target. Every file still includes what it needs: the dev
# preset builds without them.
option(TIDEMARK_PRECOMPILED_HEADERS "Compile the most used headers once" OFF)

set(TIDEMARK_CORE_HEADERS
    <algorithm> <array> <atomic> <functional> <limits> <memory> <mutex> <optional> <vector>
    <QByteArray> <QFile> <QHash> <QList> <QObject> <QSet> <QString> <QStringList>)
set(TIDEMARK_WIDGETS_HEADERS <QtWidgets>)
set(TIDEMARK_TEST_HEADERS <gtest/gtest.h> <gmock/gmock.h> <random> <thread> <QDir>)

function(tidemark_precompile target)
    if(TIDEMARK_PRECOMPILED_HEADERS)
        target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
endfunction()

# For targets that are compiled with the same options.
function(tidemark_reuse_precompiled target owner)
    if(TIDEMARK_PRECOMPILED_HEADERS)
        target_precompile_headers(${target} REUSE_FROM ${owner})
    endif()
endfunction()
