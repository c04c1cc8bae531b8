// The tests of the check for updates, with the event loop that requests need.
#include <gtest/gtest.h>

#include <QCoreApplication>

int main(int argc, char** argv)
{
    // Neither the desktop's proxy nor the user's languages are to have a say.
    for (const char* const name : {"http_proxy", "https_proxy", "all_proxy", "HTTP_PROXY"})
        qunsetenv(name);
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
