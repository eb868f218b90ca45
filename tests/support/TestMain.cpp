// The test binary runs the tests, or, started as "--lmcom-child ROLE ARGS...", plays one role
// of a cross-process test.
#include "support/TestSupport.h"

#include <cstring>

int main(int argc, char** argv)
{
    if (argc >= 3 && std::strcmp(argv[1], "--lmcom-child") == 0)
        return LmComTesting::runChildRole(argv[2], std::vector<std::string>(argv + 3, argv + argc));

    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
