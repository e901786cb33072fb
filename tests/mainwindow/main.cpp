#include "TaskListFileTest.h"
#include "ViewControllerTest.h"
#include "support/TestProgram.h"

int main(int argc, char **argv)
{
    return runTests<TaskListFileTest, ViewControllerTest>(argc, argv);
}
