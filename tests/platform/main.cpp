#include "DesktopTest.h"
#include "PlatformTest.h"
#include "ProtectedFileTest.h"
#include "SharingTest.h"
#include "support/TestProgram.h"

int main(int argc, char **argv)
{
    return runTests<ProtectedFileTest, PlatformTest, DesktopTest, SharingTest>(argc, argv);
}
