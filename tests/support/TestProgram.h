#pragma once

#include "support/ScratchHome.h"

#include <QTest>

#include <memory>
#include <vector>

/// Makes each of the test classes that the program runs.
inline constinit std::vector<std::unique_ptr<QObject> (*)()> testClasses;

/// Has the test program run the class: `static const TestClass<ModelTest> registered;`.
template <typename Test>
struct TestClass
{
    TestClass()
    {
        testClasses.push_back([]() -> std::unique_ptr<QObject> { return std::make_unique<Test>(); });
    }
};
