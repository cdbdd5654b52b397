#include "support/AllocationCounter.h"

#include <cstdlib>
#include <new>

namespace {
thread_local std::size_t allocations = 0;
thread_local int openCounters = 0;
} // namespace

void* operator new(std::size_t size)
{
    if (openCounters > 0) ++allocations;
    if (void* pointer = std::malloc(size == 0 ? 1 : size)) return pointer;
    throw std::bad_alloc();
}

void* operator new[](std::size_t size)
{
    return operator new(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    if (openCounters > 0) ++allocations;
    return std::malloc(size == 0 ? 1 : size);
}

void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept
{
    return operator new(size, tag);
}

void operator delete(void* pointer, const std::nothrow_t&) noexcept
{
    std::free(pointer);
}

void operator delete[](void* pointer, const std::nothrow_t&) noexcept
{
    std::free(pointer);
}

void operator delete(void* pointer) noexcept
{
    std::free(pointer);
}

void operator delete[](void* pointer) noexcept
{
    std::free(pointer);
}

void operator delete(void* pointer, std::size_t) noexcept
{
    std::free(pointer);
}

void operator delete[](void* pointer, std::size_t) noexcept
{
    std::free(pointer);
}

namespace ostrel::testsupport {

AllocationCounter::AllocationCounter() : start_(allocations)
{
    ++openCounters;
}

AllocationCounter::~AllocationCounter()
{
    --openCounters;
}

std::size_t AllocationCounter::count() const
{
    return allocations - start_;
}

} // namespace ostrel::testsupport
