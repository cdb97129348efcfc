#include "support/FreshSettings.h"

#include <QCoreApplication>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    QCoreApplication application(argc, argv);
    tidemark::test::FreshSettings::install();
    return RUN_ALL_TESTS();
}
