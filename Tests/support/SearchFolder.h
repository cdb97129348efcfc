#pragma once

#include "search/TDSearchLocation.h"
#include "support/Testing.h"

namespace tidemark::test {

/// A folder for each test, to be searched.
class SearchFolderTest : public testing::Test
{
protected:
    static TDSearchLocation location(const FilePath &path)
    {
        TDSearchLocation location;
        location.setURL(path.toUrl());
        return location;
    }

    TemporaryFolder folder;
};

} // namespace tidemark::test
