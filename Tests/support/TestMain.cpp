#include "foundation/UserDefaults.h"
#include "search/RegisterUserDefaults.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    QCoreApplication application(argc, argv);
    // No test ever sees the user's own settings.
    tidemark::UserDefaults::setStandard(tidemark::UserDefaults::inMemory());
    tidemark::registerUserDefaults(tidemark::UserDefaults::standard());
    return RUN_ALL_TESTS();
}
