#include "DesktopTest.h"
#include "PlatformTest.h"
#include "ProtectedFileTest.h"
#include "support/TestProgram.h"

int main(int argc, char **argv)
{
    return runTests<ProtectedFileTest, PlatformTest, DesktopTest>(argc, argv);
}
