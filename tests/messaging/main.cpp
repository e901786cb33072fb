#include "GatewayTest.h"
#include "MessagingTest.h"
#include "SendingTest.h"
#include "support/TestProgram.h"

int main(int argc, char **argv)
{
    return runTests<GatewayTest, MessagingTest, SendingTest>(argc, argv);
}
