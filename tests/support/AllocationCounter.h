#pragma once

// Counts heap allocations made by this thread while a scope is open, through a replaced global
// operator new linked into the test executable.
#include <cstddef>

namespace ostrel::testsupport {

class AllocationCounter {
public:
    AllocationCounter();
    ~AllocationCounter();
    AllocationCounter(const AllocationCounter&) = delete;
    AllocationCounter& operator=(const AllocationCounter&) = delete;
    std::size_t count() const;

private:
    std::size_t start_;
};

} // namespace ostrel::testsupport
