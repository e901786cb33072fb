#pragma once

#include "support/ScratchHome.h"

#include <QTest>

#include <memory>

using MakeTest = std::unique_ptr<QObject> (*)();
/// Has the test program run the tests of this object.
void addTest(MakeTest make);

/// Has the test program run the class: `static const TestClass<ModelTest> registered;`.
template <typename Test>
struct TestClass
{
    TestClass()
    {
        addTest([]() -> std::unique_ptr<QObject> { return std::make_unique<Test>(); });
    }
};
